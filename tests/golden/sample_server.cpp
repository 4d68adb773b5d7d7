// SPDX-License-Identifier: MIT
#include "sample_server.h"

#include "support/gif_maker.h"
#include "weather/servers_setting.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QtMath>

namespace raincast::test {

namespace {

constexpr QSize kMap(600, 550);
const QRgb kClear = 0xFFFFFFFF;

int distance(int x, int y, int toX, int toY) {
    return qRound(qSqrt((x - toX) * (x - toX) + (y - toY) * (y - toY)));
}

// A shower of three strengths, further east in each frame, beside the radar.
QByteArray radarGif(int frame) {
    return makeGif(
        {.screen = kMap,
         .colours = {kClear, 0xFF00C800, 0xFFE7C000, 0xFFFF0000},
         .transparent = 0,
         .pixel =
             [frame](int x, int y) {
                 const int away = distance(x, y, 200 + 40 * frame, 200);
                 return away < 20 ? 3 : away < 50 ? 2 : away < 90 ? 1 : 0;
             }}
    );
}

QByteArray linesGif(QRgb colour, int spacing) {
    return makeGif(
        {.screen = kMap,
         .colours = {kClear, colour},
         .transparent = 0,
         .pixel = [spacing](
                      int x, int y
                  ) { return x % spacing == spacing / 2 || y % spacing == spacing / 3 ? 1 : 0; }}
    );
}

QByteArray dotsGif() {
    return makeGif(
        {.screen = kMap,
         .colours = {kClear, 0xFF000000},
         .transparent = 0,
         .pixel = [](int x, int y) { return distance(x % 150, y % 150, 60, 70) < 4 ? 1 : 0; }}
    );
}

// Land and, in the west, the sea.
QByteArray reliefJpeg() {
    QImage map(kMap, QImage::Format_RGB32);
    map.fill(QColor(232, 226, 202));
    QPainter(&map).fillRect(0, 0, 144, kMap.height(), QColor(178, 206, 226));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    map.save(&buffer, "jpeg", 100);
    return bytes;
}

struct Published {
    QString path;
    QByteArray body;
};

std::vector<Published> publishedFiles() {
    const QString overlays = "/ridge/Overlays/";
    const QString basemaps = "/weather_radar/basemaps/";
    std::vector<Published> files{
        {overlays + "Cities/Short/MUX_City_Short.gfw", "0.009\n0\n0\n-0.009\n-124.6\n39.6\n"},
        {overlays + "Topo/Short/MUX_Topo_Short.jpg", reliefJpeg()},
        {overlays + "Rivers/Short/MUX_Rivers_Short.gif", linesGif(0xFF3C78D8, 230)},
        {overlays + "Highways/Short/MUX_Highways_Short.gif", linesGif(0xFFB45F06, 170)},
        {basemaps + "MUX_County_Short.gif", linesGif(0xFF909090, 90)},
        {basemaps + "MUX_City_Short.gif", dotsGif()},
    };
    const QString frames = "/ridge/RadarImg/N0R/MUX/";
    QByteArray links;
    for (int frame = 0; frame < 3; ++frame) {
        const QString name = QStringLiteral("MUX_20190519_05%1_N0R.gif").arg(34 + 10 * frame);
        links += "\"" + name.toLatin1() + "\" ";
        files.push_back({frames + name, radarGif(frame)});
    }
    files.push_back({frames, links});
    return files;
}

} // namespace

SampleServer::SampleServer() : m_clock(fromCalendar({2019, 5, 19, 6, 0})) {
    static const std::vector<Published> files = publishedFiles(); // they take a while to make
    Clock::use(&m_clock);
    ServersSetting::set({m_server.host(), m_server.host()});
    for (const Published& file : files) {
        m_server.serve(file.path, file.body);
    }
}

SampleServer::~SampleServer() {
    ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
    Clock::use(nullptr);
}

} // namespace raincast::test
