// SPDX-License-Identifier: MIT
#include "map/map_overlays.h"
#include "map_page.h"
#include "page/item_placement.h"
#include "support/qt_app.h"

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
    std::optional<MapLabel>
    label(const ViewTransform&, const std::vector<PagePoint>& points) const override {
        ++asked;
        return text.isEmpty() ? std::nullopt
                              : std::optional(MapLabel{{points[0].x, points[0].y}, text});
    }
    void moveTo(ImagePixel pixel) { m_pixel = pixel; }

    std::function<void(const Dot&)> drawing;
    QString text;
    mutable int asked = 0;
    mutable int layouts = 0;
    int draws = 0;
    std::vector<PagePoint> drawn;

private:
    ImagePixel m_pixel;
};

class MapOverlaysTest : public test::GuiTest {
protected:
    void draw(MapOverlays& overlays, const ViewTransform& view = {}) {
        QPainter painter(&m_picture);
        overlays.draw(painter, view, {0, 0, 100, 80});
    }

    /// What is drawn on white.
    QImage drawn(MapOverlays& overlays, const ViewTransform& view = {}) {
        m_picture.fill(Qt::white);
        draw(overlays, view);
        return m_picture.copy();
    }
    /// Where it is not white.
    static QRect inked(const QImage& picture) {
        QRect found;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != 0xFFFFFFFF) {
                    found |= QRect(x, y, 1, 1);
                }
            }
        }
        return found;
    }
    /// So many that they are kept as a picture; all are in view.
    static void makeCrowd(std::deque<Dot>& dots) {
        for (int i = 0; i < 60; ++i) {
            dots.emplace_back(ImagePixel{i % 10 * 6, i / 10 * 10});
        }
    }
    static void empty(std::deque<Dot>& dots) {
        while (!dots.empty()) {
            dots.pop_back(); // the list of all overlays is searched from its end
        }
    }

    GeoReference placed = test::placedImage();

private:
    QImage m_picture{100, 80, QImage::Format_RGB32};
};

