// SPDX-License-Identifier: MIT
#include "server/level3_folder.h"

#include "platform/clock.h"
#include "server/antenna_positions.h"
#include "server/frame_painter.h"
#include "server/level3_decoder.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace raincast {

namespace {

// The largest products have some 300 kB.
constexpr qint64 kMostBytes = 8 * 1024 * 1024;
// A file that changed so lately and does not decode is taken to be half written.
constexpr qint64 kFreshMilliseconds = 30'000;
// Clocks differ; a frame from farther in the future than this is a wrong one.
constexpr FileTime kMostAhead = 10 * kFileTimePerMinute;

std::string contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

bool write(const QString& path, const std::string& bytes) {
    QSaveFile file(path);
    QDir().mkpath(QFileInfo(path).path());
    return file.open(QIODevice::WriteOnly) &&
           file.write(bytes.data(), static_cast<qint64>(bytes.size())) ==
               static_cast<qint64>(bytes.size()) &&
           file.commit();
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

Level3Folder::Level3Folder(QString folder, QString store, int hours, ServerLog log)
    : m_folder(std::move(folder)), m_store(std::move(store)), m_hours(hours),
      m_log(std::move(log)), m_folders{m_folder} {
    loadStore();
}

void Level3Folder::loadStore() {
    QDirIterator files(
        m_store, {QStringLiteral("*.gif")}, QDir::Files, QDirIterator::Subdirectories
    );
    while (files.hasNext()) {
        files.next();
        const std::string path =
            "/ridge/RadarImg/" + QDir(m_store).relativeFilePath(files.filePath()).toStdString();
        const auto item = findTreeItem(path);
        if (item && item->kind == TreeItem::Kind::frame) {
            m_times[{item->site, item->product}].insert(item->time);
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
        const int made = take(file, isFresh);
        frames += std::max(0, made);
        // What is fresh and fails is tried at every turn, until it is whole or old.
        if (made >= 0 || !isFresh) {
            seen.insert(file.filePath(), present);
        }
    }
    m_seen = seen;
    forgetOldFrames();
    return frames;
}

/// Renders a file; the number of new frames, or -1 when it cannot be decoded.
int Level3Folder::take(const QFileInfo& file, bool isFresh) {
    const QString name = QDir(m_folder).relativeFilePath(file.filePath());
    const Level3Result result =
        file.size() <= kMostBytes
            ? decodeLevel3(contentsOf(file.filePath()))
            : Level3Result{std::nullopt, "The file is larger than any product."};
    if (!result.scan) {
        if (!isFresh) {
            m_log(name + QStringLiteral(": ") + QString::fromStdString(result.error));
        }
        return -1;
    }
    const PolarScan& scan = *result.scan;
    const FileTime time = scan.time - scan.time % kFileTimePerMinute;
    if (const QString reason = whyNotShown(scan, time); !reason.isEmpty()) {
        tellOnce(name, reason);
        return 0;
    }
    int made = 0;
    for (const Product product : publishedAs(scan)) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_times[{scan.site, product}].contains(time)) {
                continue;
            }
        }
        if (!write(fileOf({scan.site, product}, time), renderFrame(scan, product))) {
            m_log(QStringLiteral("Cannot write to %1.").arg(m_store));
            return -1;
        }
        const std::lock_guard lock(m_mutex);
        m_times[{scan.site, product}].insert(time);
        ++made;
    }
    return made;
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
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_times.find({folder.site, product});
        if (found == m_times.end() || !found->second.contains(time)) {
            return {};
        }
    }
    return contentsOf(fileOf(folder, time));
}

std::string Level3Folder::warnings(std::string_view site, Range, FileTime) const {
    return findAntenna(site) == nullptr ? std::string() : emptyFrame();
}

} // namespace raincast
