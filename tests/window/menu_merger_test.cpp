// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/command_set.h"
#include "window/menu_merger.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;

constexpr int kPlaceholder = 40900;
constexpr MenuRow kPageRows[] = {
    menuEntry(40009, "Pages..."), menuEntry(kPlaceholder, "entries"), menuEntry(40010, "Exit")};
constexpr MenuRow kBar[] = {subMenu("Menu", kPageRows)};

constexpr MenuRow kLayers[] = {menuEntry(3, "Rivers")};
constexpr MenuRow kWeather[] = {
    menuEntry(1, "Animation"), menuSeparator(), subMenu("Layers", kLayers)};
constexpr MenuRow kWeatherPopup[] = {subMenu("weather", kWeather)};
constexpr MenuRow kLayout[] = {menuEntry(40017, "Layout")};
constexpr MenuRow kLayoutPopup[] = {
    menuEntry(99, "beside the first submenu"), subMenu("page", kLayout)};

std::vector<std::string> texts(const QMenu& menu) {
    std::vector<std::string> result;
    for (const QAction* entry : menu.actions()) {
        const std::string text = entry->isSeparator() ? "|" : entry->text().toStdString();
        result.push_back(entry->menu<QMenu*>() != nullptr ? text + ">" : text);
    }
    return result;
}

class MenuMergerTest : public test::GuiTest {
protected:
    QMainWindow window;
    CommandSet commands{window};
    QMenu* target = nullptr;

    MenuMergerTest() {
        commands.fill(*window.menuBar(), kBar);
        target = firstSubmenu(*window.menuBar());
    }

    std::unique_ptr<QMenu> make(std::span<const MenuRow> rows) {
        auto menu = std::make_unique<QMenu>();
        commands.fill(*menu, rows);
        return menu;
    }
};

TEST_F(MenuMergerTest, EntriesTakeThePlaceholdersPlaceInOrder) {
    MenuMerger merger(kPlaceholder);
    merger.add(make(kLayoutPopup));
    merger.add(make(kWeatherPopup));
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_TRUE(merger.merged());
    EXPECT_THAT(
        texts(*target), ElementsAre("Pages...", "Layout", "Animation", "|", "Layers>", "Exit")
    );
    EXPECT_EQ(findCommand(*target, 1), &commands.action(1));
    EXPECT_EQ(findCommand(*target, 3), &commands.action(3));
}

TEST_F(MenuMergerTest, UnmergingPutsTheDisabledPlaceholderBack) {
    MenuMerger merger(kPlaceholder);
    merger.add(make(kWeatherPopup));
    EXPECT_TRUE(merger.merge(*target));
    merger.unmerge();
    EXPECT_FALSE(merger.merged());
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "-", "Exit"));
    const QAction* placeholder = findCommand(*target, kPlaceholder);
    ASSERT_NE(placeholder, nullptr);
    EXPECT_FALSE(placeholder->isSeparator());
    EXPECT_FALSE(placeholder->isEnabled());

    // And again: the entries come back with their submenus.
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "Animation", "|", "Layers>", "Exit"));
    EXPECT_EQ(findCommand(*target, 3), &commands.action(3));
}

TEST_F(MenuMergerTest, NothingHappensWithoutAPlaceholderOrTwice) {
    MenuMerger merger(kPlaceholder);
    merger.add(make(kLayoutPopup));
    QMenu other;
    EXPECT_FALSE(merger.merge(other));
    EXPECT_FALSE(merger.merged());
    merger.unmerge();
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_FALSE(merger.merge(*target));
    merger.unmerge();
    merger.unmerge();
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "-", "Exit"));
}

TEST_F(MenuMergerTest, WithNoMenusThePlaceholderJustGoesAndComes) {
    MenuMerger merger(kPlaceholder);
    merger.add(std::make_unique<QMenu>()); // without a submenu
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "Exit"));
    merger.unmerge();
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "-", "Exit"));
}

TEST_F(MenuMergerTest, APlaceholderAtTheEndOfASubmenuIsFoundToo) {
    constexpr MenuRow inner[] = {menuEntry(5, "Five"), menuEntry(40901, "here")};
    const MenuRow outer[] = {subMenu("Sub", inner), menuEntry(6, "Six")};
    QMenu menu;
    commands.fill(menu, outer);
    MenuMerger merger(40901);
    merger.add(make(kLayoutPopup));
    EXPECT_TRUE(merger.merge(menu));
    EXPECT_THAT(texts(*firstSubmenu(menu)), ElementsAre("Five", "Layout"));
    merger.unmerge();
    EXPECT_THAT(texts(*firstSubmenu(menu)), ElementsAre("Five", "-"));
    EXPECT_THAT(texts(menu), ElementsAre("Sub>", "Six"));
}

