// SPDX-License-Identifier: MIT
#include "page/edge_painter.h"
#include "page/item_painter.h"
#include "page_window.h"

#include <QPalette>

namespace raincast {
namespace {

using test::decoration;
using test::NotingItem;

constexpr QRgb kGround = 0xFFFF'FFFF;
constexpr QRgb kItem = 0xFF00'00FF;
constexpr QRgb kFill = 0xFF11'2233;
constexpr std::int32_t kStoredFill = 0x0033'2211; // blue, green, red
constexpr int kNone = ItemPlacement::kNone;

class ItemPainterTest : public test::GuiTest {
protected:
    ItemPainterTest() {
        picture.fill(kGround);
        item.colour = QColor::fromRgb(kItem);
        item.setRectangle({10, 20, 30, 36});
        palette.setColor(QPalette::Light, Qt::white);
        palette.setColor(QPalette::Midlight, 0xCCCCCC);
        palette.setColor(QPalette::Dark, 0x888888);
        palette.setColor(QPalette::Shadow, 0x111111);
    }

    void paint() {
        QPainter painter(&picture);
        paintItem(painter, item, palette);
    }

    // The pixels of a colour must be exactly those of the first rectangle less those of the second.
    void expectArea(QRgb colour, const QRect& area, const QRect& hole = {}) {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const bool wanted = area.contains(x, y) && !hole.contains(x, y);
                ASSERT_EQ(picture.pixel(x, y) == colour, wanted) << x << "," << y;
            }
        }
    }

    QImage picture{60, 60, QImage::Format_RGB32};
    NotingItem item;
    QPalette palette;
    const QRect place{10, 20, 20, 16};
};

TEST_F(ItemPainterTest, WithoutFillAndEdgeAFrameShowsNothing) {
    item.setDecoration(decoration(kNone, kNone, 9, 0));
    paint();
    expectArea(kItem, place);
    expectArea(kGround, picture.rect(), place);
}

TEST_F(ItemPainterTest, TheFillCoversTheFrameBelowTheItem) {
    item.setDecoration(decoration(kStoredFill, kNone, 3, 0));
    paint();
    expectArea(kItem, place);
    expectArea(kFill, place.adjusted(-3, -3, 3, 3), place);
}

TEST_F(ItemPainterTest, AFillOfAFrameWiderThanThePictureFillsIt) {
    item.setDecoration(decoration(kStoredFill, kNone, 1000, 0));
    paint();
    expectArea(kFill, picture.rect(), place);
}

TEST_F(ItemPainterTest, WithoutClipAnItemDrawsWhereItWants) {
    item.paints = {-5, -5, 40, 35};
    paint();
    expectArea(kItem, {5, 15, 45, 40});
}

TEST_F(ItemPainterTest, TheClipIsTheItemsRectangleWithoutItsFrame) {
    item.paints = {-5, -5, 40, 35};
    item.setDecoration(decoration(kNone, kNone, 3, 1));
    paint();
    expectArea(kItem, place);
}

