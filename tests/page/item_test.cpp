// SPDX-License-Identifier: MIT
#include "page/image.h"
#include "page/item.h"
#include "page_window.h"
#include "support/serial_bytes.h"

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::NotingItem;
using test::read;
using test::written;
using testing::ElementsAre;

QByteArray number(std::uint32_t value) {
    const auto bytes = toLittleEndian(value);
    return {reinterpret_cast<const char*>(bytes.data()), 4};
}

// A record of one field.
QByteArray record(const QByteArray& field) {
    return number(1) + number(static_cast<std::uint32_t>(field.size())) + field;
}

QByteArray placementBytes(const PageRectangle& rectangle) {
    ItemPlacement placement;
    placement.rectangle = rectangle;
    const auto bytes = placement.toBytes();
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

class ItemTest : public test::PageTest {};

TEST_F(ItemTest, IsWrittenAsOneRecordWithOneFieldOfFortyBytes) {
    CPageDisplay::CImage item;
    item.setRectangle({1, 2, 3, 4});
    EXPECT_EQ(written(item), record(placementBytes({1, 2, 3, 4})));
    EXPECT_EQ(written(item).size(), 48);
}

TEST_F(ItemTest, AShorterFieldLeavesTheRest) {
    CPageDisplay::CImage item;
    EXPECT_TRUE(read(item, record(placementBytes({9, 8, 0, 0}).left(8))));
    EXPECT_EQ(item.rectangle(), (PageRectangle{9, 8, 75, 50}));
    EXPECT_EQ(item.placement().fillColour, ItemPlacement::kNone);
}

TEST_F(ItemTest, ALongerFieldIsReadToItsFortiethByte) {
    CPageDisplay::CImage item;
    EXPECT_TRUE(read(item, record(placementBytes({9, 8, 70, 60}) + "more")));
    EXPECT_EQ(item.rectangle(), (PageRectangle{9, 8, 70, 60}));
}

TEST_F(ItemTest, AMissingRecordLeavesTheDefaults) {
    CPageDisplay::CImage item;
    EXPECT_TRUE(read(item, {}));
    EXPECT_EQ(item.placement(), ItemPlacement());
    EXPECT_TRUE(read(item, number(0)));
    EXPECT_EQ(item.placement(), ItemPlacement());
    EXPECT_TRUE(read(item, record(placementBytes({1, 2, 3, 4})).left(30)));
    EXPECT_EQ(item.placement(), ItemPlacement());
}

TEST_F(ItemTest, WithoutAPageARectangleLeavesTheAnchors) {
    NotingItem item;
    item.setRectangle({0, 0, kWidth, kHeight});
    EXPECT_EQ(item.placement().hAnchor, Anchor::free);
    item.invalidate();
    item.refresh();
}

TEST_F(ItemTest, OnAPageOfUnknownSizeARectangleLeavesTheAnchors) {
    NotingItem& item = add({0, 0, kWidth, kHeight});
    EXPECT_EQ(item.placement().hAnchor, Anchor::free);
}

TEST_F(ItemTest, OnAPageARectangleSetsTheAnchors) {
    showPage();
    NotingItem& item = add({0, 0, kWidth, kHeight});
    EXPECT_EQ(item.placement().hAnchor, Anchor::span);
    EXPECT_EQ(item.placement().vAnchor, Anchor::span);
    item.setRectangle({10, 0, kWidth, 20});
    EXPECT_EQ(item.placement().hAnchor, Anchor::farEdge);
    EXPECT_EQ(item.placement().vAnchor, Anchor::free);
}

TEST_F(ItemTest, TheSizeIsStillKnownWhileThePageIsNotShown) {
    showPage();
    page->deactivate();
    EXPECT_EQ(add({0, 0, kWidth, 5}).placement().hAnchor, Anchor::span);
}

TEST_F(ItemTest, InvalidatingPaintsLaterAndRefreshingAtOnce) {
    NotingItem& item = add({0, 0, 50, 50});
    showPage();
    test::settle();
    const int before = item.draws;
    item.invalidate();
    item.invalidate();
    EXPECT_EQ(item.draws, before);
    test::settle();
    EXPECT_EQ(item.draws, before + 1);
    item.refresh();
    EXPECT_EQ(item.draws, before + 2);
    test::settle();
    EXPECT_EQ(item.draws, before + 2);
}

TEST_F(ItemTest, APartOfAPageIsPaintedAlone) {
    NotingItem& item = add({0, 0, 60, 60});
    item.colour = Qt::red;
    showPage();
    EXPECT_EQ(at(30, 30), QColor(Qt::red));
    item.colour = Qt::blue;
    item.invalidate(QRect(11, 21, 15, 5));
    const QImage one = screen();
    for (const QPoint inside : {QPoint(11, 21), {25, 21}, {11, 25}, {25, 25}}) {
        EXPECT_EQ(one.pixelColor(inside), QColor(Qt::blue)) << inside.x() << ',' << inside.y();
    }
    for (const QPoint outside : {QPoint(10, 21), {26, 21}, {11, 20}, {11, 26}}) {
        EXPECT_EQ(one.pixelColor(outside), QColor(Qt::red)) << outside.x() << ',' << outside.y();
    }
    item.colour = Qt::green;
    item.invalidate(QRect(0, 0, 5, 5));
    item.invalidate(QRect(50, 50, 5, 5));
    const QImage two = screen();
    EXPECT_EQ(two.pixelColor(4, 4), QColor(Qt::green));
    EXPECT_EQ(two.pixelColor(54, 54), QColor(Qt::green));
    EXPECT_EQ(two.pixelColor(30, 30), QColor(Qt::red)) << "what lies between them stays";
    item.invalidate(QRect());
    EXPECT_EQ(at(30, 30), QColor(Qt::red));
    item.invalidate(QRect(0, 0, 5, 5));
    item.invalidate();
    EXPECT_EQ(at(30, 30), QColor(Qt::green)) << "all of it was asked for, too";
}

// As for other colours or letters of the desktop.
TEST_F(ItemTest, APartDoesNotHideThatQtHasThePagePainted) {
    NotingItem& item = add({0, 0, 60, 60});
    item.colour = Qt::red;
    showPage();
    item.colour = Qt::blue;
    item.invalidate(QRect(0, 0, 5, 5));
    page->widget()->update();
    EXPECT_EQ(at(50, 50), QColor(Qt::blue));
}

TEST_F(ItemTest, AfterAPartAPageOfAnotherSizeIsPaintedWhole) {
    NotingItem& item = add({0, 0, 60, 60});
    item.colour = Qt::red;
    showPage();
    item.colour = Qt::blue;
    item.invalidate(QRect(0, 0, 5, 5));
    resizePage(200, 200);
    EXPECT_EQ(at(50, 50), QColor(Qt::blue));
}

TEST_F(ItemTest, AnItemBringsItsMenuOnce) {
    page->addItem(std::make_unique<NotingItem>("", nullptr, 4711));
    page->addItem(std::make_unique<NotingItem>("", nullptr, 4711));
    page->addItem(std::make_unique<NotingItem>("", nullptr, 0));
    EXPECT_THAT(page->menus(), ElementsAre(107, 4711));
}

TEST_F(ItemTest, DoesNothingByItself) {
    CPageDisplay::CImage image;
    CPageDisplay::CItem& item = image;
    EXPECT_FALSE(item.command(kZoomIn, 0));
    EXPECT_FALSE(item.keyDown(Qt::Key_Left));
    EXPECT_FALSE(item.character(u'+'));
    EXPECT_FALSE(item.stylusDown(1, 1, {}));
    EXPECT_TRUE(item.contextMenu(1, 1).empty());
    EXPECT_EQ(item.statusText(), QString());
    EXPECT_EQ(item.caption(), QString());
    EXPECT_EQ(item.menuId(), 0);
    EXPECT_TRUE(item.opaqueArea().isEmpty());
    // What has no answer leaves the item as it is.
    const ItemPlacement before = item.placement();
    QMenu menu;
    item.windowCreated();
    item.stylusMove(2, 2);
    item.stylusUp(2, 2);
    item.stylusLost();
    item.menuPopUp(menu);
    EXPECT_EQ(item.placement(), before);
    EXPECT_TRUE(menu.isEmpty());
}

} // namespace
} // namespace raincast
