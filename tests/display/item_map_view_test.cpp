// SPDX-License-Identifier: MIT
#include "display/item_map_view.h"
#include "support/files.h"
#include "support/qt_app.h"

#include <QPainter>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;

/// A map view over an image of 600 × 550 pixels, 0.01 degrees each: 41 N, 105 W is pixel (0, 0).
class TestView : public CItemMapView {
public:
    TestView() : CItemMapView(0) {}

    void placeImage() {
        const QTemporaryDir folder;
        const QString path = folder.filePath("image.gfw");
        writeFile(path, "0.01\n0\n0\n-0.01\n-105.0\n41.0\n");
        EXPECT_TRUE(geoReference().loadWorldFile(path.toStdString(), 600, 550));
        geoReferenceChanged();
    }
    void takeImageAway() {
        geoReference().invalidate();
        geoReferenceChanged();
    }
    using CItemMapView::setView;
    using CItemMapView::showPixel;
};

/// Two points; notes what it was asked to draw.
class TestOverlay : public COverlayObject {
public:
    explicit TestOverlay(std::vector<ImagePixel> points) : m_points(std::move(points)) {}

    void Layout(
        std::vector<ImagePixel>& outline, const GeoReference& /*geoReference*/
    ) const override {
        outline = m_points;
    }
    void Draw(
        QPainter& /*painter*/, const ViewTransform& /*view*/, const std::vector<PagePoint>& outline
    ) override {
        drawn.push_back(outline);
    }

    std::vector<std::vector<PagePoint>> drawn;

private:
    std::vector<ImagePixel> m_points;
};

CDataGPSPosition fixAt(double latitude, double longitude) {
    CDataGPSPosition position;
    position.latitude = latitude;
    position.longitude = longitude;
    position.fixType = kFixGps;
    return position;
}

class ItemMapViewTest : public test::GuiTest {
protected:
    ItemMapViewTest() {
        m_view.setRectangle({20, 30, 220, 330});
        m_view.placeImage();
        m_view.showPixel({300, 275});
    }
    QImage drawn() {
        QImage page(240, 340, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        m_view.draw(painter);
        return page;
    }
    void publish(CDataGPSPosition position) { Listener<CDataGPSPosition>::Notify(position); }
    [[nodiscard]] ImagePixel origin() const { return m_view.view().origin(); }

    TestView m_view;
};

TEST_F(ItemMapViewTest, ZoomingKeepsThePixelInTheMiddle) {
    for (const int id : {kZoomIn, kZoomIn, kZoomOut, kZoomOut}) {
        EXPECT_TRUE(m_view.command(id, 0));
        EXPECT_EQ(m_view.centrePixel(), (ImagePixel{300, 275}));
    }
    EXPECT_TRUE(m_view.character(u'-'));
    EXPECT_TRUE(m_view.character(u'_'));
    EXPECT_EQ(m_view.view().zoom(), 2);
    EXPECT_EQ(origin().column % 4, 0);
    EXPECT_EQ(origin().row % 4, 0);
    EXPECT_TRUE(m_view.character(u'+'));
    EXPECT_TRUE(m_view.character(u'='));
    EXPECT_EQ(m_view.view().zoom(), 0);
    EXPECT_FALSE(m_view.command(40033, 0));
    EXPECT_FALSE(m_view.character(u'x'));
}

TEST_F(ItemMapViewTest, ZoomsBeyondTheRangeAreTakenAndIgnored) {
    for (int i = 0; i < 8; ++i) {
        EXPECT_TRUE(m_view.command(kZoomOut, 0));
    }
    EXPECT_EQ(m_view.view().zoom(), 4);
    for (int i = 0; i < 8; ++i) {
        EXPECT_TRUE(m_view.command(kZoomIn, 0));
    }
    EXPECT_EQ(m_view.view().zoom(), -2);
}

struct Pan {
    int key;
    int dx;
    int dy;
};

TEST_F(ItemMapViewTest, ArrowKeysShowMoreOfTheMapInTheirDirection) {
    const Pan pans[] = {
        {Qt::Key_Left, -32, 0},
        {Qt::Key_Up, 0, -32},
        {Qt::Key_Right, 32, 0},
        {Qt::Key_Down, 0, 32}};
    for (const Pan& pan : pans) {
        m_view.showPixel({300, 275});
        EXPECT_TRUE(m_view.keyDown(pan.key));
        EXPECT_EQ(m_view.centrePixel(), (ImagePixel{300 + pan.dx, 275 + pan.dy})) << pan.key;
    }
    EXPECT_FALSE(m_view.keyDown(Qt::Key_A));
}

TEST_F(ItemMapViewTest, ADragMovesThePictureWithTheStylus) {
    EXPECT_TRUE(m_view.stylusDown(50, 50, {}));
    m_view.stylusMove(60, 45);
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{290, 280}));
    m_view.stylusMove(50, 50);
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{300, 275}));
}

TEST_F(ItemMapViewTest, ZoomedInADragMovesByWholeImagePixels) {
    m_view.command(kZoomIn, 0);
    m_view.command(kZoomIn, 0);
    const ImagePixel before = origin();
    m_view.stylusDown(50, 50, {});
    m_view.stylusMove(53, 50);
    EXPECT_EQ(origin(), before);
    m_view.stylusMove(54, 50);
    EXPECT_EQ(origin(), (ImagePixel{before.column - 1, before.row}));
    m_view.stylusMove(49, 50); // a pixel left of where it began
    EXPECT_EQ(origin(), (ImagePixel{before.column + 1, before.row}));
}

