// SPDX-License-Identifier: MIT
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/tree_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using Kind = TreeItem::Kind;

struct Row {
    const char* path;
    TreeItem item;
};

class TreeIndexKnowsTest : public ::testing::TestWithParam<Row> {};

TEST_P(TreeIndexKnowsTest, FindsThePath) {
    const auto item = findTreeItem(GetParam().path);
    ASSERT_TRUE(item);
    EXPECT_EQ(*item, GetParam().item);
}

const FileTime kJuly2018 = fromCalendar({2018, 7, 25, 19, 24});

INSTANTIATE_TEST_SUITE_P(
    Paths, TreeIndexKnowsTest,
    ::testing::Values(
        Row{"/ridge/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif",
            {Kind::frame, "LWX", Range::shortRange, LayerKind::topo, Product::baseReflectivity,
             kJuly2018}},
        Row{"/ridge/RadarImg/N0Z/MUX/MUX_20180725_1924_N0Z.gif",
            {Kind::frame, "MUX", Range::longRange, LayerKind::topo, Product::longRangeReflectivity,
             kJuly2018}},
        Row{"/ridge/Warnings/Short/BMX_Warnings_0.gif", {Kind::warnings, "BMX"}},
        Row{"/ridge/Warnings/Long/BMX_Warnings_0.gif", {Kind::warnings, "BMX", Range::longRange}},
        Row{"/ridge/Overlays/Topo/Short/BMX_Topo_Short.jpg", {Kind::layer, "BMX"}},
        Row{"/ridge/Overlays/Rivers/Long/BMX_Rivers_Long.gif",
            {Kind::layer, "BMX", Range::longRange, LayerKind::rivers}},
        Row{"/ridge/Overlays/Highways/Short/BMX_Highways_Short.gif",
            {Kind::layer, "BMX", Range::shortRange, LayerKind::highways}},
        Row{"/ridge/Overlays/Cities/Short/BMX_City_Short.gfw",
            {Kind::worldFile, "BMX", Range::shortRange, LayerKind::cities}},
        Row{"/weather_radar/basemaps/BMX_County_Short.gif",
            {Kind::layer, "BMX", Range::shortRange, LayerKind::counties}},
        Row{"/weather_radar/basemaps/BMX_City_Long.gif",
            {Kind::layer, "BMX", Range::longRange, LayerKind::cities}},
        Row{"/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif",
            {Kind::frame, "LWX", Range::shortRange, LayerKind::topo, Product::baseReflectivity,
             kJuly2018, 2}},
        Row{"/ridge/x4/Warnings/Long/BMX_Warnings_0.gif",
            {Kind::warnings, "BMX", Range::longRange, LayerKind::topo, Product::baseReflectivity, 0,
             4}},
        Row{"/ridge/x2/Overlays/Topo/Short/BMX_Topo_Short.jpg",
            {Kind::layer, "BMX", Range::shortRange, LayerKind::topo, Product::baseReflectivity, 0,
             2}},
        Row{"/ridge/x4/Overlays/Cities/Long/BMX_City_Long.gif",
            {Kind::layer, "BMX", Range::longRange, LayerKind::cities, Product::baseReflectivity, 0,
             4}},
        Row{"/weather_radar/x2/basemaps/BMX_City_Short.gif",
            {Kind::layer, "BMX", Range::shortRange, LayerKind::cities, Product::baseReflectivity, 0,
             2}},
        Row{"/weather_radar/x4/basemaps/BMX_County_Long.gif",
            {Kind::layer, "BMX", Range::longRange, LayerKind::counties, Product::baseReflectivity,
             0, 4}}
    )
);

class TreeIndexRefusesTest : public ::testing::TestWithParam<const char*> {};

