// SPDX-License-Identifier: MIT
#include "maps/shore_file.h"
#include "shore_maker.h"
#include "support/files.h"

#include <QPainterPath>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr GeoBox kBox{38.2, -77.8, 38.8, -77.2};
constexpr int kHalf = 32768;
constexpr int kWhole = 65535;

class ShoreFileTest : public ::testing::Test {
protected:
    /// Whether a place of the bin is land, as even-odd filling has it.
    [[nodiscard]] bool isLand(double latitude, double longitude) const {
        const auto bins = ShoreFile(m_path).in(kBox);
        EXPECT_THAT(bins, SizeIs(1));
        QPainterPath path;
        for (const auto& ring :
             bins.empty() ? std::vector<std::vector<GeoPosition>>() : landRings(bins[0])) {
            QPolygonF polygon;
            for (const GeoPosition& point : ring) {
                polygon += QPointF(point.longitude, point.latitude);
            }
            path.addPolygon(polygon);
            path.closeSubpath();
        }
        return path.contains(QPointF(longitude, latitude));
    }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath("shores.nc");
};

TEST_F(ShoreFileTest, PlacesPoints) {
    makeBinnedFile(m_path, false, {{1, true, {{0, 0}, {kWhole, 0}, {kHalf, kWhole}}}});
    const auto bins = ShoreFile(m_path).in(kBox);
    ASSERT_THAT(bins, SizeIs(1));
    ASSERT_THAT(bins[0].pieces, SizeIs(1));
    const ShorePiece& piece = bins[0].pieces[0];
    EXPECT_EQ(piece.level, 1);
    EXPECT_TRUE(piece.closed);
    ASSERT_THAT(piece.points, SizeIs(3));
    EXPECT_NEAR(piece.points[1].longitude, -77, 1e-9);
    EXPECT_NEAR(piece.points[2].longitude, -77.5, 1e-4);
    EXPECT_NEAR(piece.points[2].latitude, 39, 1e-9);
}

TEST_F(ShoreFileTest, ReadsTheBinsOfTheBoxOnly) {
    makeBinnedFile(m_path, false, {});
    EXPECT_THAT(ShoreFile(m_path).in({37.5, -78.5, 38.5, -77.5}), SizeIs(4));
    EXPECT_THAT(ShoreFile(m_path).in({12.5, 144.5, 12.6, 144.6}), SizeIs(1));
}

TEST_F(ShoreFileTest, AnIslandIsLandInTheSea) {
    makeBinnedFile(
        m_path, false, {{1, true, {{20000, 20000}, {40000, 20000}, {40000, 40000}, {20000, 40000}}}}
    );
    EXPECT_TRUE(isLand(38.45, -77.55));
    EXPECT_FALSE(isLand(38.9, -77.9));
    EXPECT_FALSE(isLand(38.05, -77.05));
}

TEST_F(ShoreFileTest, ALakeIsWaterInTheLand) {
    makeBinnedFile(
        m_path, false,
        {{2, true, {{20000, 20000}, {40000, 20000}, {40000, 40000}, {20000, 40000}}}}, {1, 1, 1, 1}
    );
    EXPECT_FALSE(isLand(38.45, -77.55));
    EXPECT_TRUE(isLand(38.9, -77.9));
    EXPECT_TRUE(isLand(38.05, -77.95));
}

struct Coast {
    const char* name;
    std::vector<std::pair<int, int>> points;
    std::vector<int> corners; // south-west, south-east, north-east, north-west
};

// One coast from border to border, in both directions, around every corner.
TEST_F(ShoreFileTest, ACoastKeepsTheCornersApart) {
    const Coast coasts[] = {
        {"east and west", {{kHalf, 0}, {kHalf, kWhole}}, {1, 0, 0, 1}},
        {"west and east", {{kHalf, 0}, {kHalf, kWhole}}, {0, 1, 1, 0}},
        {"north and south", {{0, kHalf}, {kWhole, kHalf}}, {0, 0, 1, 1}},
        {"south-west corner", {{0, kHalf}, {kHalf, 0}}, {1, 0, 0, 0}},
        {"south-east corner", {{kHalf, 0}, {kWhole, kHalf}}, {0, 1, 0, 0}},
        {"north-east corner", {{kWhole, kHalf}, {kHalf, kWhole}}, {0, 0, 1, 0}},
        {"north-west corner", {{kHalf, kWhole}, {0, kHalf}}, {1, 1, 1, 0}},
    };
    for (Coast coast : coasts) {
        for (int direction = 0; direction < 2; ++direction) {
            makeBinnedFile(m_path, false, {{1, false, coast.points}}, coast.corners);
            EXPECT_EQ(isLand(38.05, -77.95), coast.corners[0] == 1) << coast.name;
            EXPECT_EQ(isLand(38.05, -77.05), coast.corners[1] == 1) << coast.name;
            EXPECT_EQ(isLand(38.95, -77.05), coast.corners[2] == 1) << coast.name;
            EXPECT_EQ(isLand(38.95, -77.95), coast.corners[3] == 1) << coast.name;
            std::reverse(coast.points.begin(), coast.points.end());
        }
    }
}

TEST_F(ShoreFileTest, ReadsRivers) {
    makeBinnedFile(
        m_path, true, {{2, false, {{0, 0}, {kWhole, kWhole}}}, {5, false, {{1, 1}, {2, 2}}}}
    );
    const auto rivers = RiverFile(m_path).in(kBox);
    ASSERT_THAT(rivers, SizeIs(2));
    EXPECT_EQ(rivers[0].rank, 2);
    EXPECT_NEAR(rivers[0].points.at(1).latitude, 39, 1e-9);
    EXPECT_EQ(rivers[1].rank, 5);
}

TEST_F(ShoreFileTest, OtherFilesHaveNothing) {
    writeFile(m_path, "no netCDF");
    EXPECT_THAT(ShoreFile(m_path).in(kBox), IsEmpty());
    EXPECT_THAT(RiverFile(m_path).in(kBox), IsEmpty());
    { NetcdfMaker(m_path).ints("Bin_size_in_minutes", {60}); }
    EXPECT_THAT(ShoreFile(m_path).in(kBox), IsEmpty());
    EXPECT_THAT(RiverFile(m_path).in(kBox), IsEmpty());
}

TEST_F(ShoreFileTest, NumbersThatPointNowhereAreHarmless) {
    const std::vector<int> bins(360 * 180, 1'000'000);
    {
        const NetcdfMaker maker(m_path);
        maker.ints("Bin_size_in_minutes", {60});
        maker.ints("N_bins_in_360_longitude_range", {360});
        maker.ints("Id_of_first_segment_in_a_bin", bins);
        maker.ints("N_segments_in_a_bin", bins);
        maker.ints("Id_of_first_point_in_a_segment", {-5, 1'000'000});
        maker.ints("Embedded_npts_levels_exit_entry_for_a_segment", {-1, -1});
        maker.ints("Hierarchial_level_of_a_segment", {1, 1});
        maker.ints("N_points_for_a_segment", {-1, 9});
    }
    for (const ShoreBin& bin : ShoreFile(m_path).in(kBox)) {
        EXPECT_THAT(bin.pieces, IsEmpty());
    }
    EXPECT_THAT(RiverFile(m_path).in(kBox), IsEmpty());
}

} // namespace
} // namespace raincast