TEST_F(MenuMergerTest, NeighbouringPlaceholdersKeepTheirOrder) {
    constexpr MenuRow rows[] = {menuEntry(40901, "a"), menuEntry(40902, "b")};
    QMenu menu;
    commands.fill(menu, rows);
    MenuMerger first(40901);
    MenuMerger second(40902);
    first.add(make(kLayoutPopup));
    second.add(make(kWeatherPopup));
    EXPECT_TRUE(first.merge(menu));
    EXPECT_TRUE(second.merge(menu));
    EXPECT_THAT(texts(menu), ElementsAre("Layout", "Animation", "|", "Layers>"));
    first.unmerge();
    EXPECT_THAT(texts(menu), ElementsAre("-", "Animation", "|", "Layers>"));
    second.unmerge();
    EXPECT_EQ(commandOf(*menu.actions().first()), 40901);
    EXPECT_EQ(commandOf(*menu.actions().last()), 40902);
}

TEST_F(MenuMergerTest, AtMost256EntriesOfAMenuAreMerged) {
    std::vector<MenuRow> rows;
    for (int i = 0; i < 300; ++i) {
        rows.push_back(menuEntry(1000 + i, "Entry"));
    }
    const MenuRow popup[] = {subMenu("many", rows)};
    MenuMerger merger(kPlaceholder);
    merger.add(make(popup));
    merger.add(make(kLayoutPopup));
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_EQ(target->actions().size(), 1 + 256 + 1 + 1);
    EXPECT_NE(findCommand(*target, 1255), nullptr);
    EXPECT_EQ(findCommand(*target, 1256), nullptr);
    merger.unmerge();
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "-", "Exit"));
}

TEST_F(MenuMergerTest, TextsAreCutAfter100Characters) {
    const std::string text(120, 'x');
    const MenuRow rows[] = {menuEntry(1, text.c_str()), menuEntry(2, text.c_str() + 20)};
    const MenuRow popup[] = {subMenu("long", rows)};
    MenuMerger merger(kPlaceholder);
    merger.add(make(popup));
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_EQ(findCommand(*target, 1)->text().size(), 100);
    EXPECT_EQ(findCommand(*target, 2)->text().size(), 100);
}

TEST_F(MenuMergerTest, ACommandStandsInAMenuOnce) {
    MenuMerger merger(kPlaceholder);
    merger.add(make(kWeatherPopup));
    merger.add(make(kWeatherPopup));
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_EQ(std::as_const(*target).actions().count(&commands.action(1)), 1);
    EXPECT_EQ(target->actions().indexOf(&commands.action(1)), 1);
}

TEST_F(MenuMergerTest, DestroyingTheMergerUnmergesAndDestroysItsMenus) {
    QPointer<QMenu> given;
    {
        MenuMerger merger(kPlaceholder);
        auto menu = make(kWeatherPopup);
        given = menu.get();
        merger.add(std::move(menu));
        EXPECT_TRUE(merger.merge(*target));
    }
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "-", "Exit"));
    EXPECT_NE(given, nullptr) << "it may be busy with an entry of its own";
    test::settle();
    EXPECT_EQ(given, nullptr);
}

TEST_F(MenuMergerTest, ATargetMayGoBeforeTheMerger) {
    MenuMerger merger(kPlaceholder);
    merger.add(make(kWeatherPopup));
    auto menu = std::make_unique<QMenu>();
    commands.fill(*menu, kPageRows);
    EXPECT_TRUE(merger.merge(*menu));
    menu.reset();
    EXPECT_FALSE(merger.merged());
    // The placeholder went into no other menu meanwhile: merging goes on with the next one.
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "Animation", "|", "Layers>", "Exit"));
}

TEST_F(MenuMergerTest, ClearingTakesTheEntriesOut) {
    MenuMerger merger(kPlaceholder);
    merger.add(make(kWeatherPopup));
    EXPECT_TRUE(merger.merge(*target));
    merger.clear();
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "-", "Exit"));
    EXPECT_TRUE(merger.merge(*target));
    EXPECT_THAT(texts(*target), ElementsAre("Pages...", "Exit"));
}

} // namespace
} // namespace raincast
