// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_gap.h"

#include "position/nmea/nmea_counters.h"

namespace raincast {

void NmeaGap::skip(std::string_view& input) {
    while (!input.empty() && !endsAt(input.front())) {
        m_state = next(input.front());
        input.remove_prefix(1);
    }
    if (!input.empty() && m_state == State::brace) {
        m_state = junk(1);
    }
}

bool NmeaGap::endsAt(char c) const {
    return (c == '$' || c == '!') && m_state != State::string && m_state != State::escapeSequence;
}

// {"class":"VERSION","release":"3.22"}
NmeaGap::State NmeaGap::next(char c) {
    const bool isLineEnd = c == '\r' || c == '\n';
    if (isLineEnd) {
        m_counters.junkBytes += m_state == State::brace ? 1 : 0;
        return State::lineStart;
    }
    switch (m_state) {
    case State::lineStart:
        return c == '{' ? State::brace : junk(1);
    case State::brace:
        if (c != '"') {
            return junk(2);
        }
        ++m_counters.jsonLines;
        return State::string;
    case State::junk:
        return junk(1);
    case State::json:
        return c == '"' ? State::string : State::json;
    case State::string:
        return c == '"' ? State::json : c == '\\' ? State::escapeSequence : State::string;
    case State::escapeSequence:
        return State::string;
    }
    return State::junk;
}

NmeaGap::State NmeaGap::junk(unsigned bytes) {
    m_counters.junkBytes += bytes;
    return State::junk;
}

} // namespace raincast
