// SPDX-License-Identifier: MIT
#pragma once

#include "tree/weather_warning.h"

#include <QRgb>
#include <QStringView>

#include <optional>

namespace raincast {

/// "Tornado Warning", as the National Weather Service writes it.
[[nodiscard]] QString nameOf(WarningKind kind);
[[nodiscard]] std::optional<WarningKind> warningKindOfName(QStringView name);

/// The kind of an event that VTEC gives two letters, "TO" for a tornado; nothing where it has none.
[[nodiscard]] std::optional<WarningKind> warningKindOfVtec(QStringView phenomenon);

/// The colour of its outline; each kind has another one.
[[nodiscard]] QRgb colourOf(WarningKind kind);

} // namespace raincast
