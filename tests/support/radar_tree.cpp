// SPDX-License-Identifier: MIT
#include "support/radar_tree.h"

#include "support/gif_maker.h"
#include "support/http_server.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <tuple>
#include <utility>

namespace raincast::test {

namespace {

/// The north-west corner of a site's images, in degrees as the world file has them.
struct Corner {
    const char* site;
    const char* longitude;
    const char* latitude;
};
// Each site's own, with the radar near the middle of the image.
constexpr Corner kCorners[] = {
    {"DAX", "-124.4", "41.0"}, {"HNX", "-122.2", "38.7"}, {"LWX", "-80.2", "41.4"},
    {"MUX", "-124.6", "39.6"}, {"RGX", "-122.2", "42.2"},
};

QByteArray worldFile(const QString& site) {
    const auto* const corner =
        std::find_if(std::begin(kCorners), std::end(kCorners), [&site](const Corner& each) {
            return QLatin1String(each.site) == site;
        });
    if (corner == std::end(kCorners)) {
        ADD_FAILURE() << qPrintable(site) << " has no place on the earth yet";
        return {};
    }
    return QByteArray("0.009\n0\n0\n-0.009\n") + corner->longitude + '\n' + corner->latitude + '\n';
}

QByteArray evenJpeg(QSize size, QRgb colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(QImageWriter(&buffer, "jpeg").write(image));
    return bytes;
}

/// The pictures of a site's layers.
void publishPictures(HttpServer& server, const QString& site, const QString& range, int detail) {
    const QString sharp = detail > 1 ? QStringLiteral("x%1/").arg(detail) : QString();
    const QString overlays = "/ridge/" + sharp + "Overlays/";
    const QString basemaps = "/weather_radar/" + sharp + "basemaps/" + site;
    const auto column = [detail](int described) {
        const int moved = detail > 1 ? 1 : 0;
        return sharpColumnGif(detail, described * detail + moved);
    };
    const QString end = "_" + range;
    server.serve(
        overlays + "Topo/" + range + "/" + site + "_Topo" + end + ".jpg",
        detail > 1 ? sharpTopoJpeg(detail) : topoJpeg()
    );
    server.serve(overlays + "Rivers/" + range + "/" + site + "_Rivers" + end + ".gif", column(10));
    server.serve(
        overlays + "Highways/" + range + "/" + site + "_Highways" + end + ".gif", column(20)
    );
    server.serve(basemaps + "_County" + end + ".gif", column(30));
    server.serve(basemaps + "_City" + end + ".gif", column(40));
}

} // namespace

QByteArray columnGif(int redColumn, int ground) {
    return sharpColumnGif(1, redColumn, ground);
}

QByteArray sharpColumnGif(int detail, int redColumn, int ground) {
    static std::map<std::tuple<int, int, int>, QByteArray> made; // it takes a while
    QByteArray& gif = made[{detail, redColumn, ground}];
    if (gif.isEmpty()) {
        gif = makeGif(
            {.screen = {600 * detail, 550 * detail},
             .transparent = 0,
             .pixel = [=](int column, int) { return column == redColumn ? 2 : ground; }}
        );
    }
    return gif;
}

QByteArray topoJpeg() {
    return evenJpeg({600, 550}, qRgb(40, 120, 40));
}

QByteArray sharpTopoJpeg(int detail) {
    return evenJpeg(QSize(600, 550) * detail, qRgb(40, 120, 140));
}

void publishLayers(HttpServer& server, const QString& site, const QString& range) {
    server.serve(
        "/ridge/Overlays/Cities/" + range + "/" + site + "_City_" + range + ".gfw", worldFile(site)
    );
    publishPictures(server, site, range, 1);
}

void publishSharpLayers(HttpServer& server, const QString& site, int detail, const QString& range) {
    publishPictures(server, site, range, detail);
}

void publishFrames(
    HttpServer& server, const QStringList& stamps, const QString& site, const QString& product
) {
    const QString folder = framesPath(site, product);
    QByteArray links;
    for (const QString& stamp : stamps) {
        const QString name = site + "_" + stamp + "_" + product + ".gif";
        links += "\"" + name.toLatin1() + "\" ";
        server.serve(folder + name, columnGif(200 + static_cast<int>(stamps.indexOf(stamp))));
    }
    server.serve(folder, links);
}

void publishSharpFrames(
    HttpServer& server, const QStringList& stamps, const QString& site, int detail,
    const QString& product
) {
    for (const QString& stamp : stamps) {
        const int column = (200 + static_cast<int>(stamps.indexOf(stamp))) * detail + 1;
        server.serve(
            QStringLiteral("/ridge/x%1/RadarImg/%2/%3/%3_%4_%2.gif")
                .arg(QString::number(detail), product, site, stamp),
            sharpColumnGif(detail, column)
        );
    }
}

QString framesPath(const QString& site, const QString& product) {
    return "/ridge/RadarImg/" + product + "/" + site + "/";
}

} // namespace raincast::test
