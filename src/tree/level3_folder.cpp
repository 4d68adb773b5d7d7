// SPDX-License-Identifier: MIT
#include "tree/level3_folder.h"

#include "core/clock.h"
#include "core/whole_file.h"
#include "nexrad/frame_painter.h"
#include "nexrad/level3_decoder.h"
#include "radar/catalogue/antenna_positions.h"
#include "tree/whole_picture.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

// The largest products have some 300 kB.
constexpr qint64 kMostBytes = 8 * 1024 * 1024;
// A file that changed so lately and does not decode may be half written.
constexpr qint64 kFreshMilliseconds = 30'000;
// Clocks differ; a frame from farther in the future than this is wrong.
constexpr FileTime kMostAhead = 10 * kFileTimePerMinute;

Level3Result decodeFile(const QString& path) {
    const auto bytes = readWhole(path, kMostBytes);
    if (bytes) {
        return decodeLevel3(*bytes);
    }
    if (bytes.error().kind == ReadFailure::Kind::tooLarge) {
        return tl::unexpected(QStringLiteral("The file is larger than any product."));
    }
    return tl::unexpected(QStringLiteral("The file cannot be read: %1.").arg(bytes.error().reason));
}

} // namespace

Level3Folder::Level3Folder(const QString& folder, const QString& store, int hours, ServerLog log)
    : m_folder(QDir(folder).absolutePath()), m_store(QDir(store).absolutePath()), m_hours(hours),
      m_log(std::move(log)) {
    loadStore();
}

void Level3Folder::loadStore() {
    QDirIterator entries(
        m_store, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories
    );
    while (entries.hasNext()) {
        entries.next();
        if (entries.fileInfo().isDir()) {
            removeAbandonedFiles(entries.filePath());
            continue;
        }
        const std::string path =
            "/ridge/RadarImg/" + QDir(m_store).relativeFilePath(entries.filePath()).toStdString();
        const auto item = findTreeItem(path);
        if (item && item->kind == TreeItem::Kind::frame) {
            m_times[{item->site, item->product}].insert(item->time);
        }
    }
    m_hasScanned = !m_times.empty();
}

// Forgets the frames whose files are not whole, so that their products are rendered again.
void Level3Folder::dropDamagedFrames(const std::stop_token& stop) {
    std::map<Key, std::set<FileTime>> all;
    {
        const std::lock_guard lock(m_mutex);
        all = m_times;
    }
    for (const auto& [key, times] : all) {
        for (const FileTime time : times) {
            if (stop.stop_requested()) {
                m_isDoubtful = true;
                return;
            }
            const QString file = fileOf({key.first, key.second}, time);
            if (!wholePictureIn(file)) {
                QFile::remove(file);
                m_seen.clear();
                const std::lock_guard lock(m_mutex);
                m_times[key].erase(time);
            }
        }
    }
}

QString Level3Folder::fileOf(const FrameFolder& folder, FileTime time) const {
    return m_store + u'/' + QString::fromLatin1(codeOf(folder.product).data(), 3) + u'/' +
           QString::fromStdString(folder.site) + u'/' +
           QString::fromStdString(frameName(folder, time));
}

bool Level3Folder::isTooOld(FileTime time) const {
    return m_hours > 0 && time < Clock::current().now() - m_hours * 60 * kFileTimePerMinute;
}

int Level3Folder::rescan(const std::stop_token& stop, const Entering& entering) {
    FoundFiles files;
    findFiles(m_folder, files, entering);
    if (m_isDoubtful.exchange(false)) {
        dropDamagedFrames(stop);
    }
    m_isCut = false;
    m_unfinished.clear();
    Turn turn = lookAtAll(std::move(files), stop);
    if (!m_isCut) {
        m_seen = std::move(turn.seen); // without those that have gone
    }
    if (!stop.stop_requested()) {
        forgetOldFrames();
        m_hasScanned = true;
    }
    return turn.frames;
}

