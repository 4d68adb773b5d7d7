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

namespace raincast {

namespace {

// The largest products have some 300 kB.
constexpr qint64 kMostBytes = 8 * 1024 * 1024;
// A file that changed so lately and does not decode is taken to be half written.
constexpr qint64 kFreshMilliseconds = 30'000;
// Clocks differ; a frame from farther in the future than this is a wrong one.
constexpr FileTime kMostAhead = 10 * kFileTimePerMinute;

Level3Result decodeFile(const QString& path) {
    const auto bytes = readWhole(path, kMostBytes);
    if (bytes) {
        return decodeLevel3({bytes->constData(), static_cast<std::size_t>(bytes->size())});
    }
    if (bytes.error().kind == ReadFailure::Kind::tooLarge) {
        return {std::nullopt, "The file is larger than any product."};
    }
    return {std::nullopt, "The file cannot be read: " + bytes.error().reason.toStdString() + "."};
}

QFileInfoList filesIn(const QString& folder, QStringList& folders) {
    QFileInfoList files;
    folders = {folder};
    QDirIterator entries(
        folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories
    );
    while (entries.hasNext()) {
        entries.next();
        const QFileInfo entry = entries.fileInfo();
        if (entry.isDir()) {
            folders += entry.filePath();
        } else {
            files += entry;
        }
    }
    // The newest first: at the first start they are what people wait for.
    std::sort(files.begin(), files.end(), [](const QFileInfo& a, const QFileInfo& b) {
        return a.lastModified() > b.lastModified();
    });
    return files;
}

} // namespace

Level3Folder::Level3Folder(const QString& folder, const QString& store, int hours, ServerLog log)
    : m_folder(QDir(folder).absolutePath()), m_store(QDir(store).absolutePath()), m_hours(hours),
      m_log(std::move(log)), m_folders{m_folder} {
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
}

/// Forgets the frames whose files are not whole, so that their products are rendered again.
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
            if (wholePictureIn(file).isEmpty()) {
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

int Level3Folder::rescan(const std::stop_token& stop) {
    QStringList folders;
    const QFileInfoList files = filesIn(m_folder, folders);
    {
        const std::lock_guard lock(m_mutex);
        m_folders = folders;
    }
    if (m_isDoubtful.exchange(false)) {
        dropDamagedFrames(stop);
    }
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    QHash<QString, Seen> seen;
    int frames = 0;
    for (const QFileInfo& file : files) {
        if (stop.stop_requested()) {
            return frames;
        }
        const Seen present{file.size(), file.lastModified().toMSecsSinceEpoch()};
        if (m_seen.value(file.filePath()) == present) {
            seen.insert(file.filePath(), present);
            continue;
        }
        const bool isFresh = now - present.changed < kFreshMilliseconds;
        const Outcome outcome = take(file, isFresh, frames);
        if (outcome == Outcome::unstored) {
            // Nor could what follows be stored. Frames that grow too old make room.
            m_seen.insert(seen);
            seen = m_seen;
            break;
        }
        // What is fresh and fails is tried at every turn, until it is whole or old.
        if (outcome == Outcome::done || !isFresh) {
            seen.insert(file.filePath(), present);
        }
    }
    m_seen = seen;
    forgetOldFrames();
    return frames;
}

/// Renders a file, and counts the frames that it made.
Level3Folder::Outcome Level3Folder::take(const QFileInfo& file, bool isFresh, int& made) {
    const QString name = QDir(m_folder).relativeFilePath(file.filePath());
    const Level3Result result = decodeFile(file.filePath());
    if (!result.scan) {
        if (!isFresh) {
            m_log(name + QStringLiteral(": ") + QString::fromStdString(result.error));
        }
        return Outcome::undecoded;
    }
    const PolarScan& scan = *result.scan;
    const FileTime time = scan.time - scan.time % kFileTimePerMinute;
    if (const QString reason = whyNotShown(scan, time); !reason.isEmpty()) {
        tellOnce(name, reason);
        return Outcome::done;
    }
    for (const Product product : publishedAs(scan)) {
        if (isStored({scan.site, product}, time)) {
            continue;
        }
        if (!store(fileOf({scan.site, product}, time), renderFrame(scan, product))) {
            return Outcome::unstored;
        }
        const std::lock_guard lock(m_mutex);
        m_times[{scan.site, product}].insert(time);
        ++made;
    }
    return Outcome::done;
}

bool Level3Folder::isStored(const Key& key, FileTime time) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_times.find(key);
    return found != m_times.end() && found->second.contains(time);
}

/// Writes a file of the store. Why that fails is logged when it begins to, not at every turn.
bool Level3Folder::store(const QString& file, const std::string& bytes) {
    QDir().mkpath(QFileInfo(file).path());
    // What a power cut takes is made again.
    const auto stored = replaceFile(file, bytes, Lasting::no);
    if (!stored && !m_cannotStore) {
        m_log(QStringLiteral("Cannot write to %1: %2.").arg(m_store, stored.error()));
    }
    m_cannotStore = !stored;
    return stored.has_value();
}

/// Empty for a product that is shown.
QString Level3Folder::whyNotShown(const PolarScan& scan, FileTime time) const {
    if (findAntenna(scan.site) == nullptr) {
        return QStringLiteral("is of a site that is none of the tree's");
    }
    if (isTooOld(time)) {
        return QStringLiteral("is older than %1 hours (see --hours)").arg(m_hours);
    }
    const bool isAhead = time > Clock::current().now() + kMostAhead;
    return isAhead ? QStringLiteral("is of a time to come") : QString();
}

void Level3Folder::tellOnce(const QString& name, const QString& reason) {
    if (!m_told.contains(reason)) {
        m_told += reason;
        m_log(QStringLiteral("%1 %2: not shown, as all others of that kind.").arg(name, reason));
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
    }
    for (const QString& file : files) {
        QFile::remove(file);
    }
}

QStringList Level3Folder::folders() const {
    const std::lock_guard lock(m_mutex);
    return m_folders;
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

std::string Level3Folder::frame(std::string_view site, Product product, FileTime time) const {
    const FrameFolder folder{std::string(site), product};
    if (!isStored({folder.site, product}, time)) {
        return {};
    }
    const QByteArray bytes = wholePictureIn(fileOf(folder, time));
    if (bytes.isEmpty()) {
        m_isDoubtful = true;
    }
    return bytes.toStdString();
}

std::string Level3Folder::warnings(std::string_view site, Range, FileTime) const {
    return findAntenna(site) == nullptr ? std::string() : emptyFrame();
}

} // namespace raincast