TEST_P(TreeIndexRefusesTest, FindsNothing) {
    EXPECT_FALSE(findTreeItem(GetParam()));
    EXPECT_FALSE(findFrameFolder(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Paths, TreeIndexRefusesTest,
    ::testing::Values(
        "", "/", "/etc/passwd", "/ridge/RadarImg/N0R/LWX/../LWX/LWX_20180725_1924_N0R.gif",
        "//ridge/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif",
        // Another site, another product, another case
        "/ridge/RadarImg/N0R/LWX/MUX_20180725_1924_N0R.gif",
        "/ridge/RadarImg/N0R/LWX/LWX_20180725_1924_N0Z.gif",
        "/ridge/RadarImg/N0R/lwx/lwx_20180725_1924_N0R.gif",
        "/ridge/RadarImg/N0R/ZZZ/ZZZ_20180725_1924_N0R.gif",
        "/ridge/RadarImg/XYZ/LWX/LWX_20180725_1924_XYZ.gif",
        // No such minute
        "/ridge/RadarImg/N0R/LWX/LWX_20180732_1924_N0R.gif",
        "/ridge/RadarImg/N0R/LWX/LWX_20180725_2460_N0R.gif",
        "/ridge/RadarImg/N0R/LWX/LWX_2018 725_1924_N0R.gif",
        "/ridge/RadarImg/N0R/LWX/LWX_+0180725_1924_N0R.gif",
        // Too long, too short, of another range
        "/ridge/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif.gif", "/ridge/RadarImg/N0R/LWX",
        "/ridge/Overlays/Topo/Short/BMX_Topo_Long.jpg", "/ridge/Overlays/Topo/%/BMX_Topo_%.jpg",
        // What is not made sharp, and other details
        "/ridge/x2/Warnings/Short/BMX_Warnings_0.json",
        "/ridge/x2/Overlays/Cities/Short/BMX_City_Short.gfw", "/ridge/x2/RadarImg/N0R/LWX/",
        "/ridge/x3/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif",
        "/ridge/x2/x2/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif",
        "/ridge/x2/x4/Warnings/Short/BMX_Warnings_0.gif", "/ridge/x2/",
        "/ridge/x2/Overlays/Topo/Short/BMX_Topo_Short.gfw",
        "/ridge/x1/Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/ridge/x3/Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/ridge/x02/Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/ridge/X2/Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/ridge/x2/x2/Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/ridge/x2//Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/ridge/x2/../Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/ridge/x2/basemaps/BMX_County_Short.gif", "/weather_radar/x2/",
        "/weather_radar/x2/basemaps/", "/weather_radar/x1/basemaps/BMX_County_Short.gif",
        "/weather_radar/x3/basemaps/BMX_County_Short.gif",
        "/weather_radar/x2/x2/basemaps/BMX_County_Short.gif",
        "/weather_radar/x2/x4/basemaps/BMX_County_Short.gif",
        "/weather_radar/x2/Overlays/Topo/Short/BMX_Topo_Short.jpg",
        "/weather_radar/basemaps/x2/BMX_County_Short.gif"
    )
);

// As long as a request may be.
TEST(TreeIndexTest, ManyFoldersInEachOtherCostNothing) {
    std::string path = "/ridge/";
    for (int i = 0; i < 100'000; ++i) {
        path += "x2/";
    }
    EXPECT_FALSE(findTreeItem(path + "Overlays/Topo/Short/BMX_Topo_Short.jpg"));
}

TEST(TreeIndexTest, EveryPathComesBack) {
    for (const FrameFolder& folder : allFrameFolders()) {
        EXPECT_EQ(findFrameFolder(pathOf(folder)), folder);
        const auto item = findTreeItem(pathOf(folder) + frameName(folder, kJuly2018));
        ASSERT_TRUE(item);
        EXPECT_EQ(item->site, folder.site);
        EXPECT_EQ(item->product, folder.product);
        EXPECT_EQ(item->time, kJuly2018);
    }
    for (const std::string& path : standingPaths()) {
        EXPECT_TRUE(findTreeItem(path)) << path;
    }
}

TEST(TreeIndexTest, ASharpPathIsThatOfTheSamePicture) {
    for (const std::string& path : standingPaths()) {
        TreeItem item = *findTreeItem(path);
        const bool isPicture = item.kind == Kind::warnings || item.kind == Kind::layer;
        for (const int detail : {2, 4}) {
            const auto sharp = findTreeItem(sharpPath(path, detail).value());
            item.detail = detail;
            EXPECT_EQ(sharp, isPicture ? std::optional(item) : std::nullopt) << path;
        }
        EXPECT_FALSE(sharpPath(path, 1)) << path;
        EXPECT_FALSE(sharpPath(path, 3)) << path;
    }
    EXPECT_EQ(sharpPath("/ridge/RadarImg/N0R/LWX/", 2), "/ridge/x2/RadarImg/N0R/LWX/");
    EXPECT_FALSE(sharpPath("/index.html", 2));
}

TEST(TreeIndexTest, EverySiteHasEverything) {
    EXPECT_THAT(allFrameFolders(), SizeIs(kAllProducts.size() * kAntennaCount));
    EXPECT_THAT(standingPaths(), SizeIs(12 * kRanges.size() * kAntennaCount));
}

TEST(TreeIndexTest, ListsFolders) {
    EXPECT_THAT(namesInFolder("/"), ElementsAre("ridge/", "weather_radar/"));
    EXPECT_THAT(namesInFolder("/ridge/"), ElementsAre("Overlays/", "RadarImg/", "Warnings/"));
    EXPECT_THAT(
        namesInFolder("/ridge/RadarImg/"),
        ElementsAre("N0R/", "N0S/", "N0V/", "N0Z/", "N1P/", "NCR/", "NTP/")
    );
    EXPECT_THAT(namesInFolder("/ridge/RadarImg/N0R/"), SizeIs(kAntennaCount));
    EXPECT_THAT(
        namesInFolder("/ridge/Overlays/Cities/Short/"),
        AllOf(Contains("ABC_City_Short.gfw"), SizeIs(2 * kAntennaCount))
    );
}

TEST(TreeIndexTest, ListsNoOtherFolders) {
    for (const char* folder :
         {"", "ridge/", "/ridge", "/ridge/../", "/rid", "/etc/", "//", "/ridge/x2/",
          "/ridge/x2/RadarImg/", "/ridge/x4/RadarImg/N0R/LWX/", "/weather_radar/x2/",
          "/weather_radar/x2/basemaps/", "/ridge/x2/Overlays/Topo/Short/"}) {
        EXPECT_THAT(namesInFolder(folder), IsEmpty()) << folder;
    }
}

} // namespace
} // namespace raincast
