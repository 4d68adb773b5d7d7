// SPDX-License-Identifier: MIT
// The radar item in a page file: every byte typed by hand, read, and written again.
#include "support/qt_app.h"
#include "support/serial_bytes.h"
#include "weather/item_weather.h"

namespace raincast {
namespace {

struct Row {
    const char* hex;
    const char* meaning;
};
constexpr Row kRows[] = {
    {"1e000000", "a weather item"},
    {"c3000000", "its body: 195 bytes"},
    // The placement: one record with one field.
    {"01000000", "fields of the placement"},
    {"28000000", "40 bytes"},
    {"0a000000", "left 10"},
    {"14000000", "top 20"},
    {"2c010000", "right 300"},
    {"18010000", "bottom 280"},
    {"33221100", "fill colour"},
    {"ffffffff", "edge style: none"},
    {"02000000", "frame width 2"},
    {"01000000", "clipped"},
    {"01000000", "horizontal anchor: right"},
    {"02000000", "vertical anchor: spans the page"},
    // The view: one record with two fields.
    {"02000000", "fields of the view"},
    {"0c000000", "12 bytes"},
    {"feffffff", "zoom -2"},
    {"96000000", "image column 150"},
    {"87000000", "image row 135"},
    {"01000000", "1 byte"},
    {"01", "following"},
    // The item's own: one record with eight fields, as there are two frames.
    {"08000000", "fields of its own, for two frames"},
    {"06000000", "6 bytes"},
    {"4d0055005800", "MUX"},
    {"1c000000", "28 bytes of settings"},
    {"00", "topo off"},
    {"01", "highways"},
    {"00", "rivers off"},
    {"01", "automatic updates"},
    {"0c000000", "12 frames"},
    {"11000000", "17 minutes between two"},
    {"01000000", "animation"},
    {"01000000", "always 1"},
    {"01", "counties"},
    {"00", "cities off"},
    {"01", "warnings"},
    {"00", "always 0"},
    {"05000000", "the product of number 5"},
    {"04000000", "4 bytes"},
    {"02000000", "two frames, the oldest first"},
    {"0c000000", "12 bytes"},
    {"2f006f006c00640065007200", "its path /older"},
    {"08000000", "8 bytes"},
    {"35003a0033003400", "its time 5:34"},
    {"0c000000", "length of the second path"},
    {"2f006e006500770065007200", "/newer"},
    {"08000000", "length of its time"},
    {"35003a0034003400", "5:44"},
    {"08000000", "length of the folder"},
    {"2f0074006d007000", "the cache: /tmp"},
};

QByteArray typedBytes() {
    QByteArray bytes;
    for (const Row& row : kRows) {
        bytes += QByteArray::fromHex(row.hex);
    }
    return bytes;
}

class ItemWeatherFileTest : public test::GuiTest {};

TEST_F(ItemWeatherFileTest, EachByteHasItsMeaning) {
    const auto object = test::readBlock(typedBytes());
    const auto* const item = dynamic_cast<const CItemWeather*>(object.get());
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->rectangle(), (PageRectangle{10, 20, 300, 280}));
    EXPECT_EQ(item->view(), ViewTransform(-2, {150, 135}));
    EXPECT_TRUE(item->following());
    const RadarState& state = item->state();
    EXPECT_EQ(state.siteId, "MUX");
    EXPECT_EQ(state.product, 5);
    EXPECT_EQ(state.frameCount, 12);
    EXPECT_EQ(state.frameInterval, 17);
    EXPECT_TRUE(state.animate);
    EXPECT_TRUE(state.autoUpdate);
    EXPECT_TRUE(state.showWarnings);
    const BasemapLayers& layers = item->layers();
    EXPECT_FALSE(layers.topo);
    EXPECT_FALSE(layers.rivers);
    EXPECT_TRUE(layers.counties);
    EXPECT_TRUE(layers.highways);
    EXPECT_FALSE(layers.cities);
    ASSERT_EQ(state.frames.size(), 2U);
    EXPECT_EQ(state.frames[0].path, "/older");
    EXPECT_EQ(state.frames[0].timeText, "5:34");
    EXPECT_EQ(state.frames[1].path, "/newer");
    EXPECT_EQ(state.frames[1].timeText, "5:44");
    EXPECT_EQ(state.cacheFolder, "/tmp");
}

TEST_F(ItemWeatherFileTest, ItIsWrittenAsItWasRead) {
    const auto object = test::readBlock(typedBytes());
    ASSERT_NE(object, nullptr);
    const QByteArray bytes = test::writtenBlock(*object).toHex();
    qsizetype place = 0;
    for (const Row& row : kRows) {
        const QByteArray expected = row.hex;
        EXPECT_EQ(bytes.mid(place, expected.size()), expected) << row.meaning;
        place += expected.size();
    }
    EXPECT_EQ(bytes.size(), place);
}

} // namespace
} // namespace raincast
