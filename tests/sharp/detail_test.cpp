// SPDX-License-Identifier: MIT
#include "geo/view_transform.h"
#include "radar/bitmap.h"
#include "sharp/detail.h"

#include <QSize>

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr QSize kLarge(1920, 1080);

TEST(DetailTest, FollowsTheZoom) {
    const int expected[] = {4, 2, 1, 1, 1, 1, 1};
    for (int zoom = ViewTransform::kLeastZoom; zoom <= ViewTransform::kMostZoom; ++zoom) {
        EXPECT_EQ(
            wantedDetail(ViewTransform(zoom, {}), kLarge),
            expected[zoom - ViewTransform::kLeastZoom]
        ) << zoom;
    }
}

TEST(DetailTest, ASmallScreenHasNoRoom) {
    const ViewTransform view(-2, {});
    EXPECT_EQ(wantedDetail(view, {240, 320}), 1);
    EXPECT_EQ(wantedDetail(view, {480, 640}), 1);
    EXPECT_EQ(wantedDetail(view, {599, 550}), 1);
    EXPECT_EQ(wantedDetail(view, {600, 550}), 4);
    EXPECT_EQ(wantedDetail(view, {800, 480}), 4);
    EXPECT_EQ(wantedDetail(view, {100'000, 100'000}), 4);
}

TEST(DetailTest, LettersAreNeverSmallerOnAFineScreen) {
    const struct {
        int detail;
        double ratio;
        int expected;
    } rows[] = {{2, 1, 2}, {4, 1, 4},   {2, 2, 1},   {4, 2, 2}, {4, 4, 1},
                {2, 4, 1}, {4, 1.4, 4}, {4, 1.5, 2}, {4, 3, 2}, {4, 1e9, 1}};
    for (const auto& row : rows) {
        EXPECT_EQ(lettersDetail(row.detail, row.ratio), row.expected)
            << row.detail << ' ' << row.ratio;
    }
}

TEST(DetailTest, PathsHaveTheirFolderBehindTheFirst) {
    const QString frame = QStringLiteral("/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif");
    EXPECT_EQ(sharpPath(frame, 2), "/ridge/x2/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif");
    EXPECT_EQ(sharpRoot(frame, 4), "/ridge/x4/");
    const QString county = QStringLiteral("/weather_radar/basemaps/MUX_County_Short.gif");
    EXPECT_EQ(sharpPath(county, 4), "/weather_radar/x4/basemaps/MUX_County_Short.gif");
    EXPECT_EQ(sharpRoot(county, 2), "/weather_radar/x2/");
}

} // namespace
} // namespace raincast
