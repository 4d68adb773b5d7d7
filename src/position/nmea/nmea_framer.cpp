// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_framer.h"

#include "position/nmea/nmea_counters.h"

#include <algorithm>
#include <cstdint>

namespace raincast {

namespace {

enum class ByteClass : std::uint8_t { other, text, start, lineEnd };

constexpr std::array<ByteClass, 256> makeByteClasses() {
    std::array<ByteClass, 256> classes{};
    for (std::size_t c = ' '; c <= '~'; ++c) {
        classes[c] = ByteClass::text;
    }
    classes['$'] = classes['!'] = ByteClass::start;
    classes['\r'] = classes['\n'] = ByteClass::lineEnd;
    return classes;
}

constexpr std::array<ByteClass, 256> kByteClasses = makeByteClasses();

ByteClass classOf(char c) {
    return kByteClasses[static_cast<unsigned char>(c)];
}

std::size_t textRun(std::string_view input) {
    std::size_t length = 0;
    while (length < input.size() && classOf(input[length]) == ByteClass::text) {
        ++length;
    }
    return length;
}

} // namespace

std::optional<std::string_view> NmeaFramer::next(std::string_view& input) {
    while (true) {
        if (m_length == 0) {
            m_gap.skip(input);
            if (input.empty()) {
                return std::nullopt;
            }
            m_gap.continueLine();
            m_sentence[m_length++] = input.front();
            input.remove_prefix(1);
        }
        const std::string_view text = input.substr(0, textRun(input));
        input.remove_prefix(text.size());
        if (!append(text)) {
            continue;
        }
        if (input.empty()) {
            return std::nullopt;
        }
        if (classOf(input.front()) == ByteClass::lineEnd) {
            input.remove_prefix(1);
            const std::string_view sentence{m_sentence.data(), m_length};
            m_length = 0;
            m_gap.beginLine();
            return sentence;
        }
        drop();
    }
}

void NmeaFramer::reset() {
    drop();
    m_gap.beginLine();
}

void NmeaFramer::drop() {
    if (m_length != 0) {
        ++m_counters.garbled;
        m_length = 0;
    }
}

bool NmeaFramer::append(std::string_view text) {
    if (text.size() > kMaxLength - m_length) {
        ++m_counters.tooLong;
        m_length = 0;
        return false;
    }
    std::copy(text.begin(), text.end(), m_sentence.data() + m_length);
    m_length += text.size();
    return true;
}

} // namespace raincast
