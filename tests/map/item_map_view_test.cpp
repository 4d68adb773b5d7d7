// SPDX-License-Identifier: MIT
#include "map/fitted_view.h"
#include "map/follow_icon.h"
#include "map/item_map_view.h"
#include "map/overlay_gps_position.h"
#include "map_page.h"
#include "support/serial_bytes.h"

#include <QPaintEvent>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::positionOf;
using test::publish;
using test::read;
using test::TestView;
using test::written;
using testing::ElementsAre;
using testing::IsEmpty;

// An overlay of given image pixels that notes its drawing.
class Dots : public COverlayObject {
public:
    explicit Dots(std::vector<ImagePixel> pixels) : m_pixels(std::move(pixels)) {}

    void Layout(std::vector<ImagePixel>& outline, const GeoReference& geo) const override {
        ++layouts;
        EXPECT_TRUE(geo.valid());
        outline = m_pixels;
    }
    void Draw(QPainter&, const ViewTransform& view, const std::vector<PagePoint>& points) override {
        ++draws;
        drawn = points;
        zoom = view.zoom();
    }
    void moveTo(std::vector<ImagePixel> pixels) {
        m_pixels = std::move(pixels);
        announceChanged();
    }

    mutable int layouts = 0;
    int draws = 0;
    int zoom = -99;
    std::vector<PagePoint> drawn;

private:
    std::vector<ImagePixel> m_pixels;
};

// An overlay that covers the whole page.
class Cover : public COverlayObject {
public:
    void Layout(std::vector<ImagePixel>& outline, const GeoReference&) const override {
        outline = {{300, 275}};
    }
    void Draw(QPainter& painter, const ViewTransform&, const std::vector<PagePoint>&) override {
        painter.fillRect(painter.viewport(), Qt::darkGreen);
    }
};

class ItemMapViewTest : public test::MapTest {
protected:
    [[nodiscard]] ImagePixel origin() const { return view->view().origin(); }
    [[nodiscard]] int zoom() const { return view->view().zoom(); }
    void zoomTo(int wanted) {
        while (zoom() != wanted) {
            view->command(zoom() > wanted ? kZoomIn : kZoomOut, 0);
        }
    }
    QImage draw() {
        QImage picture(kWidth, kHeight, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        view->draw(painter);
        return picture;
    }
};

// --- The view ---------------------------------------------------------------------------------

TEST_F(ItemMapViewTest, StartsUnzoomedAtTheImagesCornerWithoutFollowing) {
    const TestView fresh;
    EXPECT_EQ(fresh.view(), ViewTransform());
    EXPECT_FALSE(fresh.following());
    EXPECT_EQ(fresh.GetTypeId(), kTypeNone);
}

TEST_F(ItemMapViewTest, ZoomingKeepsThePixelInTheMiddle) {
    view->showPixel({300, 275});
    for (const int step : {kZoomIn, kZoomIn, kZoomOut, kZoomOut}) {
        EXPECT_TRUE(view->command(step, 0));
        EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275})) << zoom();
    }
    for (int level = 1; level <= 4; ++level) {
        EXPECT_TRUE(view->command(kZoomOut, 0));
        const int block = 1 << level;
        EXPECT_EQ(zoom(), level);
        EXPECT_NEAR(view->centrePixel().column, 300, 2 * block);
        EXPECT_NEAR(view->centrePixel().row, 275, 2 * block);
    }
}

TEST_F(ItemMapViewTest, ZoomingEndsAtItsRangeAndIsTakenThere) {
    zoomTo(-2);
    const ViewTransform nearest = view->view();
    EXPECT_TRUE(view->command(kZoomIn, 0));
    EXPECT_EQ(view->view(), nearest);
    zoomTo(4);
    const ViewTransform farthest = view->view();
    EXPECT_TRUE(view->character(u'-'));
    EXPECT_EQ(view->view(), farthest);
}

TEST_F(ItemMapViewTest, TheNumbersOfTheZoomCommandsStay) {
    EXPECT_TRUE(view->command(40030, clicked));
    EXPECT_EQ(zoom(), -1) << "in";
    EXPECT_TRUE(view->command(40031, clicked));
    EXPECT_EQ(zoom(), 0) << "out";
}

