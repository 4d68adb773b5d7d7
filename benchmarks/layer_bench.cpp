// SPDX-License-Identifier: MIT
// How long the layers of a site take to paint at each detail, from data that are on the disk, and
// how many bytes they have.
#include "maps/layer_painter.h"
#include "maps/map_data.h"
#include "radar/catalogue/antenna_positions.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <vector>

namespace {

using namespace raincast;

constexpr int kTimes = 5;
constexpr int kDetails[] = {1, 2, 4};
constexpr double kAimOfTwo = 300; // milliseconds, for all layers of a site

/// What the layer's bytes are, and how long they take to paint: the median.
struct Cost {
    double milliseconds = 0;
    qsizetype bytes = 0;
};

Cost costOf(const MapData& data, LayerKind layer, const ImageGeometry& image) {
    std::vector<double> times;
    Cost cost;
    for (int i = 0; i < kTimes; ++i) {
        QElapsedTimer timer;
        timer.start();
        cost.bytes =
            paintLayer(layer, data, image, Range::shortRange).value_or(QByteArray()).size();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    cost.milliseconds = times[times.size() / 2];
    return cost;
}

void measure(const MapData& data, const AntennaPosition& antenna, int detail) {
    const ImageGeometry image(antenna.latitude, antenna.longitude, Range::shortRange, detail);
    std::printf("%s x%d:", std::string(antenna.id).c_str(), detail);
    double sum = 0;
    for (const LayerKind layer : kAllLayers) {
        const Cost cost = costOf(data, layer, image);
        sum += cost.milliseconds;
        std::printf(
            " %s %.0f ms, %lld bytes;", std::string(nameOf(layer)).c_str(), cost.milliseconds,
            static_cast<long long>(cost.bytes)
        );
    }
    std::printf(" all %.0f ms", sum);
    if (detail == 2) {
        std::printf(" (aim: %.0f)", kAimOfTwo);
    }
    std::printf("\n");
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QElapsedTimer timer;
    timer.start();
    const MapData data(MapDataFiles::find({}));
    static_cast<void>(data.cities({}));
    static_cast<void>(data.borders({}));
    std::printf(
        "Reading the packed data, once: %lld ms\n", static_cast<long long>(timer.elapsed())
    );
    // Plains, a coast with thousands of islands, and mountains.
    for (const char* site : {"TLX", "LWX", "MTX"}) {
        for (const int detail : kDetails) {
            measure(data, *findAntenna(site), detail);
        }
    }
    return 0;
}
