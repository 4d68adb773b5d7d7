// SPDX-License-Identifier: MIT
#include "nexrad/level3_cursor.h"

#include <utility>

namespace raincast {

Level3Cursor::Level3Cursor(QByteArrayView bytes, std::size_t offset, std::string place)
    : m_bytes(bytes), m_offset(offset), m_place(std::move(place)) {}

std::string Level3Cursor::at(std::size_t offset) const {
    const std::string place = m_place.empty() ? std::string() : " " + m_place;
    return " at byte " + std::to_string(offset) + place;
}

QByteArrayView Level3Cursor::bytes(std::string_view field, std::size_t count) {
    if (!ok()) {
        return {};
    }
    if (count > left()) {
        m_error = std::string(field) + at(offset()) + " is cut off: " + std::to_string(count) +
                  " bytes are needed, " + std::to_string(left()) + " are left";
        return {};
    }
    const QByteArrayView result =
        m_bytes.sliced(static_cast<qsizetype>(m_next), static_cast<qsizetype>(count));
    m_next += count;
    return result;
}

tl::expected<void, QString> Level3Cursor::result() const {
    if (!ok()) {
        return tl::unexpected(QString::fromStdString(m_error));
    }
    return {};
}

std::uint32_t Level3Cursor::number(std::string_view field, std::size_t size) {
    std::uint32_t value = 0;
    for (const char byte : bytes(field, size)) {
        value = value << 8 | static_cast<std::uint8_t>(byte);
    }
    return value;
}

std::int32_t Level3Cursor::s16(std::string_view field) {
    return static_cast<std::int16_t>(u16(field));
}

std::int32_t Level3Cursor::s32(std::string_view field) {
    return static_cast<std::int32_t>(u32(field));
}

void Level3Cursor::expect16(std::string_view field, std::uint32_t wanted) {
    const std::uint32_t found = u16(field);
    if (ok() && found != wanted) {
        fail(field, 2, std::to_string(found) + " instead of " + std::to_string(wanted));
    }
}

void Level3Cursor::fail(std::string_view field, std::size_t back, const std::string& found) {
    if (ok()) {
        m_error = std::string(field) + at(offset() - back) + " is " + found;
    }
}

} // namespace raincast
