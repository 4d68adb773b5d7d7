// SPDX-License-Identifier: MIT
#include "live/live_store.h"

#include "core/clock.h"
#include "core/whole_file.h"
#include "provider/live_check.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>

namespace raincast {

namespace {

constexpr qint64 kMostBytes = 2 * 1024 * 1024;
constexpr int kMostHours = 1'000'000; // another program's wish may be any number
constexpr int kMostBytesInMemory = 4 * 1024 * 1024;
// Between key and tag; neither has one.
constexpr QChar kMark = u',';

std::optional<LiveObject> readName(const QString& name) {
    const qsizetype mark = name.indexOf(kMark);
    auto object = readKey(name.left(mark).toStdString());
    if (mark < 0 || !object) {
        return std::nullopt;
    }
    object->etag = QByteArray::fromPercentEncoding(name.sliced(mark + 1).toLatin1());
    return object;
}

} // namespace

LiveStore::LiveStore(QString folder, int hours, ServerLog log)
    : m_folder(std::move(folder)), m_hours(hours), m_wish(m_folder, hours), m_log(std::move(log)),
      m_latest(kMostBytesInMemory) {}

QString LiveStore::folderOf(const LiveName& name) const {
    return m_folder + u'/' + QString::fromStdString(name.site) + u'/' +
           QString::fromStdString(name.product);
}

QString LiveStore::fileOf(const LiveObject& object) const {
    return folderOf(object.name) + u'/' + QString::fromStdString(keyOf(object.name, object.time)) +
           kMark + QString::fromLatin1(object.etag.toPercentEncoding());
}

FileTime LiveStore::horizon(int hours) {
    const FileTime wanted = std::min(hours, kMostHours);
    return Clock::current().now() - wanted * 60 * kFileTimePerMinute;
}

template<typename Visit>
void LiveStore::forEach(Visit visit) const {
    QDirIterator entries(m_folder, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        auto object = readName(entries.fileName());
        if (object && fileOf(*object) == entries.filePath()) { // it is ours
            object->bytes = entries.fileInfo().size();
            visit(std::move(*object), entries.filePath());
        }
    }
}

std::vector<LiveObject> LiveStore::load() const {
    std::vector<LiveObject> objects;
    forEach([&](LiveObject object, const QString& /*path*/) {
        if (object.time >= horizon()) {
            objects.push_back(std::move(object));
        }
    });
    return objects;
}

void LiveStore::clean() const {
    const FileTime oldest = horizon(m_wish.greatest());
    QDirIterator folders(m_folder, QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (folders.hasNext()) {
        removeAbandonedFiles(folders.next());
    }
    forEach([oldest](const LiveObject& object, const QString& path) {
        if (object.time < oldest) {
            QFile::remove(path);
        }
    });
}

void LiveStore::keep(const LiveObject& object) {
    const QString file = fileOf(object);
    const QString folder = folderOf(object.name);
    QDir().mkpath(folder);
    // What a power cut takes is fetched again.
    const auto written = replaceFile(file, object.body, Lasting::no);
    const QString key = QString::fromStdString(keyOf(object.name, object.time));
    const QStringList versions = QDir(folder).entryList({key + kMark + u'*'}, QDir::Files);
    for (const QString& version : written ? versions : QStringList()) {
        if (const QString other = folder + u'/' + version; other != file) {
            QFile::remove(other);
        }
    }
    const std::lock_guard lock(m_mutex);
    m_latest.insert(file, new QByteArray(object.body), object.body.size());
    if (!written && !m_cannotWrite) {
        m_log.error(QStringLiteral("Cannot write to %1: %2.").arg(m_folder, written.error()));
    }
    m_cannotWrite = !written;
}

bool LiveStore::has(const LiveObject& object) const {
    return QFile::exists(fileOf(object));
}

std::optional<QByteArray> LiveStore::read(const LiveObject& object) const {
    const QString file = fileOf(object);
    {
        const std::lock_guard lock(m_mutex);
        if (const QByteArray* const kept = m_latest.object(file)) {
            return *kept;
        }
    }
    auto bytes = readWhole(file, kMostBytes);
    if (!bytes || whyNot(object, *bytes)) {
        return std::nullopt;
    }
    return std::move(*bytes);
}

void LiveStore::drop(const LiveObject& object) {
    const QString file = fileOf(object);
    QFile::remove(file);
    const std::lock_guard lock(m_mutex);
    m_latest.remove(file);
}

} // namespace raincast
