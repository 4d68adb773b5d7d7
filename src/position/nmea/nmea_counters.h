// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace raincast {

/// What came of the bytes that a position source gave. Every sentence that began and ended is
/// counted in exactly one of the rows from `taken` on.
struct NmeaCounters {
    std::uint64_t bytes = 0;         ///< read in all
    std::uint64_t junkBytes = 0;     ///< outside of sentences and JSON, line ends apart
    std::uint64_t jsonLines = 0;     ///< of gpsd: its greeting and what it reports
    std::uint64_t taken = 0;         ///< parsed and published
    std::uint64_t otherKinds = 0;    ///< well-formed, of a kind that is not needed here
    std::uint64_t proprietary = 0;   ///< "$P...": of one maker
    std::uint64_t encapsulated = 0;  ///< "!...": other ships, not this one
    std::uint64_t wrongChecksum = 0; ///< dropped: the checksum does not hold or is cut short
    std::uint64_t malformed = 0;     ///< dropped: no talker and kind of five letters, or no field
    std::uint64_t tooLong = 0;       ///< dropped: no line end within the longest sentence
    std::uint64_t garbled = 0;       ///< dropped: cut short, or with bytes that are not text

    /// All sentences, whatever came of them.
    [[nodiscard]] std::uint64_t sentences() const;

    /// One line for the user, "read 512 bytes: 6 taken, 4 of other kinds, 1 with a wrong checksum":
    /// rows of 0 are left out.
    [[nodiscard]] std::string text() const;
};

} // namespace raincast
