// SPDX-License-Identifier: MIT
#include "page/context_menu.h"
#include "page_window.h"

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::NotingItem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr MenuRow kLowerRows[] = {menuEntry(1001, "&Lower"), menuEntry(1002, "L&owest")};
constexpr MenuRow kUpperRows[] = {menuEntry(1003, "&Upper")};

class ContextMenuTest : public test::PageTest {
protected:
    NotingItem& lower = add({0, 0, 100, 100}, Qt::blue, "lower");
    NotingItem& upper = add({50, 50, 150, 150}, Qt::red, "upper");

    ContextMenuTest() {
        lower.menuRows = kLowerRows;
        upper.menuRows = kUpperRows;
        showPage();
        log.clear();
    }
    ~ContextMenuTest() override {
        if (openMenu() != nullptr) {
            openMenu()->close();
        }
    }
    bool open(PagePoint place) {
        return page->contextMenu().open(place, CPageDisplay::ContextMenu::By::rightButton);
    }
    [[nodiscard]] static test::Log entries() {
        test::Log texts;
        for (const QAction* entry : openMenu()->actions()) {
            texts.push_back(entry->text().toStdString());
        }
        return texts;
    }
};

TEST_F(ContextMenuTest, TheTopmostItemThatOffersOneHasTheMenu) {
    EXPECT_TRUE(open({60, 70}));
    EXPECT_THAT(entries(), ElementsAre("&Upper"));
    EXPECT_THAT(log, ElementsAre("upper menu 10,20"));
    openMenu()->close();
    test::settle();
    upper.menuRows = {};
    EXPECT_TRUE(open({60, 70}));
    EXPECT_THAT(entries(), ElementsAre("&Lower", "L&owest"));
    choose(QStringLiteral("Lowest"));
    EXPECT_EQ(log.back(), "lower command 1002 0");
}

TEST_F(ContextMenuTest, WhereNobodyOffersOneNothingOpens) {
    EXPECT_FALSE(open({200, 200}));
    lower.menuRows = {};
    EXPECT_FALSE(open({10, 10}));
    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(ContextMenuTest, OneMenuIsOpenAtATime) {
    EXPECT_TRUE(open({10, 10}));
    EXPECT_TRUE(open({140, 140}));
    EXPECT_THAT(entries(), ElementsAre("&Upper"));
    openMenu()->close();
    test::settle();
    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(ContextMenuTest, AnItemThatIsGoneGetsNoCommand) {
    EXPECT_TRUE(open({140, 140}));
    page->select(&upper);
    page->command(kDeleteItem, 0);
    log.clear();
    choose(QStringLiteral("Upper"));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(ContextMenuTest, AMenuOfAPageThatIsLeftDoesNothing) {
    EXPECT_TRUE(open({140, 140}));
    QAction* const entry = openMenu()->actions().first();
    page->deactivate();
    log.clear();
    entry->trigger();
    EXPECT_THAT(log, IsEmpty());
    test::settle();
    EXPECT_EQ(openMenu(), nullptr);
    page->activate(m_client, true);
    EXPECT_TRUE(open({140, 140}));
    choose(QStringLiteral("Upper"));
    EXPECT_EQ(log.back(), "upper command 1003 0");
}

} // namespace
} // namespace raincast
