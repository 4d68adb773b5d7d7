// SPDX-License-Identifier: MIT
#include "map/map_overlays.h"
#include "map_page.h"
#include "page/item_placement.h"

#include <gmock/gmock.h>

#include <deque>
#include <functional>
#include <memory>

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
        if (drawing) {
            drawing(*this);
        }
    }
    void moveTo(ImagePixel pixel) { m_pixel = pixel; }

    std::function<void(const Dot&)> drawing;
    mutable int layouts = 0;
    int draws = 0;
    std::vector<PagePoint> drawn;

private:
    ImagePixel m_pixel;
};

class MapOverlaysTest : public testing::Test {
protected:
    void draw(MapOverlays& overlays, const ViewTransform& view = {}) {
        QPainter painter(&m_picture);
        overlays.draw(painter, view, {0, 0, 100, 80});
    }

    GeoReference placed = test::placedImage();

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

TEST_F(MapOverlaysTest, WhatMovesOrComesInIsDrawnAtItsNewPlace) {
    MapOverlays overlays;
    Dot dot({10, 20});
    overlays.layout(dot, placed);
    draw(overlays);
    dot.moveTo({1000, 20});
    overlays.layout(dot, placed);
    draw(overlays);
    EXPECT_EQ(dot.draws, 1) << "it is out of view";
    draw(overlays, {0, {950, 0}});
    EXPECT_THAT(dot.drawn, ElementsAre(PagePoint{50, 20}));
    Dot other({960, 30});
    overlays.layout(other, placed);
    draw(overlays, {0, {950, 0}});
    EXPECT_THAT(other.drawn, ElementsAre(PagePoint{10, 30}));
    placed.invalidate();
    overlays.layoutAll(placed);
    draw(overlays, {0, {950, 0}});
    EXPECT_EQ(other.draws, 1);
}

TEST_F(MapOverlaysTest, WhatIsForgottenBetweenDrawingsIsNotTouched) {
    MapOverlays overlays;
    auto dot = std::make_unique<Dot>(ImagePixel{10, 20});
    Dot other({20, 20});
    overlays.layout(*dot, placed);
    overlays.layout(other, placed);
    draw(overlays);
    overlays.forget(*dot);
    dot.reset();
    draw(overlays);
    EXPECT_EQ(other.draws, 2);
}

TEST_F(MapOverlaysTest, UpperLayersAreDrawnLast) {
    using Layer = COverlayObject::Layer;
    struct Layered : Dot {
        Layered(ImagePixel pixel, Layer layer) : Dot(pixel), on(layer) {}
        Layer layer() const override { return on; }
        Layer on;
    };
    std::vector<Layer> order;
    std::deque<Layered> dots;
    MapOverlays overlays;
    for (int i = 0; i < 9; ++i) {
        Layered& dot = dots.emplace_back(ImagePixel{10 * i, 20}, static_cast<Layer>(2 - i % 3));
        dot.drawing = [&order](const Dot& drawn) { order.push_back(drawn.layer()); };
        overlays.layout(dot, placed);
    }
    draw(overlays);
    ASSERT_EQ(order.size(), 9U);
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(order[i], static_cast<Layer>(i / 3)) << i;
    }
    order.clear();
    for (Layered& dot : dots) {
        dot.on = &dot == &dots[4] ? Layer::position : Layer::mark;
        overlays.layout(dot, placed);
    }
    draw(overlays);
    ASSERT_EQ(order.size(), 9U);
    EXPECT_EQ(order.back(), Layer::position);
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
