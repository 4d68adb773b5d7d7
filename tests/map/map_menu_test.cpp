// SPDX-License-Identifier: MIT
// The map view's menu, opened and clicked in a main window.
#include "map/map_menu.h"
#include "map_page.h"
#include "page/sample_pages.h"
#include "support/dialog_script.h"
#include "window/command_set.h"

#include <QLineEdit>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::positionOf;
using test::publish;
using test::TestView;
using testing::ElementsAre;
using testing::Pair;

constexpr MenuRow kPopUp[] = {kMapMenu};
constexpr MenuRow kBar[] = {subMenu("", kPopUp)};
const MenuTableRecord mapMenu(test::kMapTestMenu, kBar);

class MapMenuTest : protected test::SharedMapState, public test::PagedTest {
protected:
    MapMenuTest() {
        page = static_cast<CPageDisplay*>(&app.append(std::make_unique<CPageDisplay>()));
        view = &addView();
        view->placeOnEarth();
        app.select(0);
        view->setRectangle({0, 0, page->deviceSize().width(), page->deviceSize().height()});
        view->showPixel({300, 275});
    }

    TestView& addView() {
        auto item = std::make_unique<TestView>();
        item->useMarks(marks);
        return static_cast<TestView&>(page->addItem(std::move(item)));
    }
    // Opens the page menu and then, by clicks, submenus of it; returns the last.
    QMenu* open(std::initializer_list<const char16_t*> texts) {
        menu->popup(window.mapToGlobal(QPoint()));
        QMenu* present = menu;
        for (const char16_t* text : texts) {
            QAction* const entry = entryOf(*present, QString::fromUtf16(text));
            if (entry == nullptr || entry->menu<QMenu*>() == nullptr) {
                ADD_FAILURE() << "no submenu " << qPrintable(QString::fromUtf16(text));
                return present;
            }
            test::click(*present, present->actionGeometry(entry).center());
            present = entry->menu<QMenu*>();
            EXPECT_TRUE(QTest::qWaitFor([present] { return present->isVisible(); }));
        }
        return present;
    }
    static QAction* entryOf(const QMenu& present, const QString& text) {
        for (QAction* entry : present.actions()) {
            if (entry->text().remove(u'&') == text) {
                return entry;
            }
        }
        return nullptr;
    }
    void closeMenus() {
        while (QWidget* const open = QApplication::activePopupWidget()) {
            open->close();
        }
    }
    void click(std::initializer_list<const char16_t*> submenus, const char16_t* text) {
        QMenu* const present = open(submenus);
        QAction* const entry = entryOf(*present, QString::fromUtf16(text));
        ASSERT_NE(entry, nullptr);
        test::click(*present, present->actionGeometry(entry).center());
        closeMenus();
        test::settle();
    }
    test::Log seen(std::initializer_list<const char16_t*> submenus) {
        const test::Log entries = test::seenEntries(*open(submenus));
        closeMenus();
        return entries;
    }

    CPageDisplay* page;
    TestView* view;
};

TEST_F(MapMenuTest, HasItsEntriesInTheMenuOfItsPage) {
    EXPECT_THAT(
        seen({u"Map"}), ElementsAre(
                            "Follow Position", "Go to Position...", "Whole Image\tHome",
                            "Show Position*", "Show Navigation*", "Marks>"
                        )
    );
    EXPECT_THAT(seen({u"Map", u"Marks"}), ElementsAre("Add Mark...", "(Marks...)"));
}

TEST_F(MapMenuTest, TheNumbersOfItsCommandsStay) {
    std::vector<std::pair<int, std::string>> numbers;
    const std::span<const MenuRow> menus[] = {kMapRows, kMarkRows, kMapPlaceRows};
    for (const auto rows : menus) {
        for (const MenuRow& row : rows) {
            numbers.emplace_back(row.command, QString::fromUtf8(row.text).toStdString());
        }
    }
    EXPECT_THAT(
        numbers,
        ElementsAre(
            Pair(40922, "&Follow Position"), Pair(40926, "&Go to Position..."),
            Pair(40927, "&Whole Image\tHome"), Pair(40923, "Show &Position"),
            Pair(40924, "Show &Navigation"), Pair(0, "&Marks"), Pair(40920, "&Add Mark..."),
            Pair(40921, "&Marks..."), Pair(40925, "&Add Mark Here"), Pair(40960, "&Copy Position"),
            Pair(40961, "Centre &Here"), Pair(40962, "&Set as Target")
        )
    );
}