TEST_F(ItemMapViewTest, ZoomedOutTheOriginIsAWholeBlock) {
    zoomTo(2);
    for (int column = 300; column < 308; ++column) {
        view->showPixel({column, column + 1});
        EXPECT_EQ(origin().column % 4, 0);
        EXPECT_EQ(origin().row % 4, 0);
        view->setRectangle(view->rectangle().shifted(1, 1));
        EXPECT_EQ(origin().column % 4, 0);
    }
}

TEST_F(ItemMapViewTest, OtherCommandsAreNotTaken) {
    EXPECT_FALSE(view->command(40028, 0));
    EXPECT_FALSE(view->keyDown(Qt::Key_End));
    EXPECT_FALSE(view->character(u'x'));
}

TEST_F(ItemMapViewTest, CharactersZoom) {
    const std::pair<char16_t, int> steps[] = {{u'+', -1}, {u'=', -2}, {u'-', -1}, {u'_', 0}};
    for (const auto& [unit, level] : steps) {
        EXPECT_TRUE(view->character(unit));
        EXPECT_EQ(zoom(), level);
    }
}

TEST_F(ItemMapViewTest, ArrowKeysShowMoreOfTheMapInTheirDirection) {
    view->showPixel({300, 275});
    const ImagePixel before = view->centrePixel();
    const std::pair<int, ImagePixel> keys[] = {
        {Qt::Key_Left, {-32, 0}},
        {Qt::Key_Up, {0, -32}},
        {Qt::Key_Right, {32, 0}},
        {Qt::Key_Down, {0, 32}}};
    for (const auto& [key, way] : keys) {
        view->showPixel(before);
        EXPECT_TRUE(view->keyDown(key));
        EXPECT_EQ(
            view->centrePixel(), (ImagePixel{before.column + way.column, before.row + way.row})
        );
    }
    zoomTo(-2);
    view->showPixel(before);
    view->keyDown(Qt::Key_Right);
    EXPECT_EQ(view->centrePixel(), (ImagePixel{before.column + 8, before.row}));
    zoomTo(1);
    view->showPixel({300, 274});
    view->keyDown(Qt::Key_Down);
    EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 274 + 64}));
}

TEST_F(ItemMapViewTest, TheKeysOfAPersonReachIt) {
    showPage();
    const ViewTransform before = view->view();
    EXPECT_TRUE(page->keyDown(Qt::Key_Right));
    EXPECT_TRUE(page->character(u'+'));
    EXPECT_NE(view->view(), before);
}

// --- Getting about
// --------------------------------------------------------------------------------

TEST_F(ItemMapViewTest, TheWheelZoomsAtThePointer) {
    view->placeOnEarth();
    showPage();
    view->showPixel({300, 275});
    const ImagePixel pointed = view->view().toImage({30, 100});
    for (const int steps : {1, 1, -1, -1}) {
        EXPECT_TRUE(page->zoom(steps, {30, 100}));
        EXPECT_EQ(view->view().toImage({30, 100}), pointed) << zoom();
    }
    EXPECT_TRUE(page->zoom(2, {30, 100}));
    EXPECT_EQ(zoom(), -2);
    EXPECT_EQ(view->view().toImage({30, 100}), pointed);
    EXPECT_NE(view->centrePixel(), (ImagePixel{300, 275}));
}

TEST_F(ItemMapViewTest, WhileFollowingTheWheelZoomsAtThePosition) {
    view->placeOnEarth();
    publish(200, 150);
    view->follow();
    EXPECT_TRUE(page->zoom(1, {30, 100}));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{200, 150}));
    EXPECT_TRUE(view->following());
}

TEST_F(ItemMapViewTest, ADoublePressZoomsInThere) {
    showPage();
    view->showPixel({300, 275});
    const ImagePixel pressed = view->view().toImage({30, 100});
    tap(30, 100);
    pressAgain(30, 100);
    EXPECT_EQ(zoom(), -1);
    EXPECT_EQ(view->view().toImage({30, 100}), pressed);
    const ImagePixel before = origin();
    moveTo(60, 100);
    EXPECT_EQ(origin(), before) << "the second press drags nothing";
}

