// SPDX-License-Identifier: MIT
#pragma once

#include "persist/serial_reader.h"

#include <cstdint>
#include <optional>
#include <span>

class QString;

namespace raincast {

/// Reads one field record: a count and that many fields, each with its length in front. A class
/// asks for its fields in their fixed order and calls end(). Whatever the file holds, members only
/// ever change for the better, so that results may be ignored:
/// - a field that is missing (an older program wrote the record) leaves its member as it is;
/// - a shorter field changes the first bytes of its member, a longer one is cut;
/// - fields behind the last one asked for (a newer program's) are passed over by end();
/// - a record that is missing altogether has no fields.
class CRecordReader {
public:
    /// Begins: reads the count, unless the object being read has ended already.
    explicit CRecordReader(CSerialReader& reader);
    CRecordReader(const CRecordReader&) = delete;
    CRecordReader& operator=(const CRecordReader&) = delete;

    /// Reads the next field into a block of bytes. Returns the number of bytes stored, which is 0
    /// when all fields are consumed; empty when the field is cut off (the block keeps its bytes).
    std::optional<int> bytes(std::span<std::uint8_t> block);

    /// Reads the next field into a member; results as of bytes().
    template<RawValue T>
    std::optional<int> value(T& member) {
        auto block = toLittleEndian(member);
        const std::optional<int> stored = bytes(block);
        if (stored) {
            member = loadLittleEndian<T>(block.data());
        }
        return stored;
    }

    /// The same, but a number outside of low to high, or not a number, leaves the member as it is.
    template<RawValue T>
    std::optional<int> valueWithin(T& member, T low, T high) {
        T read = member;
        const std::optional<int> stored = value(read);
        if (low <= read && read <= high) {
            member = read;
        }
        return stored;
    }

    /// Reads the next field as text; the string is left as it is when all fields are consumed.
    /// False when the field is cut off: the string then holds the units that are there.
    bool string(QString& string);

    /// Passes over the fields not asked for. False when the record was cut off anywhere.
    bool end();

    /// True while another field is there to be asked for. A loop over a number of fields that the
    /// file itself gave must end with this as well: that number may be anything.
    [[nodiscard]] bool more() const { return m_fieldsLeft > 0 && !m_cut; }

private:
    [[nodiscard]] bool takeField();

    CSerialReader& m_reader;
    std::uint32_t m_fieldsLeft = 0;
    bool m_cut = false;
};

} // namespace raincast
