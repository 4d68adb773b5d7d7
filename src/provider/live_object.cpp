// SPDX-License-Identifier: MIT
#include "provider/live_object.h"

#include "core/utc_date_time.h"

#include <QDateTime>

#include <algorithm>

namespace raincast {

namespace {

constexpr std::size_t kTimeLength = 19; // "2026_11_21_17_49_12"
constexpr std::size_t kMostProductLength = 8;

std::string begin(const LiveName& name) {
    return name.site + '_' + name.product + '_';
}

std::string text(FileTime time, const char* format) {
    return utcDateTime(time).toString(QLatin1String(format)).toStdString();
}

bool isWord(std::string_view text, std::size_t least, std::size_t most) {
    return text.size() >= least && text.size() <= most &&
           std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
           });
}

} // namespace

std::string keyOf(const LiveName& name, FileTime time) {
    return begin(name) + text(time, "yyyy_MM_dd_HH_mm_ss");
}

std::string dayKeyOf(const LiveName& name, FileTime time) {
    return begin(name) + text(time, "yyyy_MM_dd_");
}

std::optional<LiveObject> readKey(std::string_view key) {
    if (key.size() < kTimeLength + 2) {
        return std::nullopt;
    }
    const std::string_view time = key.substr(key.size() - kTimeLength);
    const std::string_view rest = key.substr(0, key.size() - kTimeLength - 1);
    const std::size_t line = rest.find('_');
    if (line == std::string_view::npos || key[rest.size()] != '_' ||
        !isWord(rest.substr(0, line), 3, 3) ||
        !isWord(rest.substr(line + 1), 1, kMostProductLength)) {
        return std::nullopt;
    }
    QDateTime parsed = QDateTime::fromString(
        QString::fromLatin1(time.data(), static_cast<qsizetype>(time.size())),
        QStringLiteral("yyyy_MM_dd_HH_mm_ss")
    );
    parsed.setTimeSpec(Qt::UTC);
    if (!parsed.isValid() || parsed.toSecsSinceEpoch() < 0) {
        return std::nullopt;
    }
    LiveObject object{
        {std::string(rest.substr(0, line)), std::string(rest.substr(line + 1))},
        kUnixEpoch + parsed.toSecsSinceEpoch() * kFileTimePerSecond};
    return object;
}

} // namespace raincast