TEST_F(ItemMapViewTest, InLayoutModeADoublePressZoomsNothing) {
    showPage();
    page->command(kToggleLayout, 0);
    tap(30, 100);
    pressAgain(30, 100);
    lift(30, 100);
    EXPECT_EQ(zoom(), 0);
}

TEST_F(ItemMapViewTest, HomeAndZeroFitTheImage) {
    view->placeOnEarth();
    view->setRectangle({0, 0, kWidth, kHeight});
    const ViewTransform fitted = fittedView(view->rectangle(), {600, 550});
    for (const bool home : {true, false}) {
        publish(200, 150);
        view->follow();
        EXPECT_NE(view->view(), fitted);
        EXPECT_TRUE(home ? page->keyDown(Qt::Key_Home) : page->character(u'0'));
        EXPECT_EQ(view->view(), fitted);
        EXPECT_FALSE(view->following());
    }
}

TEST_F(ItemMapViewTest, WithoutAnImageThereIsNothingToFit) {
    const ViewTransform before = view->view();
    view->fitImage();
    EXPECT_EQ(view->view(), before);
}

TEST_F(ItemMapViewTest, AFittedImageStaysFittedUntilTheUserLooksElsewhere) {
    view->placeOnEarth();
    view->fitImage();
    for (const PageRectangle& size : {PageRectangle{0, 0, 640, 500}, {20, 30, 90, 80}}) {
        view->setRectangle(size);
        EXPECT_EQ(view->view(), fittedView(size, {600, 550}));
    }
    page->keyDown(Qt::Key_Right);
    const ImagePixel corner = view->view().toImage({20, 30});
    view->setRectangle({20, 30, 700, 600});
    EXPECT_EQ(view->view().toImage({20, 30}), corner);
}

TEST_F(ItemMapViewTest, AViewWithNothingOfTheImageSaysHowToComeBack) {
    view->placeOnEarth();
    view->fitImage();
    const auto words = [this] { // black on white, in the item's middle
        const QImage middle = draw().copy(30, 40, 80, 60);
        int dark = 0;
        for (int i = 0; i < 80 * 60; ++i) {
            dark += qGray(middle.pixel(i % 80, i / 80)) < 128 ? 1 : 0;
        }
        return dark > 30;
    };
    EXPECT_FALSE(words());
    view->setRectangle({20, 30, 120, 110});
    for (const ImagePixel far : {ImagePixel{-3000, 275}, {3000, 275}, {300, -3000}, {300, 3000}}) {
        view->showPixel(far);
        EXPECT_TRUE(words()) << far.column << " " << far.row;
    }
    view->showPixel({0, 0});
    EXPECT_FALSE(words());
    view->showPixel({3000, 275});
    view->takeOffEarth();
    EXPECT_FALSE(words()) << "there is no radar to bring back";
}

// --- Dragging ---------------------------------------------------------------------------------

TEST_F(ItemMapViewTest, ThePictureFollowsTheStylus) {
    showPage();
    view->showPixel({300, 275});
    const ImagePixel before = origin();
    press(30, 40);
    moveTo(35, 33);
    EXPECT_EQ(origin(), (ImagePixel{before.column - 5, before.row + 7}));
    moveTo(200, 200); // beyond the item
    lift(200, 200);
    EXPECT_EQ(origin(), (ImagePixel{before.column - 170, before.row - 160}));
    EXPECT_EQ(page->selected(), view);
}

TEST_F(ItemMapViewTest, ZoomedInADragMovesWholePixelsAndCarriesTheRest) {
    zoomTo(-2);
    const ImagePixel before = origin();
    view->stylusDown(50, 50, {});
    view->stylusMove(53, 50);
    EXPECT_EQ(origin(), before);
    view->stylusMove(54, 50);
    EXPECT_EQ(origin(), (ImagePixel{before.column - 1, before.row}));
    view->stylusMove(53, 50);
    EXPECT_EQ(origin(), before) << "rounded towards the left";
    view->stylusMove(50, 50);
    EXPECT_EQ(origin(), before);
}

TEST_F(ItemMapViewTest, ZoomedOutADragMovesByBlocks) {
    zoomTo(2);
    const ImagePixel before = origin();
    view->stylusDown(50, 50, {});
    view->stylusMove(51, 48);
    EXPECT_EQ(origin(), (ImagePixel{before.column - 4, before.row + 8}));
}

