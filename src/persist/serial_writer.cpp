// SPDX-License-Identifier: MIT
#include "persist/serial_writer.h"

#include <QIODevice>

#include <limits>

namespace raincast {

namespace {

constexpr qsizetype kFlushAt = 64 * 1024;
constexpr std::size_t kMaxLength = std::numeric_limits<std::uint32_t>::max();

} // namespace

bool CSerialWriter::writeBytes(std::span<const std::uint8_t> bytes) {
    if (m_failed) {
        return false;
    }
    m_buffer.append(
        reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())
    );
    if (m_reserved == 0 && m_buffer.size() >= kFlushAt) {
        flush();
    }
    return !m_failed;
}

bool CSerialWriter::writeString(QStringView string) {
    const std::size_t length = static_cast<std::size_t>(string.size()) * 2;
    if (length > kMaxLength) {
        m_failed = true;
    }
    if (!writeValue(static_cast<std::uint32_t>(length)) || string.isEmpty()) {
        return !m_failed;
    }
    const qsizetype start = m_buffer.size();
    m_buffer.resize(start + static_cast<qsizetype>(length));
    qToLittleEndian<char16_t>(string.utf16(), string.size(), m_buffer.data() + start);
    return true;
}

bool CSerialWriter::writeObject(const CSerializable& object) {
    if (!writeValue(object.GetTypeId())) {
        return false;
    }
    const qsizetype lengthPlace = reserve();
    const bool written = object.Write(*this);
    const auto length = static_cast<std::size_t>(m_buffer.size() - lengthPlace - 4);
    m_failed = m_failed || length > kMaxLength;
    // A body that its class gave up on gets the length that was written, so that a reader of such a
    // file finds the next object.
    fill(lengthPlace, static_cast<std::uint32_t>(length));
    return written && !m_failed;
}

bool CSerialWriter::finish() {
    flush();
    return !m_failed;
}

qsizetype CSerialWriter::reserve() {
    const qsizetype place = m_buffer.size();
    ++m_reserved;
    m_buffer.append(4, '\0');
    return place;
}

void CSerialWriter::fill(qsizetype place, std::uint32_t value) {
    qToLittleEndian(value, m_buffer.data() + place);
    --m_reserved;
}

void CSerialWriter::flush() {
    if (m_failed) {
        return;
    }
    m_failed = m_device.write(m_buffer) != m_buffer.size();
    m_buffer.clear();
}

} // namespace raincast
