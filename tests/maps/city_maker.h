// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>

namespace raincast {

inline QByteArray protobufVarint(std::uint64_t value) {
    QByteArray bytes;
    for (; value >= 0x80; value >>= 7U) {
        bytes += static_cast<char>(value | 0x80U);
    }
    return bytes + static_cast<char>(value);
}

inline QByteArray protobufZigzag(std::int64_t value) {
    return protobufVarint((static_cast<std::uint64_t>(value) << 1U) ^ (value < 0 ? ~0ULL : 0ULL));
}

inline QByteArray protobufText(int field, const QByteArray& bytes) {
    return protobufVarint(static_cast<unsigned>(field) << 3U | 2U) + protobufVarint(bytes.size()) +
           bytes;
}

inline QByteArray makeCity(
    const QByteArray& name, const QByteArray& code, int population, int eastStep, int northStep
) {
    const QByteArray record = protobufZigzag(0).prepend('\x08') + protobufText(2, name) +
                              protobufText(3, "US") + protobufText(7, code) +
                              protobufVarint(9 << 3) + protobufVarint(population) +
                              protobufVarint(10 << 3) + protobufZigzag(eastStep) +
                              protobufVarint(11 << 3) + protobufZigzag(northStep);
    return protobufVarint(record.size()) + record;
}

} // namespace raincast