// --- Size -------------------------------------------------------------------------------------

TEST_F(ItemMapViewTest, AnotherRectangleKeepsThePixelAtItsCorner) {
    for (const int level : {-2, 0, 3}) {
        zoomTo(level);
        view->setRectangle({20, 32, 120, 112});
        const ImagePixel corner = view->view().toImage({20, 32});
        view->setRectangle({60, 8, 240, 300});
        EXPECT_EQ(view->view().toImage({60, 8}), corner) << level;
    }
}

TEST_F(ItemMapViewTest, AnotherPageSizeKeepsThePixelAtItsCorner) {
    showPage();
    view->setRectangle({40, 0, kWidth, kHeight}); // stuck to the right
    view->showPixel({300, 275});
    const ImagePixel corner = view->view().toImage({40, 0});
    resizePage(360, 240);
    EXPECT_EQ(view->rectangle(), (PageRectangle{160, 0, 360, 240}));
    EXPECT_EQ(view->view().toImage({160, 0}), corner);
}

// --- Positions --------------------------------------------------------------------------------

TEST_F(ItemMapViewTest, CentresOnAPositionWithinTheImage) {
    view->placeOnEarth();
    EXPECT_TRUE(view->centreOn(positionOf(300, 275)));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275}));
    EXPECT_NEAR(view->centrePosition().latitude, 41 - 2.75, 1e-9);
    EXPECT_NEAR(view->centrePosition().longitude, -105 + 3, 1e-9);
}

TEST_F(ItemMapViewTest, RefusesAPositionOutsideOfTheImage) {
    view->placeOnEarth();
    view->showPixel({300, 275});
    for (const auto& [column, row] : {std::pair(-3, 5), {600, 5}, {5, -3}, {5, 550}}) {
        EXPECT_FALSE(view->centreOn(positionOf(column, row)));
        EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275}));
    }
}

TEST_F(ItemMapViewTest, WithoutAGeoReferenceItKnowsNoPositions) {
    EXPECT_FALSE(view->centreOn(positionOf(300, 275)));
    EXPECT_EQ(view->centrePosition(), (GeoPosition{0, 0}));
    view->placeOnEarth();
    view->takeOffEarth();
    EXPECT_FALSE(view->centreOn(positionOf(300, 275)));
    EXPECT_EQ(view->centrePosition(), (GeoPosition{0, 0}));
}

TEST_F(ItemMapViewTest, FollowingKeepsThePositionInTheMiddle) {
    view->placeOnEarth();
    publish(100, 100);
    EXPECT_NE(view->centrePixel(), (ImagePixel{100, 100})) << "not before it is asked to";
    EXPECT_TRUE(view->character(u'L'));
    EXPECT_TRUE(view->following());
    EXPECT_EQ(view->centrePixel(), (ImagePixel{100, 100}));
    publish(120, 90);
    EXPECT_EQ(view->centrePixel(), (ImagePixel{120, 90}));
    publish(200, 200, kFixNone);
    EXPECT_EQ(view->centrePixel(), (ImagePixel{120, 90})) << "without a fix it stays";
    EXPECT_TRUE(view->following());
}

TEST_F(ItemMapViewTest, ToGoWhereItStandsEndsFollowingAndPaints) {
    showPage();
    view->placeOnEarth();
    publish(100, 100);
    view->character(u'l');
    const QImage followed = screen();
    EXPECT_TRUE(view->goTo(positionOf(100, 100)));
    EXPECT_FALSE(view->following());
    EXPECT_NE(screen(), followed) << "without the icon";
}

TEST_F(ItemMapViewTest, FollowingWithoutAFixWaitsForOne) {
    view->placeOnEarth();
    const ViewTransform before = view->view();
    EXPECT_TRUE(view->character(u'l'));
    EXPECT_TRUE(view->following());
    EXPECT_EQ(view->view(), before);
    publish(100, 100);
    EXPECT_EQ(view->centrePixel(), (ImagePixel{100, 100}));
    EXPECT_TRUE(view->following());
}

