// SPDX-License-Identifier: MIT
#include "fetch/known_pictures.h"

#include "core/folders.h"
#include "core/whole_file.h"
#include "radar/gif_reader.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <sys/stat.h>

#include <utility>

namespace raincast {

namespace {

// The first line; then a line "stamp path" for each picture.
constexpr QByteArrayView kHead = "raincast-fetch pictures 1\n";
// Some 30,000 pictures; a site has 25 of each product.
constexpr qint64 kMostBytes = 4 * 1024 * 1024;

QByteArray number(qint64 value) {
    return QByteArray::number(value) + ',';
}

QByteArray textOf(const timespec& time) {
    return number(time.tv_sec) + number(time.tv_nsec);
}

/// Other bytes never have the stamp of those before. Empty without a file.
QByteArray stampOf(const QString& file) {
    struct stat about {};
    if (stat(QFile::encodeName(file).constData(), &about) != 0 || !S_ISREG(about.st_mode)) {
        return {};
    }
    return number(about.st_size) + textOf(about.st_mtim) + textOf(about.st_ctim) +
           number(static_cast<qint64>(about.st_ino)) + number(static_cast<qint64>(about.st_dev));
}

} // namespace

KnownPictures::KnownPictures(QString index) : m_index(std::move(index)) {
    read();
}

QString KnownPictures::usualIndex() {
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return caches.isEmpty() ? QString() : caches + QStringLiteral("/raincast-fetch/pictures");
}

void KnownPictures::read() {
    const auto bytes = readWhole(m_index, kMostBytes);
    if (!bytes || !bytes->startsWith(kHead)) {
        return;
    }
    for (const QByteArray& line : bytes->mid(kHead.size()).split('\n')) {
        if (const qsizetype space = line.indexOf(' '); space > 0) {
            m_known.insert(QString::fromUtf8(line.mid(space + 1)), line.left(space));
        }
    }
}

bool KnownPictures::isKnown(const QString& file) {
    const QByteArray stamp = stampOf(file);
    const std::lock_guard lock(m_mutex);
    return !stamp.isEmpty() && m_known.value(file) == stamp;
}

std::optional<LoadedPicture> KnownPictures::load(const QString& file) {
    const QByteArray stamp = stampOf(file);
    const auto bytes = readWhole(file, mostPictureBytes(kMostRadarPixels));
    if (!bytes || readGif(*bytes, kMostRadarPixels).isNull()) {
        return std::nullopt;
    }
    // Who changes the file meanwhile changes its stamp.
    if (stampOf(file) == stamp) {
        const std::lock_guard lock(m_mutex);
        m_known.insert(file, stamp);
        m_hasChanged = true;
    }
    return LoadedPicture{};
}

void KnownPictures::save() {
    const std::lock_guard lock(m_mutex);
    if (m_index.isEmpty() || !std::exchange(m_hasChanged, false)) {
        return;
    }
    QByteArray bytes = kHead.toByteArray();
    for (auto known = m_known.cbegin(); known != m_known.cend(); ++known) {
        if (!known.key().contains(u'\n') && stampOf(known.key()) == known.value()) {
            bytes += known.value() + ' ' + known.key().toUtf8() + '\n';
        }
    }
    if (bytes.size() <= kMostBytes && makeFolder(QFileInfo(m_index).path())) {
        static_cast<void>(replaceFile(m_index, bytes, Lasting::no));
    }
}

} // namespace raincast
