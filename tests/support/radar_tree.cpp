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

} // namespace

QByteArray columnGif(int redColumn, int ground) {
    static std::map<std::pair<int, int>, QByteArray> made; // it takes a while
    QByteArray& gif = made[{redColumn, ground}];
    if (gif.isEmpty()) {
        gif = makeGif({.screen = {600, 550}, .transparent = 0, .pixel = [=](int column, int) {
                           return column == redColumn ? 2 : ground;
                       }});
    }
    return gif;
}

QByteArray topoJpeg() {
    QImage image(600, 550, QImage::Format_RGB32);
    image.fill(qRgb(40, 120, 40));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(QImageWriter(&buffer, "jpeg").write(image));
    return bytes;
}

void publishLayers(HttpServer& server, const QString& site, const QString& range) {
    const QString overlays = "/ridge/Overlays/";
    const QString end = "_" + range;
    server.serve(
        overlays + "Cities/" + range + "/" + site + "_City" + end + ".gfw", worldFile(site)
    );
    server.serve(overlays + "Topo/" + range + "/" + site + "_Topo" + end + ".jpg", topoJpeg());
    server.serve(
        overlays + "Rivers/" + range + "/" + site + "_Rivers" + end + ".gif", columnGif(10)
    );
    server.serve(
        overlays + "Highways/" + range + "/" + site + "_Highways" + end + ".gif", columnGif(20)
    );
    const QString basemaps = "/weather_radar/basemaps/" + site;
    server.serve(basemaps + "_County" + end + ".gif", columnGif(30));
    server.serve(basemaps + "_City" + end + ".gif", columnGif(40));
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

QString framesPath(const QString& site, const QString& product) {
    return "/ridge/RadarImg/" + product + "/" + site + "/";
}

} // namespace raincast::test
