// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_reader.h"

#include "position/nmea/nmea_sentence_type.h"

#include <charconv>

namespace raincast {

namespace {

constexpr std::size_t kTalkerLength = 2;
constexpr std::size_t kNameLength = 3;
constexpr std::size_t kAddressLength = kTalkerLength + kNameLength;

unsigned checksumOf(std::string_view text) {
    unsigned char sum = 0;
    for (const char c : text) {
        sum ^= static_cast<unsigned char>(c);
    }
    return sum;
}

bool isTalkerLetter(char c) {
    return ('A' <= c && c <= 'Z') || ('0' <= c && c <= '9');
}

// "GPRMC,": five letters and the comma of a first field.
bool isAddressed(std::string_view text) {
    return text.size() > kAddressLength && text[kAddressLength] == ',' && isTalkerLetter(text[0]) &&
           isTalkerLetter(text[1]);
}

} // namespace

std::optional<std::string_view> checkedNmeaText(std::string_view sentence) {
    const std::string_view body = sentence.substr(1);
    const std::size_t star = body.find('*');
    if (star == std::string_view::npos) {
        return body;
    }
    const std::string_view text = body.substr(0, star);
    const std::string_view digits = body.substr(star + 1, 2);
    unsigned sent = 0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), sent, 16).ptr;
    if (end != digits.data() + 2 || sent != checksumOf(text)) {
        return std::nullopt;
    }
    return text;
}

void NmeaReader::feed(std::string_view bytes) {
    m_counters.bytes += bytes.size();
    while (const auto sentence = m_framer.next(bytes)) {
        take(*sentence);
    }
}

void NmeaReader::take(std::string_view sentence) {
    if (sentence.front() == '!') {
        ++m_counters.encapsulated;
        return;
    }
    if (const auto text = checkedNmeaText(sentence)) {
        dispatch(*text);
    } else {
        ++m_counters.wrongChecksum;
    }
}

void NmeaReader::dispatch(std::string_view text) {
    if (text.starts_with('P')) {
        ++m_counters.proprietary;
        return;
    }
    if (!isAddressed(text)) {
        ++m_counters.malformed;
        return;
    }
    const CNMEASentenceType* type =
        CNMEASentenceType::find(text.substr(kTalkerLength, kNameLength));
    if (type == nullptr) {
        ++m_counters.otherKinds;
        return;
    }
    ++m_counters.taken;
    type->receive(text);
}

} // namespace raincast
