// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_reference.h"
#include "support/files.h"

#include <QTemporaryDir>

namespace raincast::test {

/// An image of 600 by 550 pixels, so many of them a degree, north up, whose pixel (0, 0) lies at
/// 41 N, 105 W.
inline GeoReference placedImage(double pixelsPerDegree = 100) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("image.gfw"));
    const QByteArray step = QByteArray::number(1 / pixelsPerDegree, 'g', 17);
    writeFile(file, step + "\n0\n0\n-" + step + "\n-105.0\n41.0\n");
    GeoReference reference;
    EXPECT_TRUE(reference.loadWorldFile(file.toStdString(), 600, 550));
    return reference;
}

/// The middle of a pixel of placedImage().
inline GeoPosition positionOf(int column, int row) {
    return {41 - (row + 0.5) / 100, -105 + (column + 0.5) / 100};
}

} // namespace raincast::test
