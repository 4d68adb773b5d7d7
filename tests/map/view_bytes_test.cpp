// SPDX-License-Identifier: MIT
#include "map/view_bytes.h"

#include <gmock/gmock.h>

namespace raincast {
namespace {

TEST(ViewBytes, AreZoomColumnAndRow) {
    EXPECT_THAT(
        viewToBytes({-2, {0x01020304, -2}}),
        testing::ElementsAre(0xFE, 0xFF, 0xFF, 0xFF, 4, 3, 2, 1, 0xFE, 0xFF, 0xFF, 0xFF)
    );
}

TEST(ViewBytes, ComeBackAsTheViewThatTheyAreOf) {
    for (int zoom = ViewTransform::kLeastZoom; zoom <= ViewTransform::kMostZoom; ++zoom) {
        for (const ImagePixel origin : {ImagePixel{0, 0}, {-7, 12}, {INT32_MAX, INT32_MIN}}) {
            const ViewTransform view(zoom, origin);
            EXPECT_EQ(viewFromBytes(viewToBytes(view)), view);
        }
    }
}

TEST(ViewBytes, AZoomOutOfRangeIsNone) {
    ViewBytes bytes = viewToBytes({0, {5, 6}});
    for (const std::uint8_t zoom : {5, 127, 255}) {
        bytes[3] = zoom;
        EXPECT_EQ(viewFromBytes(bytes), ViewTransform(0, {5, 6}));
    }
}

} // namespace
} // namespace raincast
