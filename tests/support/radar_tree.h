// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace raincast {

class HttpServer;

/// A made-up image tree, as a radar image server and a basemap server publish it.
namespace test {

/// All pixels of one colour but for a column of red ones; transparent where `ground` is 0, green
/// where it is 3.
[[nodiscard]] QByteArray columnGif(int redColumn, int ground = 0);

/// The same as a sharp picture, with `detail` times as many pixels each way; the column is one of
/// its own.
[[nodiscard]] QByteArray sharpColumnGif(int detail, int redColumn, int ground = 0);

/// One even green, qRgb(40, 120, 40) as far as a JPEG keeps it.
[[nodiscard]] QByteArray topoJpeg();
/// The same as a sharp picture, bluish: qRgb(40, 120, 140).
[[nodiscard]] QByteArray sharpTopoJpeg(int detail);

/// The layers of a site of one range ("Short" or "Long"): an even topo and red columns: rivers at
/// 10, highways at 20, counties at 30, cities at 40. The images of every site have a place of their
/// own and cover 0.009 degrees a pixel; MUX's have their north-west corner at 39.6 degrees north,
/// 124.6 west. Sites that have a place: DAX, HNX, LWX, MUX, RGX.
void publishLayers(HttpServer& server, const QString& site, const QString& range = "Short");

/// The sharp layers of a site: an even topo, and columns of red pixels, as many as the described
/// ones have further right: rivers at 10 * detail + 1, and so on.
void publishSharpLayers(
    HttpServer& server, const QString& site, int detail, const QString& range = "Short"
);

/// Frames of a site by their times, such as "20190519_0554", and the listing that names them. The
/// n-th frame, counted from 0, has a red column at 200 + n. They take the place of those before.
void publishFrames(
    HttpServer& server, const QStringList& stamps, const QString& site,
    const QString& product = "N0R"
);

/// The sharp pictures of those frames. The n-th has its red column at (200 + n) * detail + 1.
void publishSharpFrames(
    HttpServer& server, const QStringList& stamps, const QString& site, int detail,
    const QString& product = "N0R"
);

/// Where the listing of a site's frames is.
[[nodiscard]] QString framesPath(const QString& site, const QString& product = "N0R");

} // namespace test
} // namespace raincast
