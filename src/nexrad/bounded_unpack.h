// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <optional>

namespace raincast {

/// Unpacks a bzip2 stream; nothing when it is damaged, cut off or holds more than `most` bytes.
/// Bytes behind the stream are ignored.
[[nodiscard]] std::optional<QByteArray> unpackBzip2(QByteArrayView packed, std::size_t most);

/// Unpacks the zlib stream at the front of `packed` and takes it off; nothing (and `packed` stays
/// as it is) when the stream is damaged, cut off or holds more than `most` bytes.
[[nodiscard]] std::optional<QByteArray> unpackZlib(QByteArrayView& packed, std::size_t most);

} // namespace raincast