int Level3Folder::lookAt(QStringList paths, const std::stop_token& stop, const Entering& entering) {
    paths.removeDuplicates();
    FoundFiles files;
    for (const QString& path : paths) {
        findFiles(path, files, entering);
    }
    return lookAtAll(std::move(files), stop).frames;
}

void Level3Folder::expect(const QStringList& files) {
    m_unfinished.unite({files.begin(), files.end()});
}

int Level3Folder::lookAgain(const std::stop_token& stop) {
    const QSet<QString> files = std::exchange(m_unfinished, {});
    const int frames = lookAt(files.values(), stop);
    forgetOldFrames();
    return frames;
}

// The newest first: at the first start people wait for them.
Level3Folder::Turn Level3Folder::lookAtAll(FoundFiles files, const std::stop_token& stop) {
    std::sort(files.begin(), files.end(), [](const FoundFile& a, const FoundFile& b) {
        return a.state.changed > b.state.changed;
    });
    Turn turn{.begin = QDateTime::currentMSecsSinceEpoch(), .seen = {}};
    for (const FoundFile& file : files) {
        // If one cannot be stored, the rest cannot either. Frames that grow too old make room.
        m_isCut = m_isCut || stop.stop_requested() || look(file, turn) == Outcome::unstored;
        if (m_isCut) {
            break;
        }
    }
    m_seen.insert(turn.seen);
    return turn;
}

// Takes a file that is new or has changed.
Level3Folder::Outcome Level3Folder::look(const FoundFile& file, Turn& turn) {
    m_unfinished.remove(file.path);
    if (m_seen.value(file.path) == file.state) {
        turn.seen.insert(file.path, file.state);
        return Outcome::done;
    }
    const bool isFresh = turn.begin - file.state.changed < kFreshMilliseconds;
    const Outcome outcome = take(file.path, isFresh, turn.frames);
    if (outcome == Outcome::undecoded && isFresh) {
        m_unfinished.insert(file.path); // until it is whole or old
    } else if (outcome != Outcome::unstored) {
        turn.seen.insert(file.path, file.state);
    }
    return outcome;
}

// Renders a file.
Level3Folder::Outcome Level3Folder::take(const QString& path, bool isFresh, int& made) {
    const QString name = QDir(m_folder).relativeFilePath(path);
    const Level3Result scan = decodeFile(path);
    if (!scan) {
        if (!isFresh) {
            ++m_failed;
            m_log.warn(name + QStringLiteral(": ") + scan.error());
        }
        return Outcome::undecoded;
    }
    ++m_read;
    const FileTime time = scan->time - scan->time % kFileTimePerMinute;
    if (const auto reason = whyNotShown(*scan, time)) {
        logOnce(name, *reason);
        return Outcome::done;
    }
    noteProduct(*scan, time, path);
    return storeFrames(*scan, time, made);
}

// Sharp frames are made of it when somebody asks.
void Level3Folder::noteProduct(const PolarScan& scan, FileTime time, const QString& file) {
    const std::lock_guard lock(m_mutex);
    for (const Product product : publishedAs(scan)) {
        m_products[{scan.site, product}].insert_or_assign(time, file);
    }
}

// Renders the frames of a scan that are not stored yet.
Level3Folder::Outcome Level3Folder::storeFrames(const PolarScan& scan, FileTime time, int& made) {
    for (const Product product : publishedAs(scan)) {
        const Key key{scan.site, product};
        if (isStored(key, time)) {
            continue;
        }
        const auto frame = renderFrame(scan, product);
        if (!frame || !store(fileOf({scan.site, product}, time), *frame)) {
            return Outcome::unstored;
        }
        const std::lock_guard lock(m_mutex);
        m_times[key].insert(time);
        ++made;
    }
    return Outcome::done;
}

bool Level3Folder::isStored(const Key& key, FileTime time) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_times.find(key);
    return found != m_times.end() && found->second.contains(time);
}

