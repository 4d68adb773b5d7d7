// SPDX-License-Identifier: MIT
#pragma once

#include "tree/weather_warning.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>
#include <vector>

namespace raincast {

/// A message about a warning, as it was sent.
struct Alert {
    WeatherWarning warning;
    QString id;
    QString event; ///< as VTEC has it, the same of all providers: "BIS.TO.W.0002"; or empty
    FileTime sent = 0;
    QStringList references; ///< ids of messages that this one replaces
    bool isCancelled = false;
};

/// Reads the answer of api.weather.gov to /alerts/active: GeoJSON with longitudes first. Only the
/// kinds of warnings that have outlines; those without one are kept, for they may cancel others.
/// One sentence for an answer that is none.
[[nodiscard]] tl::expected<std::vector<Alert>, QString> readAlerts(const QByteArray& json);

/// The same for the Iowa Environmental Mesonet's sbw.geojson.
[[nodiscard]] tl::expected<std::vector<Alert>, QString> readStormWarnings(const QByteArray& json);

/// What holds by these messages: of each event the newest, without what is cancelled or replaced.
/// Some may have ended.
[[nodiscard]] std::vector<WeatherWarning> warningsOf(const std::vector<Alert>& alerts);

} // namespace raincast
