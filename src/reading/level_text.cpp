// SPDX-License-Identifier: MIT
#include "reading/level_text.h"

#include "palette/nws_colours.h"
#include "units/units.h"

#include <cmath>

namespace raincast {

namespace {

constexpr double kMillimetresPerInch = 25.4;

// As many digits as tell one level from the next. Floats are not exact; what is shown is.
QString rainText(double inches) {
    if (!metricDistances()) {
        return QString::number(inches, 'g', 3);
    }
    const double millimetres = inches * kMillimetresPerInch;
    const double scale = millimetres < 10 ? 10 : 1;
    return QString::number(std::round(millimetres * scale) / scale);
}

QString numberText(Quantity quantity, double value) {
    switch (quantity) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return QString::number(std::lround(CUnits::global().speedOf(value)));
    case Quantity::precipitation:
        return rainText(value);
    }
    return QString::number(std::lround(value));
}

/// A range of which both ends are 0 or above.
QString rangeText(Quantity quantity, const NwsRange& range) {
    const QString unit = u' ' + levelUnit(quantity);
    const QString from = numberText(quantity, range.from);
    if (std::isinf(range.below)) {
        return from + unit + QStringLiteral(" or more");
    }
    // Reflectivity comes in whole numbers.
    const double last = range.below - (quantity == Quantity::reflectivity ? 1 : 0);
    const QString to = numberText(quantity, last) + unit;
    return range.from <= 0 ? QStringLiteral("up to ") + to : from + QStringLiteral(" to ") + to;
}

QString velocityText(const std::optional<NwsRange>& range, std::size_t level) {
    if (!range) {
        return level == 0 ? QStringLiteral("no echo") : QStringLiteral("range folded");
    }
    return range->below < 0 ? rangeText(Quantity::velocity, {-range->below, -range->from}) +
                                  QStringLiteral(" towards radar")
                            : rangeText(Quantity::velocity, *range) + QStringLiteral(" away");
}

} // namespace

QString levelText(Product product, std::size_t level) {
    const Quantity quantity = quantityOf(product);
    const auto range = nwsRange(product, level);
    if (quantity == Quantity::velocity) {
        return velocityText(range, level);
    }
    if (level == 0) {
        return quantity == Quantity::precipitation
                   ? QStringLiteral("no rain")
                   : QStringLiteral("below %1 %2")
                         .arg(numberText(quantity, range->below), levelUnit(quantity));
    }
    return rangeText(quantity, *range);
}

QString levelLabel(Product product, std::size_t level) {
    const Quantity quantity = quantityOf(product);
    const auto range = nwsRange(product, level);
    if (!range) {
        return QStringLiteral("RF");
    }
    return range->below < 0 ? u'-' + numberText(quantity, -range->below)
                            : numberText(quantity, range->from);
}

QString levelUnit(Quantity quantity) {
    switch (quantity) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return CUnits::global().speedUnit();
    case Quantity::precipitation:
        return metricDistances() ? QStringLiteral("mm") : QStringLiteral("in");
    }
    return QStringLiteral("dBZ");
}

bool metricDistances() {
    const std::uint32_t unit = CUnits::global().units;
    return unit == CUnits::kKilometres || unit == CUnits::kMetres;
}

} // namespace raincast
