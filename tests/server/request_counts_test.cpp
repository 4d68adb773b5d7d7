// SPDX-License-Identifier: MIT
#include "server/request_counts.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(RequestCountsTest, KnowsWhatAPathAsksFor) {
    const std::pair<const char*, RequestKind> rows[] = {
        {"/ridge/RadarImg/N0R/LWX/", RequestKind::listing},
        {"/ridge/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif", RequestKind::frame},
        {"/ridge/Warnings/Short/LWX_Warnings_0.gif", RequestKind::warnings},
        {"/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif", RequestKind::frame},
        {"/ridge/x4/Warnings/Short/LWX_Warnings_0.gif", RequestKind::warnings},
        {"/ridge/Overlays/Topo/Long/LWX_Topo_Long.jpg", RequestKind::layer},
        {"/ridge/x2/Overlays/Topo/Long/LWX_Topo_Long.jpg", RequestKind::layer},
        {"/weather_radar/x4/basemaps/LWX_City_Short.gif", RequestKind::layer},
        {"/weather_radar/basemaps/LWX_City_Short.gif", RequestKind::layer},
        {"/", RequestKind::page},
        {"/status", RequestKind::page},
    };
    for (const auto& [path, kind] : rows) {
        EXPECT_EQ(requestKindOf(path, true), kind) << path;
    }
    EXPECT_EQ(requestKindOf("/wp-login.php", false), RequestKind::other);
    EXPECT_EQ(requestKindOf("/wp/", false), RequestKind::other);
    EXPECT_EQ(requestKindOf("", false), RequestKind::other);
}

TEST(RequestCountsTest, CountsByKindAndStatus) {
    RequestCounts counts;
    EXPECT_TRUE(counts.rows().empty());
    counts.note(RequestKind::frame, 200, 5000);
    counts.note(RequestKind::frame, 200, 5000);
    counts.note(RequestKind::frame, 304, 0);
    counts.note(RequestKind::other, 404, 30);
    counts.note(RequestKind::page, 404, 30);
    counts.note(RequestKind::other, 999, 0);
    const auto rows = counts.rows();
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_EQ(rows[0].kind, RequestKind::frame);
    EXPECT_EQ(rows[0].status, 200);
    EXPECT_EQ(rows[0].answers, 2U);
    EXPECT_EQ(rows[1].status, 304);
    EXPECT_EQ(counts.withStatus(404), 2U);
    EXPECT_EQ(counts.withStatus(500), 1U) << "unknown ones";
    EXPECT_EQ(counts.bytes(RequestKind::frame), 10'000U);
    EXPECT_EQ(counts.bytes(RequestKind::layer), 0U);
}

} // namespace
} // namespace raincast
