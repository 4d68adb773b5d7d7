// SPDX-License-Identifier: MIT
#pragma once

#include "persist/little_endian.h"
#include "persist/serializable.h"

#include <QByteArray>
#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <span>

class QIODevice;

namespace raincast {

/// Writes the page file's stream to a device, in order and without seeking. An open object (its
/// length is not known yet) or record (its count) waits in memory. It goes out once it is closed
/// and enough has gathered.
///
/// The first write that fails ends the stream: every later call returns false and writes nothing.
/// What the device took until then stays there. After a failure of a class's own the stream is
/// ended by finish(), which writes what was gathered: the file is left as far as it got.
class CSerialWriter {
public:
    /// The device is borrowed, open for writing, and must outlive the writer.
    explicit CSerialWriter(QIODevice& device) : m_device(device) {}
    CSerialWriter(const CSerialWriter&) = delete;
    CSerialWriter& operator=(const CSerialWriter&) = delete;

    bool writeBytes(std::span<const std::uint8_t> bytes);

    template<RawValue T>
    bool writeValue(T value) {
        return writeBytes(toLittleEndian(value));
    }

    /// Writes a 4-byte length and the text as UTF-16, without a terminator.
    bool writeString(QStringView string);

    /// Writes an object block: identifier, length and the object's body.
    [[nodiscard]] bool writeObject(const CSerializable& object);

    /// Writes a count and each object of a range of pointers as a block, in order, up to the first
    /// that fails.
    template<typename Range>
    [[nodiscard]] bool writeObjects(const Range& objects) {
        if (!writeValue(static_cast<std::uint32_t>(objects.size()))) {
            return false;
        }
        for (const auto& object : objects) {
            if (!writeObject(*object)) {
                return false;
            }
        }
        m_listed += m_reserved == 0 ? static_cast<std::size_t>(objects.size()) : 0;
        return true;
    }

    /// Sends the bytes that are still in memory. False when it or anything before it failed.
    [[nodiscard]] bool finish();

    [[nodiscard]] bool failed() const { return m_failed; }

    /// How many objects the lists at top level have got: the file's pages.
    [[nodiscard]] std::size_t listedObjects() const { return m_listed; }

private:
    friend class CRecordWriter;

    /// A number that is known only later: reserve() writes a 0 in its place and holds the stream
    /// back until fill() puts the number there.
    [[nodiscard]] qsizetype reserve();
    void fill(qsizetype place, std::uint32_t value);
    void flush();

    QIODevice& m_device;
    QByteArray m_buffer;
    int m_reserved = 0;
    std::size_t m_listed = 0;
    bool m_failed = false;
};

} // namespace raincast
