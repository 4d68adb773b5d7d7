// SPDX-License-Identifier: MIT
// Whole logs of receivers, and what a map draws behind each of their lines.
#include "geo/geo_reference.h"
#include "map/overlay_gps_position.h"
#include "map/placed_image.h"
#include "position/feed_rmc_to_gps_position.h"
#include "position/nmea/nmea_reader.h"
#include "support/record_listeners.h"
#include "support/recorded_logs.h"
#include "support/test_clock.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace raincast {
namespace {

/// The picture of a position as a map keeps it: laid out whenever it is announced.
class Map : private Listener<COverlayObject> {
public:
    std::vector<ImagePixel> outline;

private:
    void onPublished(COverlayObject& object) override { object.Layout(outline, m_image); }

    const GeoReference m_image = test::placedImage();
};

struct Pictures {
    int disagreements = 0;  ///< the feed's own fix is another than the published one: by GGA
    int contradictions = 0; ///< icon, arrow and published position do not tell the same

    friend bool operator==(const Pictures&, const Pictures&) = default;
};

/// Replays a log and looks at the map behind every line, where it may be drawn at any time.
Pictures picturesOf(std::string_view log) {
    const TestClock clock;
    COverlayGPSPosition position;
    const CFeedRMC_to_GPSPosition feed(position);
    const Map map;
    const RecordListener<CDataGPSPosition> positions;
    NmeaReader reader;
    Pictures count;
    while (!log.empty()) {
        const std::string_view line = log.substr(0, log.find('\n') + 1);
        reader.feed(line.empty() ? log : line);
        log.remove_prefix(line.empty() ? log.size() : line.size());
        const bool fix = !positions.records.empty() && positions.records.back().valid();
        const bool drawnAsFix = position.icon() != MapIcon::noFix;
        const bool hasArrow = map.outline.size() > 1;
        count.disagreements += position.valid() != fix ? 1 : 0;
        count.contradictions += drawnAsFix != fix || (hasArrow && !drawnAsFix) ? 1 : 0;
    }
    return count;
}

// As receivers do: a fix by RMC that GGA calls none, and the other way round.
TEST(DrawnPositionTest, WhatIsDrawnNeverContradictsItself) {
    const std::string fix = "$GPRMC,093802,A,5213.1439,N,02100.6511,E,7.25,226.0,160305,,,A\r\n";
    const std::string lost = "$GPRMC,093803,V,5213.1439,N,02100.6511,E,7.25,226.0,160305,,,N\r\n";
    const std::string ggaFix = "$GPGGA,093803,5213.1439,N,02100.6511,E,1,09,1.0,137,M,36,M,,\r\n";
    const std::string ggaNone = "$GPGGA,093803,5213.1439,N,02100.6511,E,0,00,,,M,,M,,\r\n";
    EXPECT_EQ(picturesOf(fix + ggaNone + fix + ggaFix), (Pictures{1, 0}));
    EXPECT_EQ(picturesOf(lost + ggaFix + ggaNone + fix), (Pictures{1, 0}));
}

// All logs that there are: more of them need only be put into the folder.
TEST(RealDataDrawnPositionTest, WhatIsDrawnNeverContradictsItself) {
    if (!std::filesystem::is_directory(test::recordedLogs())) {
        GTEST_SKIP() << "no folder " << test::recordedLogs();
    }
    int logs = 0;
    int disagreeing = 0;
    for (const auto& entry : std::filesystem::directory_iterator(test::recordedLogs())) {
        const Pictures count = picturesOf(test::logIn(entry.path()));
        EXPECT_EQ(count.contradictions, 0) << entry.path().filename();
        ++logs;
        disagreeing += count.disagreements != 0 ? 1 : 0;
    }
    EXPECT_GT(disagreeing, 0) << "none of " << logs << " logs shows what this is about";
    RecordProperty("logs", logs);
    RecordProperty("disagreeing", disagreeing);
}

} // namespace
} // namespace raincast
