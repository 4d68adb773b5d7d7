// SPDX-License-Identifier: MIT
#include "maps/relief_file.h"
#include "netcdf_maker.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

double heightAt(const ReliefGrid& grid, GeoPosition position) {
    std::vector<double> heights;
    ReliefProfiles(grid, {position.longitude}).at(position.latitude, heights);
    return heights.at(0);
}

TEST(ReliefGridTest, GoesThroughItsPoints) {
    const ReliefGrid grid({40, -100}, 0.5, 2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_NEAR(heightAt(grid, {40, -100}), 1, 1e-9);
    EXPECT_NEAR(heightAt(grid, {40, -99.5}), 2, 1e-9);
    EXPECT_NEAR(heightAt(grid, {40.5, -99}), 6, 1e-9);
}

TEST(ReliefGridTest, IsSmoothBetweenThem) {
    // A plane stays a plane.
    std::vector<float> plane;
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 6; ++column) {
            plane.push_back(static_cast<float>(100 * row + 10 * column));
        }
    }
    const ReliefGrid grid({0, 0}, 1, 6, 6, plane);
    EXPECT_NEAR(heightAt(grid, {2.5, 2.25}), 272.5, 1e-6);
}

TEST(ReliefGridTest, BeyondItsEdgeIsTheEdge) {
    const ReliefGrid grid({40, -100}, 0.5, 2, 2, {1, 1, 7, 7});
    EXPECT_NEAR(heightAt(grid, {60, -100}), 7, 1e-9);
    EXPECT_NEAR(heightAt(grid, {-90, 1e9}), 1, 1e-9);
    EXPECT_EQ(heightAt(ReliefGrid(), {1, 2}), 0);
}

TEST(ReliefGridTest, AProfileIsTheSameWhateverWasAskedBefore) {
    std::vector<float> hills;
    for (int i = 0; i < 81; ++i) {
        hills.push_back(static_cast<float>(i * 37 % 101));
    }
    const ReliefGrid grid({30, -90}, 0.25, 9, 9, hills);
    const std::vector<double> longitudes{-90.1, -89.9, -89.05, -88.3};
    ReliefProfiles profiles(grid, longitudes);
    std::vector<double> heights;
    for (const double latitude : {32.3, 31.9, 31.85, 31.2, 30.1, 29.0, 31.9, 32.1}) {
        profiles.at(latitude, heights);
        ASSERT_EQ(heights.size(), longitudes.size());
        for (std::size_t i = 0; i < heights.size(); ++i) {
            EXPECT_EQ(heights[i], heightAt(grid, {latitude, longitudes[i]})) << latitude;
        }
    }
}

TEST(ReliefGridTest, GapsAreSeaLevel) {
    const ReliefGrid grid({0, 0}, 1, 2, 2, {-1e34F, -1e34F, -1e34F, -1e34F});
    EXPECT_EQ(heightAt(grid, {0.5, 0.5}), 0);
}

class ReliefFileTest : public ::testing::Test {
protected:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath("relief.nc");
};

TEST_F(ReliefFileTest, AnAxisThatIsNoNumberPlacesNothing) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> axis{30, 31, 32, 33, 34, 35, 36, 37, 38, 39};
    const std::vector<double> nowhere(axis.size(), kNone);
    const std::vector<float> heights(axis.size() * axis.size(), 100);
    for (const auto& [x, y] : {std::pair(axis, nowhere), {nowhere, axis}}) {
        {
            const NetcdfMaker maker(m_path);
            maker.doubles("ETOPO05_X", x);
            maker.doubles("ETOPO05_Y", y);
            maker.floats("ROSE", axis.size(), heights);
        }
        EXPECT_EQ(heightAt(readRelief(m_path, {33, 33, 36, 36}), {34, 34}), 0);
    }
}

TEST_F(ReliefFileTest, ReadsThePartAroundABox) {
    std::vector<double> longitudes;
    std::vector<double> latitudes;
    std::vector<float> heights;
    for (int i = 0; i < 36; ++i) {
        longitudes.push_back(10 * i);
    }
    for (int i = -9; i <= 9; ++i) {
        latitudes.push_back(10 * i);
        for (int j = 0; j < 36; ++j) {
            heights.push_back(static_cast<float>(100 * i + j));
        }
    }
    {
        const NetcdfMaker maker(m_path);
        maker.doubles("ETOPO05_X", longitudes);
        maker.doubles("ETOPO05_Y", latitudes);
        maker.floats("ROSE", latitudes.size(), heights);
    }
    const ReliefGrid grid = readRelief(m_path, {35, -105, 45, -95});
    ASSERT_FALSE(grid.isEmpty());
    EXPECT_NEAR(heightAt(grid, {40, -100}), 400 + 26, 1e-3);
    const ReliefGrid east = readRelief(m_path, {5, 140, 15, 150});
    EXPECT_NEAR(heightAt(east, {10, 140}), 100 + 14, 1e-3);
}

TEST_F(ReliefFileTest, OtherFilesAreEmpty) {
    { NetcdfMaker(m_path).doubles("ETOPO05_X", {0, 1, 2}); }
    EXPECT_TRUE(readRelief(m_path, {0, 0, 1, 1}).isEmpty());
    EXPECT_TRUE(readRelief(m_folder.filePath("none"), {0, 0, 1, 1}).isEmpty());
}

} // namespace
} // namespace raincast
