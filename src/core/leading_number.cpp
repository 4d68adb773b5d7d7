// SPDX-License-Identifier: MIT
#include "core/leading_number.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace raincast {

namespace {

bool isSpace(char c) {
    return c == ' ' || ('\t' <= c && c <= '\r');
}

bool isDigit(char c) {
    return '0' <= c && c <= '9';
}

// Leaves what std::from_chars takes: without the blanks and the plus sign that it does not know.
// Empty where it would find "inf" or "nan", or nothing.
std::string_view withoutLead(std::string_view text) {
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    const bool isNegative = !text.empty() && text.front() == '-';
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    const std::string_view digits = text.substr(isNegative ? 1 : 0);
    const bool isNumber = !digits.empty() && (isDigit(digits.front()) || digits.front() == '.');
    return isNumber ? text : std::string_view();
}

template<class Number>
std::optional<Number> take(std::string_view& text, std::optional<Number> beyondRange) {
    const std::string_view lead = withoutLead(text);
    const char* const end = lead.data() + lead.size();
    Number number = 0;
    const auto result = std::from_chars(lead.data(), end, number);
    if (result.ec == std::errc::invalid_argument) {
        return std::nullopt;
    }
    text = {result.ptr, static_cast<std::size_t>(end - result.ptr)};
    return result.ec == std::errc() ? number : beyondRange;
}

} // namespace

std::optional<double> takeDouble(std::string_view& text) {
    return take<double>(text, std::numeric_limits<double>::infinity());
}

std::optional<std::int32_t> takeInt(std::string_view& text) {
    return take<std::int32_t>(text, std::nullopt);
}

} // namespace raincast
