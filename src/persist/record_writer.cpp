// SPDX-License-Identifier: MIT
#include "persist/record_writer.h"

#include "persist/serial_writer.h"

namespace raincast {

CRecordWriter::CRecordWriter(CSerialWriter& writer)
    : m_writer(writer), m_countPlace(writer.reserve()) {}

bool CRecordWriter::bytes(std::span<const std::uint8_t> block) {
    ++m_fields;
    return m_writer.writeValue(static_cast<std::uint32_t>(block.size())) &&
           m_writer.writeBytes(block);
}

bool CRecordWriter::string(QStringView string) {
    ++m_fields;
    return m_writer.writeString(string);
}

bool CRecordWriter::end() {
    close();
    return !m_writer.failed();
}

void CRecordWriter::close() {
    // A record left without end() closes as well: the writer would wait for its count for ever.
    if (m_open) {
        m_writer.fill(m_countPlace, m_fields);
        m_open = false;
    }
}

} // namespace raincast
