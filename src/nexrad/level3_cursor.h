// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace raincast {

/// Reads big-endian numbers from bytes that may be anything. It keeps the first problem as a
/// sentence: bytes that are missing, or what the reader reports with fail(). From then on
/// everything read is 0 or empty, so a parser may check ok() once after several reads.
class Level3Cursor {
public:
    /// `offset` is the offset that sentences give the first byte; `place` follows offsets in them
    /// ("of the unpacked data") and may be empty. The bytes are borrowed.
    explicit Level3Cursor(QByteArrayView bytes, std::size_t offset = 0, std::string place = {});

    /// The next number; `field` names it should it be missing.
    [[nodiscard]] std::uint32_t u8(std::string_view field) { return number(field, 1); }
    [[nodiscard]] std::uint32_t u16(std::string_view field) { return number(field, 2); }
    [[nodiscard]] std::uint32_t u32(std::string_view field) { return number(field, 4); }
    [[nodiscard]] std::int32_t s16(std::string_view field);
    [[nodiscard]] std::int32_t s32(std::string_view field);

    /// The next `count` bytes.
    [[nodiscard]] QByteArrayView bytes(std::string_view field, std::size_t count);
    void skip(std::string_view field, std::size_t count) { static_cast<void>(bytes(field, count)); }

    /// Reads a halfword that must be `wanted`.
    void expect16(std::string_view field, std::uint32_t wanted);

    /// Reports that the field which begins `back` bytes before the place reached is bad: "FIELD at
    /// byte OFFSET is FOUND".
    void fail(std::string_view field, std::size_t back, const std::string& found);

    [[nodiscard]] bool ok() const { return m_error.empty(); }
    [[nodiscard]] tl::expected<void, QString> result() const;
    [[nodiscard]] std::size_t left() const {
        return static_cast<std::size_t>(m_bytes.size()) - m_next;
    }
    [[nodiscard]] std::size_t offset() const { return m_offset + m_next; }
    [[nodiscard]] QByteArrayView rest() const {
        return m_bytes.sliced(static_cast<qsizetype>(m_next));
    }

private:
    std::uint32_t number(std::string_view field, std::size_t size);
    [[nodiscard]] std::string at(std::size_t offset) const;

    QByteArrayView m_bytes;
    std::size_t m_next = 0;
    std::size_t m_offset;
    std::string m_place;
    std::string m_error;
};

} // namespace raincast
