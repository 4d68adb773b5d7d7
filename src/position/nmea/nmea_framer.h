// SPDX-License-Identifier: MIT
#pragma once

#include "position/nmea/nmea_gap.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace raincast {

struct NmeaCounters;

/// Finds sentences in a stream of bytes, however it is cut into reads: a sentence goes from `$` or
/// `!` to the line end, CR or LF. Everything between sentences is skipped (NmeaGap). A sentence
/// that holds another start or a byte that is not printable ASCII is dropped (a start begins the
/// next one), as is one that is too long. Keeps one sentence, never more, whatever comes.
class NmeaFramer {
public:
    /// Longest sentence in characters, its start included, its line end not.
    static constexpr std::size_t kMaxLength = 256;

    /// Borrows the counters; counts bytes outside of sentences and sentences that are not whole.
    explicit NmeaFramer(NmeaCounters& counters) : m_counters(counters), m_gap(counters) {}

    /// Takes bytes off the front of the input up to the end of the next sentence and returns that
    /// sentence from its start, without its line end; it is valid until the next call. Empty when
    /// the input is used up.
    [[nodiscard]] std::optional<std::string_view> next(std::string_view& input);

    /// Drops the beginning of a sentence, or of a line, whose rest will not come.
    void reset();

private:
    [[nodiscard]] bool append(std::string_view text);
    void drop();

    NmeaCounters& m_counters;
    NmeaGap m_gap;
    std::array<char, kMaxLength> m_sentence{};
    std::size_t m_length = 0; ///< 0 between sentences
};

} // namespace raincast
