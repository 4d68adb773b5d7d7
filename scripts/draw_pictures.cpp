// SPDX-License-Identifier: MIT
// Draws the picture files of this folder anew, into the folder given: about.png, the picture of the
// "About" box, and texture.jpg, a tile of cloth without seams.
#include "app/drawn_icon.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPixmap>

#include <cmath>
#include <cstdio>
#include <numbers>

namespace {

constexpr int kAboutExtent = 256;
constexpr int kTileExtent = 96;
constexpr int kThread = 8; // pixels
constexpr int kQuality = 88;

// Threads that pass over and under each other, in a rainy blue.
QRgb clothAt(int x, int y) {
    const bool across = (x / kThread + y / kThread) % 2 == 0;
    const int along = across ? y % kThread : x % kThread;
    const double round = std::sin(std::numbers::pi * (along + 0.5) / kThread);
    const double wave = std::sin(2 * std::numbers::pi * (x + 2 * y) / kTileExtent);
    const double light = 0.78 + 0.16 * round + (across ? 0.04 : -0.02) + 0.02 * wave;
    const auto shade = [light](int full) { return static_cast<int>(std::lround(full * light)); };
    return qRgb(shade(150), shade(175), shade(200));
}

QImage tile() {
    QImage image(kTileExtent, kTileExtent, QImage::Format_RGB32);
    for (int y = 0; y < kTileExtent; ++y) {
        for (int x = 0; x < kTileExtent; ++x) {
            image.setPixel(x, y, clothAt(x, y));
        }
    }
    return image;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QDir folder(QCoreApplication::arguments().value(1, QStringLiteral(".")));
    const QSize about(kAboutExtent, kAboutExtent);
    const bool drawn =
        raincast::programIcon().pixmap(about).save(folder.filePath(QStringLiteral("about.png"))) &&
        tile().save(folder.filePath(QStringLiteral("texture.jpg")), "JPG", kQuality);
    if (!drawn) {
        std::fputs("The pictures could not be written.\n", stderr);
    }
    return drawn ? 0 : 1;
}