TEST_F(ItemMapViewTest, APositionOutsideOfTheImageEndsFollowing) {
    view->placeOnEarth();
    view->character(u'l');
    publish(700, 100);
    EXPECT_FALSE(view->following());
    view->character(u'l');
    EXPECT_FALSE(view->following()) << "the last position is outside as well";
}

TEST_F(ItemMapViewTest, FollowingWaitsForAnImageThatComesAfterThePosition) {
    view->character(u'l');
    publish(100, 100);
    EXPECT_TRUE(view->following());
    view->placeOnEarth();
    publish(120, 90);
    EXPECT_TRUE(view->following());
    EXPECT_EQ(view->centrePixel(), (ImagePixel{120, 90}));
}

TEST_F(ItemMapViewTest, APanAndADragEndFollowing) {
    view->character(u'l');
    view->keyDown(Qt::Key_Left);
    EXPECT_FALSE(view->following());
    view->character(u'l');
    view->stylusDown(5, 5, {});
    EXPECT_TRUE(view->following());
    view->stylusMove(6, 5);
    EXPECT_FALSE(view->following());
    view->character(u'l');
    view->command(kZoomIn, 0);
    EXPECT_TRUE(view->following()) << "zooming does not";
}

TEST_F(ItemMapViewTest, AViewIsSetToAPixelAndThenToThePositionThatIsFollowed) {
    view->placeOnEarth();
    EXPECT_TRUE(view->setView({10, 10}, positionOf(300, 275)));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275}));
    publish(100, 100);
    EXPECT_TRUE(view->setView({10, 10}, positionOf(300, 275)));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275})) << "not following";
    view->character(u'l');
    EXPECT_TRUE(view->setView({10, 10}, positionOf(300, 275)));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{100, 100}));
    EXPECT_TRUE(view->following());
    EXPECT_TRUE(view->setView({10, 10}, positionOf(-90, 0))) << "the fallback is not needed";
}

TEST_F(ItemMapViewTest, AViewThatCannotBeCentredShowsThePixelAndEndsFollowing) {
    view->character(u'l');
    EXPECT_FALSE(view->setView({10, 20}, positionOf(300, 275)));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{10, 20}));
    EXPECT_FALSE(view->following());
}

TEST_F(ItemMapViewTest, TheIconShowsThatAPositionIsFollowed) {
    showPage();
    view->placeOnEarth();
    const QImage bare = screen();
    view->character(u'l');
    EXPECT_EQ(screen(), bare) << "without a fix there is nothing to follow";
    publish(100, 100);
    const QImage followed = screen();
    const QRect icon(120 - 13, 110 - 16, 13, 16);
    EXPECT_NE(followed.copy(icon), bare.copy(icon));
    publish(100, 100, kFixNone);
    EXPECT_EQ(screen(), bare);
}

// A receiver speaks ten times a second.
TEST_F(ItemMapViewTest, APositionThatComesIsSeenAsIfAllWerePaintedAnew) {
    struct Says {
        int column;
        int row;
        int fixType = kFixGps;
        float speed = 0;
    };
    showPage();
    view->placeOnEarth();
    COverlayGPSPosition position;
    for (const bool followed : {false, true}) {
        view->showPixel({100, 100});
        followed ? view->follow() : view->stopFollowing();
        int turn = 0;
        for (const auto& [column, row, fixType, speed] :
             {Says{100, 100},
              {100, 100},
              {104, 97},
              {104, 97, kFixGps, 9},
              {104, 97, kFixGps, 20},
              {90, 110, kFixGps, 400},
              {90, 110, kFixNone},
              {90, 110},
              {2000, 110},
              {100, 100}}) {
            position.latitude = test::positionOf(column, row).latitude;
            position.longitude = test::positionOf(column, row).longitude;
            position.fixType = fixType;
            position.speed = speed;
            position.course = 135;
            position.publish();
            const QImage partly = screen();
            view->invalidate();
            EXPECT_EQ(screen(), partly) << followed << ' ' << turn;
            if (++turn == 5) {
                marks.setTarget(addMark(110, 95, QStringLiteral("Pier")));
            }
        }
        marks.clear();
    }
}

