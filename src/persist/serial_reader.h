// SPDX-License-Identifier: MIT
#pragma once

#include "persist/little_endian.h"
#include "persist/serializable.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

class QString;

namespace raincast {

/// How a list's element count is to be understood. A negative signed count names no elements.
enum class CountKind { unsignedCount, signedCount };

/// Reads the page file's stream from bytes in memory, through a cursor that never leaves the object
/// being read: a class can consume less than its body or try to consume more, reading resumes at
/// the body's end. Lengths and counts that lie are clipped to the bytes that are there: they
/// cost neither time nor memory.
///
/// A read that fails for want of bytes moves the cursor to the end of the object, so that what
/// follows in that object fails as well instead of being read from a wrong place.
class CSerialReader {
public:
    /// Objects nested deeper than this are dropped; a page with its items needs 2 levels.
    static constexpr int kMaxDepth = 64;

    /// The bytes are borrowed and must outlive the reader.
    explicit CSerialReader(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes), m_end(bytes.size()) {}
    CSerialReader(const CSerialReader&) = delete;
    CSerialReader& operator=(const CSerialReader&) = delete;

    /// Fills `out`, or leaves it as it is and returns false.
    [[nodiscard]] bool readBytes(std::span<std::uint8_t> out);

    /// Reads one little-endian value, or leaves the member as it is and returns false.
    template<RawValue T>
    [[nodiscard]] bool readValue(T& member) {
        if (sizeof(T) > remaining()) {
            return fail();
        }
        member = loadLittleEndian<T>(m_bytes.data() + m_position);
        m_position += sizeof(T);
        return true;
    }

    /// Reads a 4-byte length and that many bytes of UTF-16 text. False leaves the string as it is
    /// when the length cannot be read, and with the units that are there when the text is cut. An
    /// odd length's last byte is passed over.
    [[nodiscard]] bool readString(QString& string);

    /// Passes over bytes that this program does not understand.
    [[nodiscard]] bool skip(std::uint32_t count);

    /// Reads one object block. False when its 8-byte header cannot be read: a loop over objects
    /// ends there. True otherwise, with `object` null when the block was dropped (an unknown
    /// identifier, a body that its class rejects, or one nested too deep) or read into another
    /// object by readInto().
    [[nodiscard]] bool readObject(std::unique_ptr<CSerializable>& object);

    /// Has an existing object read the blocks of its identifier, wherever they stand, instead of
    /// creating one for each. It keeps what it could read even if it rejects a body. Borrowed, and
    /// not the reader's to give away; one such object at a time, null for none.
    void readInto(CSerializable* resident) { m_resident = resident; }

    /// Reads the object blocks that are left. Only the one of readInto() takes any; all others are
    /// dropped.
    void readRest();

    /// Reads a count and that many object blocks, and gives each object that is a T to
    /// `take(std::unique_ptr<T>)`; all others are dropped. True once the count was read.
    template<typename T, typename Take>
    [[nodiscard]] bool readObjects(CountKind kind, Take take) {
        std::uint32_t count = 0;
        if (!readCount(kind, count)) {
            return false;
        }
        std::unique_ptr<CSerializable> object;
        for (; count > 0 && readObject(object); --count) {
            if (T* wanted = dynamic_cast<T*>(object.get())) {
                static_cast<void>(object.release());
                m_wholeObjects += m_objectWhole && !inObject() ? 1 : 0;
                take(std::unique_ptr<T>(wanted));
            } else if (object != nullptr) {
                drop(std::move(object));
            }
        }
        return true;
    }

    /// True when nothing is left of the object being read (at top level, of the file).
    [[nodiscard]] bool atEnd() const { return m_position == m_end; }

    /// True inside of an object's body, false at top level.
    [[nodiscard]] bool inObject() const { return m_depth > 0; }

    [[nodiscard]] std::size_t position() const { return m_position; }

    /// True once the reader passed over bytes that it did not understand, such as the further
    /// fields of a newer program.
    [[nodiscard]] bool skippedData() const { return m_skipped; }

    /// True while every byte so far was there and was understood: nothing was cut short, dropped or
    /// passed over. After a whole file it also means that nothing stands behind its last page.
    [[nodiscard]] bool whole() const { return !m_skipped && !m_damaged && atEnd(); }

    /// How many objects of the lists at top level, which readObjects() gave away, were themselves
    /// whole: the file's whole pages.
    [[nodiscard]] std::size_t wholeObjects() const { return m_wholeObjects; }

private:
    [[nodiscard]] std::size_t remaining() const { return m_end - m_position; }
    [[nodiscard]] bool readCount(CountKind kind, std::uint32_t& count);
    [[nodiscard]] std::unique_ptr<CSerializable> readBody(std::uint32_t typeId);
    void readResident();
    bool fail();
    void drop(std::unique_ptr<CSerializable> object);

    std::span<const std::uint8_t> m_bytes;
    std::size_t m_position = 0;
    std::size_t m_end; ///< of the object being read
    int m_depth = 0;
    CSerializable* m_resident = nullptr;
    bool m_skipped = false;
    bool m_damaged = false;
    bool m_objectWhole = false; ///< the object that was read last
    std::size_t m_wholeObjects = 0;
};

} // namespace raincast
