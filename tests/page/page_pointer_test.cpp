// SPDX-License-Identifier: MIT
#include "page/page_pointer.h"
#include "page_window.h"
#include "window/events.h"

#include <QLabel>
#include <QMenu>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::NotingItem;
using testing::ElementsAre;
using testing::IsEmpty;

class PagePointerTest : public test::PageTest {
protected:
    NotingItem& addPointed(const PageRectangle& rectangle, const std::string& name = "") {
        NotingItem& item = add(rectangle, Qt::blue, name);
        item.takesPointer = true;
        return item;
    }
    void begin() {
        showPage();
        log.clear();
    }
    /// Qt takes a move to where the pointer is for none.
    void hover(int x, int y) { mouse(QEvent::MouseMove, x, y, Qt::NoButton, Qt::NoButton, {}); }
    void rest() {
        page->stopTimer(CPageDisplay::Pointer::kRestTimer);
        TimerEvent due(CPageDisplay::Pointer::kRestTimer);
        QCoreApplication::sendEvent(page->widget(), &due);
    }
};

TEST_F(PagePointerTest, TheTopmostItemHearsWhereItMovesAndRests) {
    addPointed({0, 0, 120, 120}, "a");
    addPointed({20, 30, 120, 120}, "b");
    begin();
    hover(30, 40);
    hover(31, 40);
    rest();
    hover(10, 40);
    rest();
    EXPECT_THAT(
        log, ElementsAre(
                 "b hover 10,10", "b hover 11,10", "b rest 11,10", "b left", "a hover 10,40",
                 "a rest 10,40"
             )
    );
}

TEST_F(PagePointerTest, APressAndTheWindowsEdgeTakeItAway) {
    addPointed({20, 30, 120, 120});
    begin();
    hover(30, 40);
    press(30, 40);
    rest();
    lift(30, 40);
    EXPECT_THAT(log, ElementsAre(" hover 10,10", " left", " down 10,10"));
    log.clear();
    hover(32, 42);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(page->widget(), &leave);
    rest();
    EXPECT_THAT(log, ElementsAre(" hover 12,12", " left"));
}

TEST_F(PagePointerTest, InLayoutModeNobodyHearsOfIt) {
    addPointed({20, 30, 120, 120});
    begin();
    hover(33, 43);
    page->command(kToggleLayout, 0);
    log.clear();
    rest();
    hover(31, 40);
    rest();
    EXPECT_THAT(log, ElementsAre(" left"));
}

TEST_F(PagePointerTest, AnItemThatGoesHearsNoMore) {
    addPointed({20, 30, 120, 120});
    begin();
    hover(34, 44);
    page->select(page->items()[0].get());
    page->command(kDeleteItem, 0);
    log.clear();
    rest();
    hover(31, 40);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(PagePointerTest, APageThatComesBackBeginsAnew) {
    addPointed({20, 30, 120, 120});
    begin();
    hover(35, 45);
    page->deactivate();
    showPage();
    log.clear();
    rest();
    EXPECT_THAT(log, IsEmpty());
}

} // namespace
} // namespace raincast
