// SPDX-License-Identifier: MIT
#include "palette/warning_kinds.h"

#include "core/text.h"

#include <algorithm>
#include <array>

namespace raincast {

namespace {

struct Row {
    WarningKind kind;
    QStringView name;
    QStringView vtec;
    QRgb colour;
};

using Kind = WarningKind;

constexpr std::array<Row, kAllWarningKinds.size()> kRows = {{
    {Kind::specialWeatherStatement, Text::marked(u"Special Weather Statement"), u"", 0xFFFFE4B5},
    {Kind::dustStorm, Text::marked(u"Dust Storm Warning"), u"DS", 0xFFFFE4C4},
    {Kind::snowSquall, Text::marked(u"Snow Squall Warning"), u"SQ", 0xFFC71585},
    {Kind::specialMarine, Text::marked(u"Special Marine Warning"), u"MA", 0xFFFFA500},
    {Kind::flashFlood, Text::marked(u"Flash Flood Warning"), u"FF", 0xFF00FF00},
    {Kind::severeThunderstorm, Text::marked(u"Severe Thunderstorm Warning"), u"SV", 0xFFFFFF00},
    {Kind::extremeWind, Text::marked(u"Extreme Wind Warning"), u"EW", 0xFFFF8C00},
    {Kind::tornado, Text::marked(u"Tornado Warning"), u"TO", 0xFFFF0000},
}};

std::optional<WarningKind> kindWhere(QStringView text, QStringView Row::*member) {
    const auto found = std::find_if(kRows.begin(), kRows.end(), [&](const Row& row) {
        return !text.isEmpty() && row.*member == text;
    });
    return found == kRows.end() ? std::nullopt : std::optional(found->kind);
}

} // namespace

QString nameOf(WarningKind kind) {
    return kRows[static_cast<std::size_t>(kind)].name.toString();
}

std::optional<WarningKind> warningKindOfName(QStringView name) {
    return kindWhere(name, &Row::name);
}

std::optional<WarningKind> warningKindOfVtec(QStringView phenomenon) {
    return kindWhere(phenomenon, &Row::vtec);
}

QRgb colourOf(WarningKind kind) {
    return kRows[static_cast<std::size_t>(kind)].colour;
}

} // namespace raincast
