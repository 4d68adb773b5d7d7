// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_reference.h"
#include "support/files.h"

#include <QTemporaryDir>

namespace raincast::test {

/// An image of 600 by 550 pixels of `step` degrees, north up, whose pixel (0, 0) lies at 41 N,
/// 105 W.
inline GeoReference placedImage(double step = 0.01) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("image.gfw"));
    const QByteArray size = QByteArray::number(step, 'g', 17);
    writeFile(file, size + "\n0\n0\n-" + size + "\n-105.0\n41.0\n");
    GeoReference reference;
    EXPECT_TRUE(reference.loadWorldFile(file.toStdString(), 600, 550));
    return reference;
}

/// The middle of a pixel of placedImage().
inline GeoPosition positionOf(int column, int row, double step = 0.01) {
    return {41 - (row + 0.5) * step, -105 + (column + 0.5) * step};
}

} // namespace raincast::test
