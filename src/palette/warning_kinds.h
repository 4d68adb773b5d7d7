// SPDX-License-Identifier: MIT
#pragma once

#include <QRgb>
#include <QString>

#include <array>
#include <optional>

namespace raincast {

/// Kinds of warnings that have an outline, the least dangerous first.
enum class WarningKind {
    specialWeatherStatement,
    dustStorm,
    snowSquall,
    specialMarine,
    flashFlood,
    severeThunderstorm,
    extremeWind,
    tornado,
};

inline constexpr std::array kAllWarningKinds = {
    WarningKind::specialWeatherStatement,
    WarningKind::dustStorm,
    WarningKind::snowSquall,
    WarningKind::specialMarine,
    WarningKind::flashFlood,
    WarningKind::severeThunderstorm,
    WarningKind::extremeWind,
    WarningKind::tornado,
};

/// "Tornado Warning", as the National Weather Service writes it.
[[nodiscard]] QString nameOf(WarningKind kind);
[[nodiscard]] std::optional<WarningKind> warningKindOfName(QStringView name);

/// The kind of an event that VTEC gives two letters, "TO" for a tornado; nothing where it has none.
[[nodiscard]] std::optional<WarningKind> warningKindOfVtec(QStringView phenomenon);

/// The colour of its outline; each kind has another one.
[[nodiscard]] QRgb colourOf(WarningKind kind);

} // namespace raincast