TEST_F(ItemMapViewTest, APositionThatComesPaintsNoMoreThanItsIconAndLines) {
    class Paintings : public QObject {
    public:
        QRegion painted;

    private:
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint) {
                painted |= static_cast<QPaintEvent*>(event)->region();
            }
            return false;
        }
    } paintings;
    showPage();
    view->placeOnEarth();
    COverlayGPSPosition position;
    const auto leavesCorner = [&](int column, int row) {
        test::settle();
        paintings.painted = {};
        position.latitude = test::positionOf(column, row).latitude;
        position.longitude = test::positionOf(column, row).longitude;
        position.fixType = kFixGps;
        position.publish();
        test::settle();
        const double ratio = m_window.devicePixelRatioF();
        return !paintings.painted.contains(QPoint(qRound(25 / ratio), qRound(105 / ratio)));
    };
    view->follow();
    static_cast<void>(leavesCorner(100, 100)); // the view comes there
    page->widget()->installEventFilter(&paintings);
    EXPECT_TRUE(leavesCorner(100, 100)) << "the lower left corner has nothing of it";
    EXPECT_FALSE(paintings.painted.isEmpty());
    EXPECT_FALSE(leavesCorner(130, 100)) << "all moves with the view";
}

TEST_F(ItemMapViewTest, TheIconLiesOverEverythingElseInTheCorner) {
    Cover cover;
    view->placeOnEarth();
    publish(300, 275);
    const PageRectangle roomy{20, 30, 120, 110};
    const PageRectangle small{20, 30, 60, 52}; // the line of the position reaches into the corner
    for (const PageRectangle& place : {roomy, small}) {
        view->setRectangle(place);
        view->showPixel({300, 275});
        view->stopFollowing();
        cover.announceChanged();
        QImage expected = draw();
        {
            QPainter painter(&expected);
            drawFollowIcon(painter, {place.right - 13, place.bottom - 16});
        }
        view->follow();
        EXPECT_EQ(draw(), expected) << place.bottom;
    }
}

// --- Overlays ---------------------------------------------------------------------------------

TEST_F(ItemMapViewTest, OverlaysAreDrawnAtTheirPlaceOnThePage) {
    Dots dots({{300, 275}, {310, 280}});
    view->placeOnEarth();
    view->showPixel({300, 275});
    dots.announceChanged();
    draw();
    EXPECT_THAT(dots.drawn, ElementsAre(PagePoint{70, 70}, PagePoint{80, 75}));
    EXPECT_EQ(dots.zoom, 0);
    zoomTo(-1);
    draw();
    EXPECT_THAT(dots.drawn, ElementsAre(PagePoint{70, 70}, PagePoint{90, 80}));
    EXPECT_EQ(dots.zoom, -1);
    view->keyDown(Qt::Key_Left);
    draw();
    EXPECT_THAT(dots.drawn, ElementsAre(PagePoint{102, 70}, PagePoint{122, 80}));
}

TEST_F(ItemMapViewTest, AnOverlayThatChangesIsLaidOutAgainAndThePageIsPainted) {
    showPage();
    view->placeOnEarth();
    view->showPixel({300, 275});
    Dots dots({{300, 275}});
    dots.announceChanged();
    test::settle();
    const int before = dots.draws;
    dots.moveTo({{301, 275}, {302, 275}});
    test::settle();
    EXPECT_EQ(dots.draws, before + 1);
    EXPECT_THAT(dots.drawn, ElementsAre(PagePoint{71, 70}, PagePoint{72, 70}));
}

TEST_F(ItemMapViewTest, AnOverlayThatGoesIsForgotten) {
    view->placeOnEarth();
    Dots stays({{0, 0}});
    stays.announceChanged();
    {
        Dots goes({{20, 0}});
        goes.announceChanged();
        draw();
        EXPECT_EQ(goes.draws, 1);
    }
    draw(); // of what is gone nothing may be touched
    view->geoReferenceChanged();
    EXPECT_EQ(stays.draws, 2);
    EXPECT_EQ(stays.layouts, 2);
}

TEST_F(ItemMapViewTest, OverlaysThatExistedBeforeTheViewAreKnown) {
    Dots dots({{5, 5}});
    TestView later;
    later.placeOnEarth();
    EXPECT_EQ(dots.layouts, 1);
}

