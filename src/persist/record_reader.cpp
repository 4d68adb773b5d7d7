// SPDX-License-Identifier: MIT
#include "persist/record_reader.h"

#include <QString>

#include <algorithm>

namespace raincast {

CRecordReader::CRecordReader(CSerialReader& reader) : m_reader(reader) {
    const bool absent = reader.inObject() && reader.atEnd();
    m_cut = !absent && !reader.readValue(m_fieldsLeft);
}

bool CRecordReader::takeField() {
    if (m_fieldsLeft == 0) {
        return false;
    }
    --m_fieldsLeft;
    return true;
}

std::optional<int> CRecordReader::bytes(std::span<std::uint8_t> block) {
    if (!takeField()) {
        return 0;
    }
    std::uint32_t length = 0;
    if (!m_reader.readValue(length)) {
        m_cut = true;
        return std::nullopt;
    }
    const std::size_t stored = std::min<std::size_t>(length, block.size());
    if (!m_reader.readBytes(block.first(stored))) {
        m_cut = true;
        return std::nullopt;
    }
    // The bytes stored are good even where the rest of the field is cut off.
    m_cut = !m_reader.skip(length - static_cast<std::uint32_t>(stored)) || m_cut;
    return static_cast<int>(stored);
}

bool CRecordReader::string(QString& string) {
    if (!takeField()) {
        return true;
    }
    const bool read = m_reader.readString(string);
    m_cut = m_cut || !read;
    return read;
}

bool CRecordReader::end() {
    // A count that lies ends with the bytes: each field takes at least the four of its length.
    while (!m_cut && takeField()) {
        std::uint32_t length = 0;
        m_cut = !m_reader.readValue(length) || !m_reader.skip(length);
    }
    return !m_cut;
}

} // namespace raincast