TEST_F(MapMenuTest, WithoutAPlacedImageThereIsNothingToFollowOnAndNoPlaceForAMark) {
    addMark(1, 1, QStringLiteral("A"));
    view->takeOffEarth();
    EXPECT_THAT(seen({u"Map"})[0], "(Follow Position)");
    EXPECT_THAT(seen({u"Map", u"Marks"}), ElementsAre("(Add Mark...)", "Marks..."));
    EXPECT_TRUE(app.current()->command(kAddMark, clicked)) << "taken, but not done";
    EXPECT_EQ(marks.marks().size(), 1U);
}

TEST_F(MapMenuTest, OffTheImageThereIsNoPlaceForAMark) {
    view->showPixel({-300, 0});
    EXPECT_THAT(seen({u"Map", u"Marks"})[0], "(Add Mark...)");
    view->showPixel({599, 549});
    EXPECT_THAT(seen({u"Map", u"Marks"})[0], "Add Mark...");
    view->showPixel({600, 549});
    EXPECT_THAT(seen({u"Map", u"Marks"})[0], "(Add Mark...)");
}

TEST_F(MapMenuTest, FollowingIsSwitchedOnAndOff) {
    publish(100, 100);
    click({u"Map"}, u"Follow Position");
    EXPECT_TRUE(view->following());
    EXPECT_EQ(view->centrePixel(), (ImagePixel{100, 100}));
    EXPECT_THAT(seen({u"Map"})[0], "Follow Position*");
    click({u"Map"}, u"Follow Position");
    EXPECT_FALSE(view->following());
    EXPECT_THAT(seen({u"Map"})[0], "Follow Position");
    view->character(u'l');
    EXPECT_THAT(seen({u"Map"})[0], "Follow Position*") << "a key has switched it on";
    view->keyDown(Qt::Key_Left);
    EXPECT_THAT(seen({u"Map"})[0], "Follow Position") << "a pan has ended it";
}

TEST_F(MapMenuTest, FollowingWaitsForAFix) {
    click({u"Map"}, u"Follow Position");
    EXPECT_TRUE(view->following());
    publish(120, 130);
    EXPECT_EQ(view->centrePixel(), (ImagePixel{120, 130}));
}

TEST_F(MapMenuTest, FollowingAPositionThatIsNotOnTheImageIsRefusedWithAWord) {
    publish(-100, 100);
    test::DialogScript script;
    script.expect(QStringLiteral("Follow Position"));
    click({u"Map"}, u"Follow Position");
    EXPECT_FALSE(view->following());
}

TEST_F(MapMenuTest, FollowingCanBeSwitchedOffWithoutAPlacedImage) {
    view->character(u'l');
    view->takeOffEarth();
    EXPECT_THAT(seen({u"Map"})[0], "Follow Position*");
    click({u"Map"}, u"Follow Position");
    EXPECT_FALSE(view->following());
    EXPECT_THAT(seen({u"Map"})[0], "(Follow Position)");
}

TEST_F(MapMenuTest, TheLinesAreSwitchedOffAndOn) {
    click({u"Map"}, u"Show Position");
    EXPECT_FALSE(MapLinesSetting::shown(MapLinesSetting::position));
    EXPECT_THAT(seen({u"Map"})[3], "Show Position");
    click({u"Map"}, u"Show Navigation");
    EXPECT_FALSE(MapLinesSetting::shown(MapLinesSetting::navigation));
    EXPECT_THAT(seen({u"Map"})[4], "Show Navigation");
    click({u"Map"}, u"Show Position");
    EXPECT_TRUE(MapLinesSetting::shown(MapLinesSetting::position));
    EXPECT_FALSE(MapLinesSetting::shown(MapLinesSetting::navigation));
    EXPECT_THAT(seen({u"Map"})[3], "Show Position*");
}

TEST_F(MapMenuTest, AMarkIsAddedByTheMenu) {
    test::DialogScript script;
    script.expect(QStringLiteral("Add Mark"), [](QDialog& dialog) {
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    click({u"Map", u"Marks"}, u"Add Mark...");
    EXPECT_THAT(markNames(), ElementsAre("Mark 1"));
    EXPECT_THAT(seen({u"Map", u"Marks"})[1], "Marks...");
    script.expect(QStringLiteral("Marks"));
    click({u"Map", u"Marks"}, u"Marks...");
}

// Of two maps on a page the lower one takes commands, keys and the menu's marks alike.
TEST_F(MapMenuTest, OfTwoMapsTheMenuIsTheFirstOnes) {
    TestView& upper = addView();
    view->character(u'l');
    EXPECT_TRUE(view->following());
    EXPECT_FALSE(upper.following());
    EXPECT_THAT(
        seen({u"Map"}), ElementsAre(
                            "Follow Position*", "Go to Position...", "Whole Image\tHome",
                            "Show Position*", "Show Navigation*", "Marks>"
                        )
    );
}

} // namespace
} // namespace raincast