TEST_F(ItemMapViewTest, ANewRectangleKeepsTheTopLeftPixel) {
    const ImagePixel before = m_view.view().toImage({20, 30});
    m_view.setRectangle({5, 7, 325, 247});
    EXPECT_EQ(m_view.view().toImage({5, 7}), before);
}

TEST_F(ItemMapViewTest, CentringNeedsAPlacedImageAndAPositionOnIt) {
    EXPECT_TRUE(m_view.centreOn({40.5, -104.0}));
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{100, 50}));
    const ImagePixel before = origin();
    EXPECT_FALSE(m_view.centreOn({42.0, -104.0}));
    EXPECT_EQ(origin(), before);
    EXPECT_NEAR(m_view.centrePosition().latitude, 40.5, 1e-9);
    EXPECT_NEAR(m_view.centrePosition().longitude, -104.0, 1e-9);

    m_view.takeImageAway();
    EXPECT_FALSE(m_view.centreOn({40.5, -104.0}));
    EXPECT_EQ(m_view.centrePosition(), GeoPosition{});
}

TEST_F(ItemMapViewTest, FollowingWaitsForAFix) {
    const ImagePixel before = origin();
    EXPECT_TRUE(m_view.character(u'L'));
    EXPECT_TRUE(m_view.following());
    EXPECT_EQ(origin(), before);
    CDataGPSPosition lost = fixAt(40.5, -104.0);
    lost.fixType = kFixNone;
    publish(lost);
    EXPECT_EQ(origin(), before);
    publish(fixAt(40.5, -104.0));
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{100, 50}));
    EXPECT_TRUE(m_view.following());
}

TEST_F(ItemMapViewTest, FollowingBeginsAtTheLastFix) {
    publish(fixAt(40.5, -104.0));
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{300, 275}));
    EXPECT_TRUE(m_view.character(u'l'));
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{100, 50}));
}

TEST_F(ItemMapViewTest, FollowingEndsOffTheImageAndWithAnyPan) {
    m_view.character(u'L');
    publish(fixAt(50, -104.0));
    EXPECT_FALSE(m_view.following());

    m_view.character(u'L'); // the last fix is off the image: it ends at once
    EXPECT_FALSE(m_view.following());

    publish(fixAt(40.5, -104.0));
    m_view.character(u'L');
    EXPECT_TRUE(m_view.following());
    m_view.keyDown(Qt::Key_Left);
    EXPECT_FALSE(m_view.following());

    m_view.character(u'L');
    m_view.stylusDown(0, 0, {});
    m_view.stylusMove(1, 1);
    EXPECT_FALSE(m_view.following());
}

TEST_F(ItemMapViewTest, ASetViewFallsBackToAPosition) {
    EXPECT_TRUE(m_view.setView({300, 275}, {40.5, -104.0}));
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{100, 50}));
    EXPECT_FALSE(m_view.setView({300, 275}, {0, 0}));
    EXPECT_EQ(m_view.centrePixel(), (ImagePixel{300, 275}));
}

TEST_F(ItemMapViewTest, TheFollowIconStandsInTheCornerWhileThereIsAFix) {
    const QImage before = drawn();
    m_view.character(u'L');
    EXPECT_EQ(drawn(), before);
    publish(fixAt(40.5, -104.0));
    const QImage after = drawn();
    EXPECT_NE(after, before);
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x) {
            if (after.pixel(x, y) != before.pixel(x, y)) {
                EXPECT_TRUE(QRect(220 - 13, 330 - 16, 13, 16).contains(x, y)) << x << ' ' << y;
            }
        }
    }
}

TEST_F(ItemMapViewTest, OverlaysAreDrawnAtTheirPagePixels) {
    TestOverlay overlay({{300, 275}, {310, 265}});
    overlay.announceChanged();
    drawn();
    EXPECT_THAT(overlay.drawn, ElementsAre(ElementsAre(PagePoint{120, 180}, PagePoint{130, 170})));
    m_view.command(kZoomOut, 0);
    drawn();
    EXPECT_EQ(overlay.drawn.back()[0].x - overlay.drawn.back()[1].x, -5);
}

TEST_F(ItemMapViewTest, OverlaysFarOutsideAreNotDrawn) {
    // The item shows columns 200 to 399; fifty more on each side count as near.
    TestOverlay near({{450, 275}});
    TestOverlay far({{452, 275}});
    near.announceChanged();
    far.announceChanged();
    drawn();
    EXPECT_EQ(near.drawn.size(), 1U);
    EXPECT_EQ(far.drawn.size(), 0U);
}

TEST_F(ItemMapViewTest, OverlaysGoWithTheImageAndWhenTheyEnd) {
    {
        TestOverlay overlay({{300, 275}});
        overlay.announceChanged();
        m_view.takeImageAway();
        drawn();
        EXPECT_TRUE(overlay.drawn.empty());
        m_view.placeImage();
        drawn();
        EXPECT_EQ(overlay.drawn.size(), 1U);
    }
    drawn(); // nothing is left to be drawn
}

TEST_F(ItemMapViewTest, AViewMadeLaterKnowsTheOverlaysThatExist) {
    TestOverlay overlay({{300, 275}});
    TestView later;
    later.setRectangle({0, 0, 100, 100});
    later.placeImage();
    later.showPixel({300, 275});
    QImage page(100, 100, QImage::Format_RGB32);
    QPainter painter(&page);
    later.draw(painter);
    EXPECT_THAT(overlay.drawn, ElementsAre(ElementsAre(PagePoint{50, 50})));
}

} // namespace
} // namespace raincast
