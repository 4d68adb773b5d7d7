// SPDX-License-Identifier: MIT
#include "nexrad/level3_wrapping.h"

#include "nexrad/bounded_unpack.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string_view>
#include <utility>

namespace raincast {

namespace {

constexpr std::size_t kMostUnpacked = std::size_t{8} * 1024 * 1024;
constexpr char kStartOfHeading = '\x01';
constexpr std::size_t kLongestLine = 40;

/// Takes a line and its end (any run of CR and LF) off the front; nothing where no line of
/// printable text stands there.
std::optional<std::string_view> takeLine(std::string_view& rest) {
    const std::size_t end = rest.substr(0, kLongestLine).find_first_of("\r\n");
    if (end == std::string_view::npos || end == 0) {
        return std::nullopt;
    }
    const std::string_view line = rest.substr(0, end);
    const bool printable =
        std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (!printable) {
        return std::nullopt;
    }
    const std::size_t next = rest.find_first_not_of("\r\n", end);
    rest.remove_prefix(std::min(next, rest.size()));
    return line;
}

bool isUpperOrDigit(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// SOH CR CR LF "734 " CR CR LF
void takeStartOfHeading(std::string_view& rest) {
    if (rest.empty() || rest.front() != kStartOfHeading) {
        return;
    }
    rest.remove_prefix(1);
    rest.remove_prefix(std::min(rest.find_first_not_of("\r\n"), rest.size()));
    // Some archives leave the sequence number out.
    std::string_view ahead = rest;
    const auto line = takeLine(ahead);
    if (line && line->size() <= 6 && std::isdigit(static_cast<unsigned char>(line->front())) != 0) {
        rest = ahead;
    }
}

/// SDUS54 KOUN 202016 CR CR LF
void takeWmoHeading(std::string_view& rest) {
    std::string_view ahead = rest;
    const auto line = takeLine(ahead);
    constexpr std::size_t kShortestHeading = 18;
    if (line && line->size() >= kShortestHeading && (*line)[6] == ' ' && (*line)[11] == ' ' &&
        std::all_of(line->begin(), line->begin() + 6, isUpperOrDigit)) {
        rest = ahead;
    }
}

/// N0RTLX CR CR LF
std::optional<std::string> takeAwipsId(std::string_view& rest) {
    std::string_view ahead = rest;
    auto line = takeLine(ahead);
    if (!line) {
        return std::nullopt;
    }
    const std::string_view id = line->substr(0, line->find_last_not_of(' ') + 1);
    if (id.size() < 4 || id.size() > 6 || !std::all_of(id.begin(), id.end(), isUpperOrDigit)) {
        return std::nullopt;
    }
    rest = ahead;
    return std::string(id);
}

/// Takes the headings off the front.
void takeHeadings(QByteArrayView& bytes, std::string& awipsId) {
    std::string_view rest(bytes.data(), static_cast<std::size_t>(bytes.size()));
    takeStartOfHeading(rest);
    takeWmoHeading(rest);
    if (auto id = takeAwipsId(rest)) {
        awipsId = *id;
    }
    bytes = bytes.last(static_cast<qsizetype>(rest.size()));
}

/// A message begins with its code, whose first byte is 0 or 1; a zlib stream with 0x78 and a check.
bool beginsWithZlib(QByteArrayView bytes) {
    if (bytes.size() < 2 || bytes[0] != '\x78') {
        return false;
    }
    const unsigned head =
        static_cast<unsigned char>(bytes[0]) * 256U + static_cast<unsigned char>(bytes[1]);
    return head % 31 == 0;
}

/// Unpacks all frames, one after the other.
tl::expected<QByteArray, QString> unpackFrames(QByteArrayView rest, qsizetype fileSize) {
    QByteArray unpacked;
    while (beginsWithZlib(rest)) {
        const qsizetype offset = fileSize - rest.size();
        const auto frame =
            unpackZlib(rest, kMostUnpacked - static_cast<std::size_t>(unpacked.size()));
        if (!frame) {
            return tl::unexpected(
                QStringLiteral("zlib frame at byte %1 is damaged, cut off or longer than 8 MiB "
                               "with those before it")
                    .arg(offset)
            );
        }
        unpacked += *frame;
    }
    return unpacked;
}

/// The message that is left of so many bytes behind their headings.
Level3Message messageOf(std::string awipsId, QByteArrayView rest, qsizetype bytes, bool unpacked) {
    return {
        std::move(awipsId), rest.toByteArray(), static_cast<std::size_t>(bytes - rest.size()),
        unpacked};
}

} // namespace

tl::expected<Level3Message, QString> unwrapLevel3(QByteArrayView file) {
    std::string awipsId;
    QByteArrayView rest = file;
    takeHeadings(rest, awipsId);
    if (!beginsWithZlib(rest)) {
        return messageOf(std::move(awipsId), rest, file.size(), false);
    }
    const auto unpacked = unpackFrames(rest, file.size());
    if (!unpacked) {
        return tl::unexpected(unpacked.error());
    }
    rest = *unpacked;
    takeHeadings(rest, awipsId);
    return messageOf(std::move(awipsId), rest, unpacked->size(), true);
}

} // namespace raincast
