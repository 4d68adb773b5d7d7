// SPDX-License-Identifier: MIT
#include "reading/level_text.h"

#include "core/text.h"
#include "palette/nws_colours.h"
#include "units/units.h"

#include <cmath>

namespace raincast {

namespace {

constexpr double kMillimetresPerInch = 25.4;

// As many digits as tell one level from the next. Floats are not exact; what is shown is.
QString rainText(double inches) {
    if (!metricDistances()) {
        return Text::number(inches, 'g', 3);
    }
    const double millimetres = inches * kMillimetresPerInch;
    const double scale = millimetres < 10 ? 10 : 1;
    return Text::number(std::round(millimetres * scale) / scale, 'g', 6);
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
        return Text::tr("%1 or more").arg(from + unit);
    }
    // Reflectivity comes in whole numbers.
    const double last = range.below - (quantity == Quantity::reflectivity ? 1 : 0);
    const QString to = numberText(quantity, last) + unit;
    return range.from <= 0 ? Text::tr("up to %1").arg(to) : Text::tr("%1 to %2").arg(from, to);
}

QString velocityText(const std::optional<NwsRange>& range, std::size_t level) {
    if (!range) {
        return level == 0 ? Text::tr("no echo") : Text::tr("range folded");
    }
    if (range->below >= 0) {
        return Text::tr("%1 away").arg(rangeText(Quantity::velocity, *range));
    }
    const NwsRange towards{-range->below, -range->from};
    return Text::tr("%1 towards radar").arg(rangeText(Quantity::velocity, towards));
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
                   ? Text::tr("no rain")
                   : Text::tr("below %1 %2")
                         .arg(numberText(quantity, range->below), levelUnit(quantity));
    }
    return rangeText(quantity, *range);
}

QString levelLabel(Product product, std::size_t level) {
    const Quantity quantity = quantityOf(product);
    const auto range = nwsRange(product, level);
    if (!range) {
        return Text::tr("RF");
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
        return metricDistances() ? QStringLiteral("mm") : Text::tr("in");
    }
    return QStringLiteral("dBZ");
}

bool metricDistances() {
    const std::uint32_t unit = CUnits::global().units;
    return unit == CUnits::kKilometres || unit == CUnits::kMetres;
}

} // namespace raincast
