// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_gap.h"

#include "position/nmea/nmea_counters.h"

namespace raincast {

void NmeaGap::skip(std::string_view& input) {
    while (!input.empty() && !endsAt(input.front())) {
        m_state = next(input.front());
        input.remove_prefix(1);
    }
    if (!input.empty() && m_state == State::Brace) {
        m_state = junk(1);
    }
}

bool NmeaGap::endsAt(char c) const {
    return (c == '$' || c == '!') && m_state != State::String && m_state != State::EscapeSequence;
}

// {"class":"VERSION","release":"3.22"}
NmeaGap::State NmeaGap::next(char c) {
    const bool isLineEnd = c == '\r' || c == '\n';
    if (isLineEnd) {
        m_counters.junkBytes += m_state == State::Brace ? 1 : 0;
        return State::LineStart;
    }
    switch (m_state) {
    case State::LineStart:
        return c == '{' ? State::Brace : junk(1);
    case State::Brace:
        if (c != '"') {
            return junk(2);
        }
        ++m_counters.jsonLines;
        return State::String;
    case State::Junk:
        return junk(1);
    case State::Json:
        return c == '"' ? State::String : State::Json;
    case State::String:
        return c == '"' ? State::Json : c == '\\' ? State::EscapeSequence : State::String;
    case State::EscapeSequence:
        return State::String;
    }
    return State::Junk;
}

NmeaGap::State NmeaGap::junk(unsigned bytes) {
    m_counters.junkBytes += bytes;
    return State::Junk;
}

} // namespace raincast
