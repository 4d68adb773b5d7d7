// SPDX-License-Identifier: MIT
#include "display/item_placement.h"
#include "display/map_overlays.h"
#include "map_page.h"

#include <gmock/gmock.h>

#include <deque>

namespace raincast {
namespace {

using testing::ElementsAre;

// A dot at one pixel that counts what it is asked.
class Dot : public COverlayObject {
public:
    explicit Dot(ImagePixel pixel) : m_pixel(pixel) {}

    void Layout(std::vector<ImagePixel>& outline, const GeoReference&) const override {
        ++layouts;
        outline = {m_pixel};
    }
    void Draw(QPainter&, const ViewTransform&, const std::vector<PagePoint>& points) override {
        ++draws;
        drawn = points;
    }

    mutable int layouts = 0;
    int draws = 0;
    std::vector<PagePoint> drawn;

private:
    ImagePixel m_pixel;
};

class MapOverlaysTest : public testing::Test {
protected:
    MapOverlaysTest() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("image.gfw"));
        writeFile(file, "0.01\n0\n0\n-0.01\n-105.0\n41.0\n");
        EXPECT_TRUE(placed.loadWorldFile(file.toStdString(), 600, 550));
    }
    void draw(MapOverlays& overlays, const ViewTransform& view = {}) {
        QPainter painter(&m_picture);
        overlays.draw(painter, view, {0, 0, 100, 80});
    }

    GeoReference placed;

private:
    QImage m_picture{100, 80, QImage::Format_RGB32};
};

TEST_F(MapOverlaysTest, TheOverlaysThatExistAreKnownFromTheStart) {
    Dot dot({10, 20});
    MapOverlays overlays;
    EXPECT_EQ(dot.layouts, 0);
    overlays.layoutAll(placed);
    draw(overlays);
    EXPECT_EQ(dot.layouts, 1);
    EXPECT_THAT(dot.drawn, ElementsAre(PagePoint{10, 20}));
}

TEST_F(MapOverlaysTest, PlacesOnThePageFollowTheView) {
    MapOverlays overlays;
    Dot dot({10, 20});
    overlays.layout(dot, placed);
    draw(overlays);
    draw(overlays, {0, {4, 5}});
    EXPECT_THAT(dot.drawn, ElementsAre(PagePoint{6, 15}));
    draw(overlays, {-1, {4, 5}});
    EXPECT_THAT(dot.drawn, ElementsAre(PagePoint{12, 30}));
    EXPECT_EQ(dot.layouts, 1) << "its place in the image stays";
}

TEST_F(MapOverlaysTest, WithoutAPlacedImageNothingIsLaidOut) {
    MapOverlays overlays;
    Dot dot({10, 20});
    overlays.layout(dot, placed);
    placed.invalidate();
    overlays.layoutAll(placed);
    draw(overlays);
    EXPECT_EQ(dot.draws, 0);
    EXPECT_EQ(dot.layouts, 1);
}

TEST_F(MapOverlaysTest, WhatIsForgottenIsNotDrawn) {
    MapOverlays overlays;
    Dot dot({10, 20});
    overlays.layout(dot, placed);
    overlays.forget(dot);
    draw(overlays);
    EXPECT_EQ(dot.draws, 0);
}

TEST_F(MapOverlaysTest, OfTenThousandOverlaysThoseInViewAreDrawn) {
    MapOverlays overlays;
    std::deque<Dot> dots;
    for (int i = 0; i < 10'000; ++i) {
        overlays.layout(dots.emplace_back(ImagePixel{1000 + i, 40}), placed);
    }
    overlays.layout(dots.emplace_back(ImagePixel{50, 40}), placed);
    for (int i = 0; i < 10; ++i) {
        draw(overlays, {0, {i, 0}});
    }
    int draws = 0;
    int layouts = 0;
    for (const Dot& dot : dots) {
        draws += dot.draws;
        layouts += dot.layouts;
    }
    EXPECT_EQ(draws, 10);
    EXPECT_EQ(layouts, 10'001);
    while (!dots.empty()) {
        dots.pop_back(); // the list of all overlays is searched from its end
    }
}

} // namespace
} // namespace raincast
