// SPDX-License-Identifier: MIT
#pragma once

#include "persist/little_endian.h"

#include <QStringView>

#include <cstdint>
#include <span>

namespace raincast {

class CSerialWriter;

/// Writes one field record: begun by construction, then the fields in their fixed order, then
/// end(). A failure stays: only end()'s result needs looking at. Nothing but fields may be written
/// between construction and end().
class CRecordWriter {
public:
    explicit CRecordWriter(CSerialWriter& writer);
    CRecordWriter(const CRecordWriter&) = delete;
    CRecordWriter& operator=(const CRecordWriter&) = delete;
    ~CRecordWriter() { close(); }

    /// Adds a block of bytes that the class laid out itself.
    bool bytes(std::span<const std::uint8_t> block);

    template<RawValue T>
    bool value(T value) {
        return bytes(toLittleEndian(value));
    }

    bool string(QStringView string);

    /// Writes the number of fields in front of them. False when anything failed.
    [[nodiscard]] bool end();

private:
    void close();

    CSerialWriter& m_writer;
    std::uint32_t m_fields = 0;
    qsizetype m_countPlace;
    bool m_open = true;
};

} // namespace raincast
