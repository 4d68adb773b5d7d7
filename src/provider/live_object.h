// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QByteArray>

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace raincast {

/// A product of a site as a provider names it: "TLX" and "N0B", or "TLX" and "p94r0".
struct LiveName {
    std::string site;
    std::string product;

    // The check takes the 0 of a comparison for a pointer.
    friend auto
    operator<=>(const LiveName&, const LiveName&) = default; // NOLINT(modernize-use-nullptr)
};

/// One volume of a product, as a provider has it.
struct LiveObject {
    LiveName name;
    FileTime time = 0; ///< of the volume scan, to the second
    QByteArray etag{}; ///< changes when the object is replaced; empty: it never is
    qint64 bytes = -1; ///< its size, or -1
    FileTime modified = 0;
    QByteArray body{}; ///< if it has come along

    /// The minute that stands for it in the tree.
    [[nodiscard]] FileTime minute() const { return time - time % kFileTimePerMinute; }
};

/// "TLX_N0B_2026_11_21_17_49_12": names an object in the bucket and in the store.
[[nodiscard]] std::string keyOf(const LiveName& name, FileTime time);

/// "TLX_N0B_2026_11_21_": what the keys of a UTC day begin with.
[[nodiscard]] std::string dayKeyOf(const LiveName& name, FileTime time);

/// Name and time of a key; nothing for any other text.
[[nodiscard]] std::optional<LiveObject> readKey(std::string_view key);

} // namespace raincast
