// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/product.h"

#include <QByteArray>
#include <QImage>
#include <QString>

namespace raincast::test {

/// How a picture of a digital product compares with the product's gates.
struct GateComparison {
    int compared = 0;  ///< pixels in a neighbourhood of one colour
    int echoes = 0;    ///< those of them that are not transparent
    int differing = 0; ///< those that have another colour
    QString first;     ///< of those: where, and which colours
};

/// Reads a product's bytes (an object of the bucket: headings, a message, radials packed with
/// bzip2) with nothing that the programs read it with, finds the gate of each pixel's centre by a
/// geodesic of the ellipsoid, and compares colours. Pixels whose gates within 0.1 degrees and 100
/// metres differ in colour are left out: rounding may put them on either side.
[[nodiscard]] GateComparison compareWithGates(
    const QByteArray& bytes, Product product, double antennaLatitude, double antennaLongitude,
    const QImage& picture
);

} // namespace raincast::test
