// SPDX-License-Identifier: MIT
#include "persist/page_file.h"

#include "persist/serial_reader.h"
#include "persist/serial_writer.h"
#include "platform/whole_file.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <span>
#include <utility>

namespace raincast {

namespace {

std::span<const std::uint8_t> bytesOf(const QByteArray& array) {
    return {
        reinterpret_cast<const std::uint8_t*>(array.constData()),
        static_cast<std::size_t>(array.size())};
}

// A pipe or a device would block or never end.
bool isForeign(const QString& path) {
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

} // namespace

PageFile::PageFile(QString path) : m_path(std::move(path)) {}

QString PageFile::backupPath() const {
    return m_path + QStringLiteral(".bak");
}

bool PageFile::load(CSerializable& application) {
    m_whole = false;
    if (!readBytes()) {
        return false;
    }
    CSerialReader reader(bytesOf(m_loaded));
    const bool read = application.Read(reader);
    m_whole = m_whole && read && reader.whole();
    return read;
}

/// Fills m_loaded and sets m_whole when that is all there is. False when there is nothing to read.
bool PageFile::readBytes() {
    m_loaded.clear();
    m_keepDue = false;
    m_unreadable = false;
    m_absent = !QFileInfo::exists(m_path);
    if (m_absent) {
        return false;
    }
    QFile file(m_path);
    m_unreadable = isForeign(m_path) || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (m_unreadable) {
        return false;
    }
    m_loaded = file.read(std::min(file.size(), kMaxSize));
    m_keepDue = !m_loaded.isEmpty();
    m_whole = file.error() == QFileDevice::NoError && m_loaded.size() == file.size();
    return true;
}

bool PageFile::keepLoaded() {
    if (!m_keepDue) {
        return true;
    }
    const bool replace = m_whole || !QFileInfo::exists(backupPath());
    if (replace && !replaceFile(backupPath(), m_loaded, Lasting::yes)) {
        return false;
    }
    m_keepDue = false;
    m_loaded.clear();
    return true;
}

/// Keeps a file that has come since load() found none.
bool PageFile::keepUnread() {
    QFile file(m_path);
    if (!m_absent || !file.exists() || file.size() == 0) {
        return true;
    }
    if (file.size() > kMaxSize || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (bytes.size() != file.size() || !replaceFile(backupPath(), bytes, Lasting::yes)) {
        return false;
    }
    m_absent = false;
    return true;
}

bool PageFile::save(const CSerializable& application) {
    if (m_unreadable || isForeign(m_path) || !keepLoaded() || !keepUnread()) {
        return false;
    }
    // The writer gathers by itself, so that a failing write is seen at once.
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return false;
    }
    m_absent = false; // what stands there from now on is ours
    CSerialWriter writer(file);
    const bool written = application.Write(writer);
    return writer.finish() && written;
}

} // namespace raincast
