// SPDX-License-Identifier: MIT
#pragma once

#include <QtEndian>

#include <array>
#include <cstdint>
#include <type_traits>

namespace raincast {

/// What a file holds as one raw value: a number, a boolean or an enumeration.
template<typename T>
concept RawValue = (std::is_arithmetic_v<T> || std::is_enum_v<T>)&&sizeof(T) <= 8;

/// Writes sizeof(T) bytes to `out`, little-endian on every machine; a boolean is one byte, 0 or 1.
template<RawValue T>
void storeLittleEndian(T value, std::uint8_t* out) {
    if constexpr (std::is_enum_v<T>) {
        storeLittleEndian(static_cast<std::underlying_type_t<T>>(value), out);
    } else if constexpr (std::is_same_v<T, bool>) {
        *out = value ? 1 : 0;
    } else {
        qToLittleEndian(value, out);
    }
}

/// Reads sizeof(T) bytes from `in`. A boolean is true for any byte but 0. An enumeration comes back
/// with whatever number the bytes hold: check it before use.
template<RawValue T>
[[nodiscard]] T loadLittleEndian(const std::uint8_t* in) {
    if constexpr (std::is_enum_v<T>) {
        return static_cast<T>(loadLittleEndian<std::underlying_type_t<T>>(in));
    } else if constexpr (std::is_same_v<T, bool>) {
        return *in != 0;
    } else {
        return qFromLittleEndian<T>(in);
    }
}

/// The bytes of one value, for a block whose fields a class lays out itself.
template<RawValue T>
[[nodiscard]] std::array<std::uint8_t, sizeof(T)> toLittleEndian(T value) {
    std::array<std::uint8_t, sizeof(T)> bytes{};
    storeLittleEndian(value, bytes.data());
    return bytes;
}

} // namespace raincast
