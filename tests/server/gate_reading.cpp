// SPDX-License-Identifier: MIT
#include "gate_reading.h"

#include "palette/nws_colours.h"

#include <QtEndian>

#include <bzlib.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <vector>

namespace raincast::test {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

struct Gates {
    double latitude = 0;
    double longitude = 0;
    double gateKm = 0.25;
    int perRadial = 0;
    /// By tenths of a degree clockwise from north: the data of the radial there.
    std::array<const uchar*, 3600> radials{};
    std::array<QRgb, 256> colours{};
    QByteArray unpacked;
};

int halfword(const uchar* at) {
    return qFromBigEndian<qint16>(at);
}

double floatAt(const uchar* at) {
    return std::bit_cast<float>(qFromBigEndian<quint32>(at));
}

/// The value of each gate's byte in the unit of its product's colours.
double valueOf(int code, const uchar* thresholds, int byte) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double linear = (halfword(thresholds) + (byte - 2) * halfword(thresholds + 2)) / 10.0;
    switch (code) {
    case 153:
        return byte < 2 ? none : linear;
    case 154: // metres a second, wanted as knots
        return byte == 0   ? none
               : byte == 1 ? std::numeric_limits<double>::infinity()
                           : linear * 3600 / 1852;
    default: // hundredths of an inch
        return byte < halfword(thresholds + 12)
                   ? none
                   : (byte - floatAt(thresholds + 4)) / floatAt(thresholds) / 100;
    }
}

std::optional<Gates> read(const QByteArray& bytes, Product product) {
    const qsizetype awips = bytes.indexOf("\r\r\n") + 3;
    const qsizetype begin = bytes.indexOf("\r\r\n", awips) + 3;
    const auto* const message = reinterpret_cast<const uchar*>(bytes.constData()) + begin;
    Gates gates;
    gates.unpacked.resize(4'000'000);
    auto size = static_cast<unsigned>(gates.unpacked.size());
    QByteArray packed = bytes.sliced(begin + 120);
    if (BZ2_bzBuffToBuffDecompress(
            gates.unpacked.data(), &size, packed.data(), static_cast<unsigned>(packed.size()), 0, 0
        ) != BZ_OK) {
        return std::nullopt;
    }
    gates.latitude = qFromBigEndian<qint32>(message + 20) / 1000.0;
    gates.longitude = qFromBigEndian<qint32>(message + 24) / 1000.0;
    for (int byte = 0; byte < 256; ++byte) {
        const auto value = static_cast<float>(valueOf(halfword(message + 30), message + 60, byte));
        gates.colours[static_cast<std::size_t>(byte)] =
            nwsColours(quantityOf(product))[nwsLevel(product, value)];
    }
    // A block of layers, of which the first has packet 16: its gates, and its radials.
    const auto* const packet = reinterpret_cast<const uchar*>(gates.unpacked.constData()) + 16;
    if (halfword(packet) != 16) {
        return std::nullopt;
    }
    gates.perRadial = halfword(packet + 4);
    const uchar* radial = packet + 14;
    for (int i = 0; i < halfword(packet + 12); ++i) {
        for (int tenth = 0; tenth < halfword(radial + 4); ++tenth) {
            gates.radials[static_cast<std::size_t>((halfword(radial + 2) + tenth) % 3600)] =
                radial + 6;
        }
        radial += 6 + halfword(radial);
    }
    return gates;
}

struct Bearing {
    double degrees;
    double km;
};

