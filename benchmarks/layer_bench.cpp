// SPDX-License-Identifier: MIT
// How long the layers of a site take to paint at each detail, from data that are on the disk, and
// how many bytes they have; and the first ones that a program paints, which find nothing read.
#include "maps/layer_painter.h"
#include "maps/map_data.h"
#include "nexrad/frame_painter.h"
#include "radar/catalogue/antenna_positions.h"
#include "support/figure.h"

#include <QGuiApplication>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace raincast;

constexpr int kTimes = 5;
constexpr int kDetails[] = {1, 2, 4};
constexpr double kAimOfTwo = 300; // milliseconds, for all layers of a site
constexpr double kAimCold = 60;
constexpr int kColdRuns = 7;
constexpr int kDeadline = 60'000; // milliseconds
constexpr char kCold[] = "--cold";
// Plains, a coast with thousands of islands, and mountains.
constexpr const char* kSites[] = {"TLX", "LWX", "MTX"};

double processorMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// What the layer's bytes are, and how long they take to paint: the median.
struct Cost {
    double milliseconds = 0;
    qsizetype bytes = 0;
};

Cost costOf(const MapData& data, LayerKind layer, const ImageGeometry& image) {
    std::vector<double> times;
    Cost cost;
    for (int i = 0; i < kTimes; ++i) {
        const double before = processorMilliseconds();
        cost.bytes =
            paintLayer(layer, data, image, Range::shortRange).value_or(QByteArray()).size();
        times.push_back(processorMilliseconds() - before);
    }
    std::sort(times.begin(), times.end());
    cost.milliseconds = times[times.size() / 2];
    return cost;
}

/// Gives the milliseconds of all layers.
double measure(const MapData& data, const AntennaPosition& antenna, int detail) {
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
    std::printf(" all %.0f ms\n", sum);
    return sum;
}

/// Paints the first layers of a program that has read nothing yet, and says what that took, in
/// milliseconds: for coldOnes(), in a process of its own.
int paintCold() {
    const double before = processorMilliseconds();
    const MapData data(MapDataFiles::find({}));
    const AntennaPosition& antenna = *findAntenna(kSites[0]);
    const ImageGeometry image(antenna.latitude, antenna.longitude, Range::shortRange, 1);
    for (const LayerKind layer : kAllLayers) {
        static_cast<void>(paintLayer(layer, data, image, Range::shortRange));
    }
    std::printf("%f\n", processorMilliseconds() - before);
    return 0;
}

double paintColdElsewhere() {
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(kCold)});
    if (!process.waitForFinished(kDeadline) || process.exitCode() != 0) {
        std::fprintf(stderr, "The layers cannot be painted.\n");
        std::exit(1);
    }
    return process.readAllStandardOutput().toDouble();
}

double emptyPicture() {
    const double before = processorMilliseconds();
    static_cast<void>(emptyFrame());
    return processorMilliseconds() - before;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (QCoreApplication::arguments().value(1) == QString::fromLatin1(kCold)) {
        return paintCold();
    }
    print(Figure::of(
              toldRatioOf(kColdRuns, paintColdElsewhere, emptyPicture),
              "First layers of a site, cold", "an empty picture"
    )
              .withAim(AimOf::own, kAimCold));
    const MapData data(MapDataFiles::find({}));
    static_cast<void>(data.cities({}));
    static_cast<void>(data.borders({}));
    const Ratio empty = toldRatioOf(kTimes, emptyPicture, emptyPicture);
    for (const int detail : kDetails) {
        double sum = 0;
        for (const char* site : kSites) {
            sum += measure(data, *findAntenna(site), detail);
        }
        const std::string sharp = detail > 1 ? ", x" + std::to_string(detail) : "";
        const Figure figure = Figure::of(
            sum / std::size(kSites), empty.firstMilliseconds, "ms",
            "Further layers of a site" + sharp, "an empty picture"
        );
        print(detail == 2 ? figure.withAim(AimOf::own, kAimOfTwo) : figure);
    }
    return 0;
}
