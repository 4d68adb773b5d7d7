// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace raincast {

struct NmeaCounters;

/// What stands between sentences, however it is cut into reads: lines of JSON, as gpsd greets and
/// reports, and junk. A line of JSON begins with `{"`, is of any length and may hold a start of a
/// sentence in its strings; outside of them a start ends it.
class NmeaGap {
public:
    /// The counters are borrowed; lines of JSON and bytes of junk are counted here.
    explicit NmeaGap(NmeaCounters& counters) : m_counters(counters) {}

    /// Takes bytes off the front of the input up to the `$` or `!` of the next sentence.
    void skip(std::string_view& input);

    /// What comes next begins a line, or is the rest of one.
    void beginLine() { m_state = State::lineStart; }
    void continueLine() { m_state = State::junk; }

private:
    enum class State : std::uint8_t {
        lineStart,
        brace, ///< of what may become a line of JSON
        junk,
        json,
        string,        ///< of JSON
        escapeSequence ///< within a string
    };

    [[nodiscard]] bool endsAt(char c) const;
    [[nodiscard]] State next(char c);
    [[nodiscard]] State junk(unsigned bytes);

    NmeaCounters& m_counters;
    State m_state = State::lineStart;
};

} // namespace raincast