TEST_F(MapOverlaysTest, OnceAnImageIsPlacedTheOverlaysThatExistAreLaidOut) {
    Dot before({10, 20});
    MapOverlays overlays;
    Dot later({30, 20});
    EXPECT_EQ(before.layouts, 0);
    overlays.layoutAll(placed);
    draw(overlays);
    EXPECT_EQ(before.layouts, 1);
    EXPECT_THAT(before.drawn, ElementsAre(PagePoint{10, 20}));
    EXPECT_THAT(later.drawn, ElementsAre(PagePoint{30, 20}));
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

TEST_F(MapOverlaysTest, WhatChangesOnAnImageThatIsNoMorePlacedIsNotDrawn) {
    MapOverlays overlays;
    Dot dot({10, 20});
    overlays.layout(dot, placed);
    placed.invalidate();
    overlays.layout(dot, placed);
    draw(overlays);
    EXPECT_EQ(dot.draws, 0);
    EXPECT_EQ(dot.layouts, 1);
}

TEST_F(MapOverlaysTest, WhatIsLaidOutAnewIsPaintedAnew) {
    MapOverlays overlays;
    std::deque<Dot> dots;
    makeCrowd(dots);
    overlays.layoutAll(placed);
    draw(overlays);
    EXPECT_EQ(dots[0].draws, 1);
    dots[0].moveTo({50, 75});
    overlays.layoutAll(placed);
    draw(overlays);
    EXPECT_EQ(dots[0].draws, 2);
    EXPECT_THAT(dots[0].drawn, ElementsAre(PagePoint{50, 75}));
    empty(dots);
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
    empty(dots);
}

TEST_F(MapOverlaysTest, OfMarksOnOneSpotTheYoungestIsDrawn) {
    MapOverlays overlays;
    Dot older({10, 20});
    Dot younger({10, 20});
    Dot apart({30, 20});
    for (Dot* dot : {&older, &younger, &apart}) {
        dot->text = QStringLiteral("A");
        overlays.layout(*dot, placed);
    }
    draw(overlays);
    EXPECT_EQ(older.draws, 0);
    EXPECT_EQ(younger.draws, 1);
    EXPECT_EQ(apart.draws, 1);
    overlays.layout(older, placed); // it is changed, and as old as before
    draw(overlays);
    EXPECT_EQ(older.draws, 0);
    overlays.forget(younger);
    draw(overlays);
    EXPECT_EQ(older.draws, 1);
}

TEST_F(MapOverlaysTest, ANameGivesWayToThatOfAYoungerMark) {
    MapOverlays overlays;
    Dot older({5, 30});
    older.text = QStringLiteral("HHH");
    overlays.layout(older, placed);
    const QImage one = drawn(overlays);
    EXPECT_NEAR(inked(one).left(), 6, 1) << "its halo";
    Dot younger({15, 32});
    younger.text = QStringLiteral("HHH");
    overlays.layout(younger, placed);
    EXPECT_EQ(older.draws, 1);
    const QImage two = drawn(overlays);
    EXPECT_EQ(older.draws, 2) << "its pin stays";
    EXPECT_EQ(inked(two), inked(one).translated(10, 2));
    younger.moveTo({5, 50}); // below: both have room
    overlays.layout(younger, placed);
    EXPECT_EQ(inked(drawn(overlays)), inked(one) | inked(one).translated(0, 20));
}

// Its letters are narrower than most.
TEST_F(MapOverlaysTest, ANameThatOnlySeemsToOverlapStays) {
    MapOverlays overlays;
    Dot older({5, 30});
    older.text = QStringLiteral("illlli");
    overlays.layout(older, placed);
    const QImage one = drawn(overlays);
    const int width = inked(one).width() + 6;
    Dot younger({5 + width, 30});
    younger.text = older.text;
    overlays.layout(younger, placed);
    EXPECT_EQ(inked(drawn(overlays)), inked(one) | inked(one).translated(width, 0));
}

TEST_F(MapOverlaysTest, ManyMarksAreDrawnOnceForAView) {
    MapOverlays overlays;
    std::deque<Dot> dots;
    makeCrowd(dots);
    for (Dot& dot : dots) {
        dot.text = QStringLiteral("H");
        overlays.layout(dot, placed);
    }
    const QImage first = drawn(overlays);
    EXPECT_FALSE(inked(first).isEmpty());
    const int draws = dots[0].draws;
    EXPECT_EQ(drawn(overlays), first);
    EXPECT_EQ(dots[0].draws, draws) << "nothing moved";

    dots.back().text = QStringLiteral("M"); // the name that all others give way to
    overlays.layout(dots.back(), placed);
    EXPECT_NE(drawn(overlays), first);
    EXPECT_EQ(dots[0].draws, draws + 1);

    const QImage moved = drawn(overlays, {0, {-20, 0}});
    EXPECT_EQ(dots[0].draws, draws + 2);
    EXPECT_EQ(inked(moved).left(), inked(first).left() + 20);

    const QImage before = drawn(overlays);
    overlays.forget(dots.back());
    EXPECT_NE(drawn(overlays), before);
    empty(dots);
}

TEST_F(MapOverlaysTest, APositionThatMovesLeavesThePictureOfManyMarks) {
    struct Position : Dot {
        using Dot::Dot;
        Layer layer() const override { return Layer::position; }
    };
    MapOverlays overlays;
    std::deque<Dot> dots;
    makeCrowd(dots);
    for (Dot& dot : dots) {
        overlays.layout(dot, placed);
    }
    Position position({50, 40});
    for (int i = 0; i < 5; ++i) {
        position.moveTo({50 + i, 40});
        overlays.layout(position, placed);
        draw(overlays);
    }
    EXPECT_THAT(position.drawn, ElementsAre(PagePoint{54, 40}));
    EXPECT_EQ(position.draws, 5);
    EXPECT_EQ(dots[0].draws, 1);
    empty(dots);
}

TEST_F(MapOverlaysTest, AHundredThousandMarksAreLaidOutAndForgotten) {
    MapOverlays overlays;
    std::deque<Dot> dots;
    for (int i = 0; i < 100'000; ++i) {
        Dot& dot = dots.emplace_back(ImagePixel{i % 100, i / 1000 % 80});
        dot.text = QStringLiteral("Mark %1").arg(i);
        overlays.layout(dot, placed);
    }
    draw(overlays);
    int draws = 0;
    for (const Dot& dot : dots) {
        draws += dot.draws;
    }
    EXPECT_GT(draws, 400) << "one in each cell of 4 by 4 pixels";
    EXPECT_LT(draws, 1500);
    while (dots.size() > 30) {
        overlays.forget(dots.back());
        dots.pop_back();
    }
    const int before = dots.back().draws;
    draw(overlays);
    EXPECT_EQ(dots.back().draws, before + 1) << "those that are left are drawn";
    empty(dots);
}

} // namespace
} // namespace raincast
