// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QPoint>
#include <QRgb>
#include <QSize>

#include <functional>

namespace raincast {

/// A GIF to be made for a test. The pixel function gives the colour index of a column and row.
struct GifToMake {
    QSize screen{8, 8};
    QPoint place{0, 0};
    QSize image{}; ///< the screen's size unless set
    QList<QRgb> colours{0xFF000000, 0xFFFFFFFF, 0xFFFF0000, 0xFF00FF00};
    int transparent = -1; ///< an index, or -1 for none
    bool interlaced = false;
    bool localColours = false; ///< the colours stand with the image, not with the screen
    int images = 1;            ///< how many; from the second on all pixels have index 0
    std::function<int(int column, int row)> pixel = [](int, int) { return 0; };
};

/// The file's bytes, as giflib writes them.
[[nodiscard]] QByteArray makeGif(const GifToMake& wanted);

/// A GIF of a few bytes whose screen is said to have this size.
[[nodiscard]] QByteArray gifThatClaims(QSize screen);

} // namespace raincast