TEST_F(ItemPainterTest, TheClipEndsWithTheItem) {
    item.setDecoration(decoration(kNone, raisedOuter, 3, 1));
    paint();
    EXPECT_EQ(picture.pixel(7, 17), 0xFFCC'CCCC) << "the edge lies outside of the clip";
}

TEST_F(ItemPainterTest, AnItemLeavesNoTraceInThePainter) {
    class Messy : public NotingItem {
    public:
        void draw(QPainter& painter) override {
            painter.translate(5, 5);
            painter.setClipRect(0, 0, 1, 1);
            painter.setOpacity(0.1);
        }
    } messy;
    QPainter painter(&picture);
    paintItem(painter, messy, palette);
    EXPECT_TRUE(painter.worldTransform().isIdentity());
    EXPECT_FALSE(painter.hasClipping());
    EXPECT_EQ(painter.opacity(), 1.0);
}

TEST_F(ItemPainterTest, AnEmptyItemIsNotAskedToDraw) {
    item.setRectangle({30, 20, 10, 36});
    item.setDecoration(decoration(kNone, raisedOuter, 3, 1));
    paint();
    EXPECT_EQ(item.draws, 0);
}

TEST_F(ItemPainterTest, ARaisedEdgeIsLitFromTheTopLeft) {
    item.setDecoration(decoration(kNone, raisedOuter | raisedInner, 2, 0));
    paint();
    const QRect frame = place.adjusted(-2, -2, 2, 2);
    EXPECT_EQ(picture.pixel(frame.left(), frame.top()), 0xFFCC'CCCC);
    EXPECT_EQ(picture.pixel(frame.left() + 5, frame.top()), 0xFFCC'CCCC);
    EXPECT_EQ(picture.pixel(frame.right(), frame.top()), 0xFF11'1111);
    EXPECT_EQ(picture.pixel(frame.left(), frame.bottom()), 0xFF11'1111);
    EXPECT_EQ(picture.pixel(frame.left() + 1, frame.top() + 5), 0xFFFF'FFFF);
    EXPECT_EQ(picture.pixel(frame.right() - 1, frame.top() + 5), 0xFF88'8888);
    expectArea(kItem, place);
}

TEST_F(ItemPainterTest, ASunkenEdgeIsLitFromTheBottomRight) {
    item.setDecoration(decoration(kNone, sunkenOuter | sunkenInner, 2, 0));
    paint();
    const QRect frame = place.adjusted(-2, -2, 2, 2);
    EXPECT_EQ(picture.pixel(frame.left(), frame.top() + 5), 0xFF88'8888);
    EXPECT_EQ(picture.pixel(frame.left() + 1, frame.top() + 5), 0xFF11'1111);
    EXPECT_EQ(picture.pixel(frame.right() - 1, frame.top() + 5), 0xFFCC'CCCC);
    EXPECT_EQ(picture.pixel(frame.right(), frame.top() + 5), 0xFFFF'FFFF);
}

TEST_F(ItemPainterTest, TheEdgeLiesAboveTheItem) {
    item.setDecoration(decoration(kStoredFill, raisedOuter, 0, 0));
    paint();
    EXPECT_EQ(picture.pixel(place.topLeft()), 0xFFCC'CCCC);
    EXPECT_EQ(picture.pixel(place.bottomRight()), 0xFF11'1111);
    expectArea(kItem, place.adjusted(1, 1, -1, -1));
}

TEST_F(ItemPainterTest, AnEdgeWithOneRingHasItOutermost) {
    item.setDecoration(decoration(kNone, sunkenInner, 2, 0));
    paint();
    const QRect frame = place.adjusted(-2, -2, 2, 2);
    EXPECT_EQ(picture.pixel(frame.left(), frame.top()), 0xFF11'1111);
    EXPECT_EQ(picture.pixel(frame.left() + 1, frame.top() + 1), kGround);
}

TEST_F(ItemPainterTest, ARingThatIsBothRaisedAndSunkenIsNone) {
    item.setDecoration(decoration(kNone, raisedOuter | sunkenOuter, 2, 0));
    paint();
    expectArea(kGround, picture.rect(), place);
}

TEST_F(ItemPainterTest, TheOutlineIsRedForTheSelectedItemAndGreenForOthers) {
    for (const bool selected : {true, false}) {
        picture.fill(kGround);
        QPainter painter(&picture);
        paintLayoutMarks(painter, {10, 20, 50, 50}, selected, 12);
        const QRgb colour = selected ? qRgb(200, 0, 0) : qRgb(0, 200, 0);
        for (const QPoint& corner : {QPoint(10, 20), {49, 20}, {10, 49}, {49, 49}}) {
            EXPECT_EQ(picture.pixel(corner), colour);
        }
        EXPECT_EQ(picture.pixel(9, 30), kGround);
        EXPECT_EQ(picture.pixel(11, 30), kGround) << "the inside stays as it is";
        EXPECT_EQ(picture.pixel(50, 30), kGround);
        EXPECT_EQ(picture.pixel(30, 50), kGround);
    }
}

TEST_F(ItemPainterTest, TheGripIsTwoStrokesAcrossTheCorner) {
    for (const int grip : {12, 24}) {
        picture.fill(kGround);
        QPainter painter(&picture);
        paintLayoutMarks(painter, {10, 20, 50, 50}, true, grip);
        const QPoint corner(48, 47);
        for (const int length : {grip, grip / 2}) {
            for (int i = 0; i <= length; ++i) {
                EXPECT_EQ(picture.pixel(corner + QPoint(i - length, -i)), qRgb(200, 0, 0))
                    << "stroke " << length << ", pixel " << i;
            }
        }
        EXPECT_EQ(picture.pixel(corner - QPoint(grip - 2, 0)), kGround);
        EXPECT_EQ(picture.pixel(corner - QPoint(1, 1)), kGround);
    }
}

} // namespace
} // namespace raincast
