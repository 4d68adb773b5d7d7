// SPDX-License-Identifier: MIT
// What placing things on the map costs: one position or point at a time, in nanoseconds, beside a
// sine and a cosine.
#include "geo/geo_reference.h"
#include "geo/local_frame.h"
#include "radar/catalogue/site_list.h"
#include "radar/catalogue/sites.h"
#include "support/figure.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace raincast {
namespace {

// Positions all over the contiguous states, so that no branch is learned by heart.
GeoPosition somewhere() {
    static std::array<GeoPosition, 1024> positions = [] {
        std::array<GeoPosition, 1024> made;
        unsigned seed = 1;
        const auto next = [&seed] { return (seed = seed * 1103515245U + 12345U) >> 16U; };
        for (GeoPosition& position : made) {
            position = {25.0 + next() % 2400 / 100.0, -124.0 + next() % 5700 / 100.0};
        }
        return made;
    }();
    static std::size_t index = 0;
    return positions[index++ % positions.size()];
}

GeoReference publishedImage() {
    std::string name = (std::filesystem::temp_directory_path() / "geo-bench-XXXXXX").string();
    GeoReference geo;
    if (mkdtemp(name.data()) == nullptr) {
        return geo;
    }
    const std::filesystem::path file = std::filesystem::path(name) / "image.gfw";
    std::ofstream(file) << "0.009025697 0 0 -0.009025697 -124.60164 39.632776";
    geo.loadWorldFile(file, 600, 550);
    std::filesystem::remove_all(name);
    return geo;
}

void sineAndCosine(benchmark::State& state) {
    for (auto _ : state) {
        const GeoPosition position = somewhere();
        benchmark::DoNotOptimize(std::sin(position.latitude) + std::cos(position.longitude));
    }
}
BENCHMARK(sineAndCosine);

void nearestSite(benchmark::State& state) {
    for (auto _ : state) {
        const GeoPosition position = somewhere();
        benchmark::DoNotOptimize(NearestSite(position.latitude, position.longitude));
    }
}
BENCHMARK(nearestSite);

void stationList(benchmark::State& state) {
    for (auto _ : state) {
        const GeoPosition position = somewhere();
        benchmark::DoNotOptimize(listSites(position.latitude, position.longitude, u"MUX"));
    }
}
BENCHMARK(stationList);

void geoToPixel(benchmark::State& state) {
    const GeoReference geo = publishedImage();
    for (auto _ : state) {
        benchmark::DoNotOptimize(geo.geoToPixel(somewhere()));
    }
}
BENCHMARK(geoToPixel);

void geoToPixelForDrawing(benchmark::State& state) {
    const GeoReference geo = publishedImage();
    for (auto _ : state) {
        benchmark::DoNotOptimize(geo.geoToPixelForDrawing(somewhere()));
    }
}
BENCHMARK(geoToPixelForDrawing);

void pixelToGeo(benchmark::State& state) {
    const GeoReference geo = publishedImage();
    ImagePoint point;
    for (auto _ : state) {
        point.column = point.column < 600 ? point.column + 1 : 0;
        benchmark::DoNotOptimize(geo.pixelToGeo(point));
    }
}
BENCHMARK(pixelToGeo);

void localFrameOrigin(benchmark::State& state) {
    LocalFrame frame;
    for (auto _ : state) {
        frame.setOrigin(somewhere());
        benchmark::DoNotOptimize(frame);
    }
}
BENCHMARK(localFrameOrigin);

void localFrameDistance(benchmark::State& state) {
    const LocalFrame frame({37.0, -122.0});
    for (auto _ : state) {
        benchmark::DoNotOptimize(frame.distanceMetres(somewhere()));
    }
}
BENCHMARK(localFrameDistance);

/// Prints below the table what each comes to beside a sine and a cosine.
class FigureReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            m_times[run.benchmark_name()] = run.GetAdjustedCPUTime();
        }
    }
    void Finalize() override {
        for (const auto& [name, time] : m_times) {
            const double peer = m_times["sineAndCosine"];
            if (name != "sineAndCosine") {
                print(Figure::of(time, peer, "ns", "Geography: " + name, "a sine and a cosine"));
            }
        }
    }

private:
    std::map<std::string, double> m_times;
};

} // namespace
} // namespace raincast

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    raincast::FigureReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
