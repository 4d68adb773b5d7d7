// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace raincast {

/// Reads big-endian numbers from bytes that may be anything. The first problem, be it that bytes
/// are missing or one that the reader reports with fail(), is kept as a sentence; from then on
/// everything read is 0 or empty, so that a parser may look at ok() once after several reads.
class Level3Cursor {
public:
    /// `offset` is what the first byte's offset is called; `place` follows offsets in sentences
    /// ("of the unpacked data") and may be empty. The bytes are borrowed.
    explicit Level3Cursor(std::string_view bytes, std::size_t offset = 0, std::string place = {});

    /// The next number; `field` names it should it be missing.
    [[nodiscard]] std::uint32_t u8(std::string_view field) { return number(field, 1); }
    [[nodiscard]] std::uint32_t u16(std::string_view field) { return number(field, 2); }
    [[nodiscard]] std::uint32_t u32(std::string_view field) { return number(field, 4); }
    [[nodiscard]] std::int32_t s16(std::string_view field);
    [[nodiscard]] std::int32_t s32(std::string_view field);

    /// The next `count` bytes.
    [[nodiscard]] std::string_view bytes(std::string_view field, std::size_t count);
    void skip(std::string_view field, std::size_t count) { static_cast<void>(bytes(field, count)); }

    /// Reads a halfword that must be `wanted`.
    void expect16(std::string_view field, std::uint32_t wanted);

    /// Reports that the field which begins `back` bytes before the place reached is bad: "FIELD at
    /// byte OFFSET is FOUND".
    void fail(std::string_view field, std::size_t back, const std::string& found);

    [[nodiscard]] bool ok() const { return m_error.empty(); }
    [[nodiscard]] const std::string& error() const { return m_error; }
    [[nodiscard]] std::size_t left() const { return m_bytes.size() - m_next; }
    [[nodiscard]] std::size_t offset() const { return m_offset + m_next; }
    [[nodiscard]] std::string_view rest() const { return m_bytes.substr(m_next); }

private:
    std::uint32_t number(std::string_view field, std::size_t size);
    [[nodiscard]] std::string at(std::size_t offset) const;

    std::string_view m_bytes;
    std::size_t m_next = 0;
    std::size_t m_offset;
    std::string m_place;
    std::string m_error;
};

} // namespace raincast
