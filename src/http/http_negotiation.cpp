// SPDX-License-Identifier: MIT
#include "http/http_negotiation.h"

#include <algorithm>
#include <optional>

namespace raincast {

namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

/// Takes what stands before a sign off a text, and the sign.
std::string_view cut(std::string_view& text, char sign) {
    const std::size_t end = std::min(text.find(sign), text.size());
    const std::string_view piece = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return trimmed(piece);
}

bool is(std::string_view word, std::string_view lower) {
    return std::equal(word.begin(), word.end(), lower.begin(), lower.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

/// Whether a weight is more than nothing: of "1", "0.8", "0.001", not of "0", "0.000", "x" or "".
bool isSome(std::string_view weight) {
    return !weight.empty() && weight.front() >= '0' && weight.front() <= '1' &&
           weight.find_first_not_of("0123456789.") == std::string_view::npos &&
           weight.find_first_not_of("0.") != std::string_view::npos;
}

/// Whether the parameters behind a coding ("q=0.5") leave it some weight.
bool isWanted(std::string_view parameters) {
    while (!parameters.empty()) {
        std::string_view value = cut(parameters, ';');
        if (is(cut(value, '='), "q")) {
            return isSome(trimmed(value));
        }
    }
    return true;
}

} // namespace

bool acceptsGzip(std::string_view acceptEncoding) {
    std::optional<bool> gzip;
    bool any = false;
    while (!acceptEncoding.empty()) {
        std::string_view parameters = cut(acceptEncoding, ',');
        const std::string_view coding = cut(parameters, ';');
        if (is(coding, "gzip") || is(coding, "x-gzip")) {
            gzip = isWanted(parameters);
        } else if (coding == "*") {
            any = isWanted(parameters);
        }
    }
    return gzip.value_or(any);
}

bool namesTag(std::string_view ifNoneMatch, std::string_view tag) {
    // No tag of ours has a comma.
    while (!ifNoneMatch.empty()) {
        std::string_view known = cut(ifNoneMatch, ',');
        known.remove_prefix(known.starts_with("W/") ? 2 : 0);
        if (known == tag || known == "*") {
            return true;
        }
    }
    return false;
}

} // namespace raincast