// Writes a file of the store. Logs the first failure of several in a row.
bool Level3Folder::store(const QString& file, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(file).path());
    // A frame that a power cut takes is made again.
    const auto stored = replaceFile(file, bytes, Lasting::no);
    if (!stored && !m_cannotStore) {
        m_log.error(QStringLiteral("Cannot write to %1: %2.").arg(m_store, stored.error()));
    }
    m_cannotStore = !stored;
    return stored.has_value();
}

// The reason why a product is ignored, if it is.
std::optional<QString> Level3Folder::whyNotShown(const PolarScan& scan, FileTime time) const {
    if (findAntenna(scan.site) == nullptr) {
        return QStringLiteral("unknown radar site");
    }
    if (isTooOld(time)) {
        return QStringLiteral("older than %1 hours (see --hours)").arg(m_hours);
    }
    if (time > Clock::current().now() + kMostAhead) {
        return QStringLiteral("its time is in the future");
    }
    return std::nullopt;
}

void Level3Folder::logOnce(const QString& name, const QString& reason) {
    if (!m_logged.contains(reason)) {
        m_logged += reason;
        m_log(QStringLiteral("%1: %2; not shown, like all others of that kind.").arg(name, reason));
    }
}

void Level3Folder::forgetOldFrames() {
    std::vector<QString> files;
    {
        const std::lock_guard lock(m_mutex);
        for (auto& [key, times] : m_times) {
            while (!times.empty() && isTooOld(*times.begin())) {
                files.push_back(fileOf({key.first, key.second}, *times.begin()));
                times.erase(times.begin());
            }
        }
        for (auto& [key, products] : m_products) {
            while (!products.empty() && isTooOld(products.begin()->first)) {
                products.erase(products.begin());
            }
        }
    }
    for (const QString& file : files) {
        QFile::remove(file);
    }
}

std::vector<FileTime>
Level3Folder::frameTimes(std::string_view site, Product product, FileTime upTo) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_times.find({std::string(site), product});
    if (found == m_times.end()) {
        return {};
    }
    const auto& times = found->second;
    return {times.begin(), times.upper_bound(upTo)};
}

std::optional<QByteArray>
Level3Folder::frame(std::string_view site, Product product, FileTime time) const {
    const FrameFolder folder{std::string(site), product};
    if (!isStored({folder.site, product}, time)) {
        return std::nullopt;
    }
    auto bytes = wholePictureIn(fileOf(folder, time));
    if (!bytes) {
        m_isDoubtful = true;
    }
    return bytes;
}

std::optional<QByteArray>
Level3Folder::sharpFrame(std::string_view site, Product product, FileTime time, int detail) const {
    const Key key{std::string(site), product};
    if (!isStored(key, time)) {
        return std::nullopt;
    }
    const QString file = productOf(key, time);
    if (file.isEmpty()) {
        return std::nullopt;
    }
    const Level3Result scan = decodeFile(file);
    // Another product may have come under the name.
    const bool isIt =
        scan && scan->site == site && scan->time - scan->time % kFileTimePerMinute == time;
    return isIt ? renderFrame(*scan, product, frameGeometry(*scan, rangeOf(product), detail))
                : std::nullopt;
}

QString Level3Folder::productOf(const Key& key, FileTime time) const {
    const std::lock_guard lock(m_mutex);
    const auto products = m_products.find(key);
    if (products == m_products.end()) {
        return {};
    }
    const auto file = products->second.find(time);
    return file != products->second.end() ? file->second : QString();
}

bool Level3Folder::isReady() const {
    return m_hasScanned;
}

std::optional<SourceCounts> Level3Folder::counts() const {
    return SourceCounts{m_read, m_failed};
}

WeatherWarnings Level3Folder::warnings(std::string_view, Range, FileTime) const {
    return {};
}

} // namespace raincast