TEST_F(ItemMapViewTest, WithoutAGeoReferenceOverlaysAreNotDrawn) {
    Dots dots({{300, 275}});
    view->showPixel({300, 275});
    dots.announceChanged();
    draw();
    EXPECT_EQ(dots.layouts, 0);
    EXPECT_EQ(dots.draws, 0);
    view->placeOnEarth();
    draw();
    EXPECT_EQ(dots.draws, 1);
    view->takeOffEarth();
    draw();
    EXPECT_EQ(dots.draws, 1);
    dots.announceChanged();
    draw();
    EXPECT_EQ(dots.draws, 1);
    view->placeOnEarth();
    draw();
    EXPECT_EQ(dots.draws, 2);
}

TEST_F(ItemMapViewTest, AnOverlayMoreThanFiftyPixelsOutsideIsNotDrawn) {
    view->placeOnEarth();
    view->showPixel({300, 275}); // image pixels 250 to 350 and 235 to 315
    const std::pair<std::vector<ImagePixel>, bool> cases[] = {
        {{{200, 275}}, true},
        {{{199, 275}}, false},
        {{{400, 275}}, true},
        {{{401, 275}}, false},
        {{{300, 185}}, true},
        {{{300, 184}}, false},
        {{{300, 365}}, true},
        {{{300, 366}}, false},
        {{{100, 275}, {500, 275}}, true}, // across
        {{{100, 100}, {199, 500}}, false},
        {{}, false}};
    for (const auto& [pixels, drawn] : cases) {
        Dots dots(pixels);
        dots.announceChanged();
        draw();
        EXPECT_EQ(dots.draws == 1, drawn) << testing::PrintToString(pixels.size());
    }
}

TEST_F(ItemMapViewTest, AWildViewAndWildPointsDoNoHarm) {
    view->placeOnEarth();
    for (const std::int32_t number : {INT32_MIN, INT32_MAX}) {
        view->showPixel({number, number});
        Dots dots({{INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX}});
        dots.announceChanged();
        zoomTo(-2);
        draw();
        zoomTo(4);
        draw();
        EXPECT_EQ(dots.draws, 2);
    }
}

// --- Page file --------------------------------------------------------------------------------

constexpr qsizetype kItemBytes = 48;

TEST_F(ItemMapViewTest, ItsViewIsARecordBehindTheItems) {
    zoomTo(1);
    view->showPixel({0x01020304, 2});
    view->character(u'l');
    const QByteArray bytes = written(*view);
    const QByteArray record("\2\0\0\0\x0C\0\0\0\1\0\0\0\x78\2\2\1\x76\xFF\xFF\xFF\1\0\0\0\1", 25);
    EXPECT_EQ(bytes.size(), kItemBytes + record.size());
    EXPECT_EQ(bytes.mid(kItemBytes), record);
}

TEST_F(ItemMapViewTest, ReopensWhereItWasLeft) {
    zoomTo(-2);
    view->showPixel({300, 275});
    view->character(u'l');
    TestView again;
    EXPECT_TRUE(read(again, written(*view)));
    EXPECT_EQ(again.view(), view->view());
    EXPECT_EQ(again.rectangle(), view->rectangle());
    EXPECT_TRUE(again.following());
}

TEST_F(ItemMapViewTest, AZoomOutOfRangeIsNone) {
    view->showPixel({300, 275});
    QByteArray bytes = written(*view);
    for (const char zoomByte : {'\5', '\x7F', '\xFD'}) {
        bytes[kItemBytes + 8] = zoomByte;
        TestView again;
        EXPECT_TRUE(read(again, bytes));
        EXPECT_EQ(again.view().zoom(), 0);
        EXPECT_EQ(again.view().origin(), origin());
    }
}

TEST_F(ItemMapViewTest, AMissingOrCutRecordLeavesItsDefaults) {
    view->showPixel({300, 275});
    const QByteArray bytes = written(*view);
    for (const qsizetype size : {kItemBytes, kItemBytes + 4, kItemBytes + 10}) {
        TestView again;
        EXPECT_TRUE(read(again, bytes.left(size)));
        EXPECT_EQ(again.view(), ViewTransform());
        EXPECT_FALSE(again.following());
        EXPECT_EQ(again.rectangle(), view->rectangle());
    }
}

} // namespace
} // namespace raincast