/// Vincenty's inverse formula on WGS 84.
Bearing bearingOf(double latitude1, double longitude1, double latitude2, double longitude2) {
    constexpr double a = 6378.137;
    constexpr double f = 1 / 298.257223563;
    constexpr double b = a * (1 - f);
    const double u1 = std::atan((1 - f) * std::tan(latitude1 * kDegree));
    const double u2 = std::atan((1 - f) * std::tan(latitude2 * kDegree));
    const double l = (longitude2 - longitude1) * kDegree;
    const double s1 = std::sin(u1);
    const double c1 = std::cos(u1);
    const double s2 = std::sin(u2);
    const double c2 = std::cos(u2);
    double lambda = l;
    double sinSigma = 0;
    double cosSigma = 1;
    double sigma = 0;
    double cos2Alpha = 1;
    double cosMiddle = 0;
    for (double before = 10; std::abs(lambda - before) > 1e-12;) {
        const double east = c2 * std::sin(lambda);
        const double north = c1 * s2 - s1 * c2 * std::cos(lambda);
        sinSigma = std::hypot(east, north);
        if (sinSigma == 0) {
            return {0, 0};
        }
        cosSigma = s1 * s2 + c1 * c2 * std::cos(lambda);
        sigma = std::atan2(sinSigma, cosSigma);
        const double sinAlpha = c1 * east / sinSigma;
        cos2Alpha = 1 - sinAlpha * sinAlpha;
        cosMiddle = cosSigma - 2 * s1 * s2 / cos2Alpha;
        const double c = f / 16 * cos2Alpha * (4 + f * (4 - 3 * cos2Alpha));
        before = lambda;
        lambda = l + (1 - c) * f * sinAlpha *
                         (sigma + c * sinSigma *
                                      (cosMiddle + c * cosSigma * (2 * cosMiddle * cosMiddle - 1)));
    }
    const double k = cos2Alpha * (a * a - b * b) / (b * b);
    const double aa = 1 + k / 16384 * (4096 + k * (-768 + k * (320 - 175 * k)));
    const double bb = k / 1024 * (256 + k * (-128 + k * (74 - 47 * k)));
    const double middle = 2 * cosMiddle * cosMiddle - 1;
    const double delta =
        bb * sinSigma *
        (cosMiddle + bb / 4 *
                         (cosSigma * middle - bb / 6 * cosMiddle * (4 * sinSigma * sinSigma - 3) *
                                                  (4 * cosMiddle * cosMiddle - 3)));
    const double azimuth = std::atan2(c2 * std::sin(lambda), c1 * s2 - s1 * c2 * std::cos(lambda));
    return {azimuth / kDegree, b * aa * (sigma - delta)};
}

QRgb colourAt(const Gates& gates, double degrees, double km) {
    const double azimuth = std::fmod(degrees + 720, 360);
    const uchar* const radial = gates.radials[static_cast<std::size_t>(azimuth * 10) % 3600];
    const auto gate = static_cast<int>(km / gates.gateKm);
    const bool isIn = radial != nullptr && gate < gates.perRadial;
    return gates.colours[isIn ? radial[gate] : 0];
}

/// The colour of a place, if all about it have the same.
std::optional<QRgb> clearColourAt(const Gates& gates, const Bearing& place) {
    const QRgb colour = colourAt(gates, place.degrees, place.km);
    for (const double turn : {-0.1, 0.0, 0.1}) {
        for (const double way : {-0.1, 0.0, 0.1}) {
            const double km = std::max(0.0, place.km + way);
            if (colourAt(gates, place.degrees + turn, km) != colour) {
                return std::nullopt;
            }
        }
    }
    return colour;
}

} // namespace

GateComparison compareWithGates(
    const QByteArray& bytes, Product product, double antennaLatitude, double antennaLongitude,
    const QImage& picture
) {
    GateComparison result;
    const auto gates = read(bytes, product);
    if (!gates) {
        return result;
    }
    const double step = 0.0071935 / std::cos(antennaLatitude * kDegree) *
                        (rangeOf(product) == Range::longRange ? 2 : 1);
    for (int row = 0; row < picture.height(); ++row) {
        for (int column = 0; column < picture.width(); ++column) {
            const auto colour = clearColourAt(
                *gates,
                bearingOf(
                    gates->latitude, gates->longitude, antennaLatitude - (row - 274.5) * step,
                    antennaLongitude + (column - 299.5) * step
                )
            );
            if (!colour) {
                continue;
            }
            ++result.compared;
            result.echoes += qAlpha(*colour) != 0 ? 1 : 0;
            const QRgb shown = picture.pixel(column, row);
            if (shown != *colour && result.differing++ == 0) {
                result.first = QStringLiteral("%1, %2: %3 instead of %4")
                                   .arg(column)
                                   .arg(row)
                                   .arg(shown, 8, 16)
                                   .arg(*colour, 8, 16);
            }
        }
    }
    return result;
}

} // namespace raincast::test
