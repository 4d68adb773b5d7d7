// SPDX-License-Identifier: MIT
#include "page/global_settings_type.h"
#include "page/page_menu.h"
#include "page/sample_pages.h"

#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using test::seenEntries;
using testing::ElementsAre;
using testing::ElementsAreArray;

class Settings : public CAppPaged::GlobalSettingsType {
public:
    using GlobalSettingsType::GlobalSettingsType;
    void open(QWidget* window) const override { opened.push_back(window); }
    mutable std::vector<QWidget*> opened;
};

using PageMenuTest = test::PagedTest;

TEST_F(PageMenuTest, WithoutPagesNothingCanBeChosenButPages) {
    openMenu();
    EXPECT_THAT(
        seenEntries(*menu),
        ElementsAre("|", "(Previous Page)", "(Next Page)", "Pages...", "|", "Exit")
    );
}

TEST_F(PageMenuTest, TheEnabledPagesAreListedAndTheCurrentOneIsMarked) {
    addPages({u"A", u"_B", u"C"});
    app.select(0);
    openMenu();
    EXPECT_THAT(
        seenEntries(*menu),
        ElementsAre("|", "(Previous Page)", "Next Page", "Pages...", "A*", "C", "|", "Exit")
    );
    app.select(2);
    openMenu();
    EXPECT_THAT(
        seenEntries(*menu),
        ElementsAre("|", "Previous Page", "(Next Page)", "Pages...", "A", "C*", "|", "Exit")
    );
    app.select(1); // disabled: shown all the same, but not listed
    openMenu();
    EXPECT_THAT(
        seenEntries(*menu),
        ElementsAre("|", "Previous Page", "Next Page", "Pages...", "A", "C", "|", "Exit")
    );
    app.select(std::nullopt);
    openMenu();
    EXPECT_THAT(
        seenEntries(*menu),
        ElementsAre("|", "(Previous Page)", "Next Page", "Pages...", "A", "C", "|", "Exit")
    );
}

TEST_F(PageMenuTest, ChoosingAPageShowsIt) {
    addPages({u"A", u"B"});
    app.select(0);
    menu->popup(window.mapToGlobal(QPoint()));
    QTest::mouseClick(
        menu, Qt::LeftButton, {}, menu->actionGeometry(entry(QStringLiteral("B"))).center()
    );
    EXPECT_EQ(app.shown(), "B");
}

TEST_F(PageMenuTest, APageThatIsGoneIsNotChosen) {
    addPages({u"A", u"B"});
    app.select(0);
    openMenu();
    QAction* const gone = entry(QStringLiteral("B"));
    app.remove(1);
    gone->trigger();
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(PageMenuTest, NamesAreShownAsTheyAre) {
    app.add(QStringLiteral("Rain & Snow"));
    openMenu();
    EXPECT_NE(entry(QStringLiteral("Rain && Snow")), nullptr);
}

TEST_F(PageMenuTest, ALongListOfPagesEnds) {
    for (int i = 0; i < 1000; ++i) {
        app.add(QString::number(i));
    }
    openMenu();
    EXPECT_NE(entry(QString::number(PageMenu::kMostPages - 1)), nullptr);
    EXPECT_EQ(entry(QString::number(PageMenu::kMostPages)), nullptr);
}

TEST_F(PageMenuTest, SettingsAreOfferedByTheirCaptions) {
    const Settings gps({}, QStringLiteral("GPS & Course"), 20);
    const Settings nameless(QStringLiteral("Nameless"), {}, 15);
    const Settings units(QStringLiteral("Units"), QStringLiteral("Units"), 10);
    QMainWindow other;
    auto* area = new QWidget;
    other.setCentralWidget(area);
    CommandSet otherCommands(other);
    QMenu otherMenu;
    otherCommands.fill(otherMenu, test::kMenuRows);
    {
        test::SampleApp application;
        application.attach(other, *area, otherCommands, otherMenu);
        EXPECT_THAT(
            seenEntries(otherMenu),
            ElementsAre("|", "(Previous Page)", "(Next Page)", "Pages...", "|", "Settings>", "Exit")
        );
        QMenu& settings = *firstSubmenu(otherMenu);
        EXPECT_THAT(seenEntries(settings), ElementsAre("Units...", "GPS && Course..."));
        settings.actions().first()->trigger();
        EXPECT_THAT(units.opened, ElementsAre(&other));
        EXPECT_THAT(gps.opened, testing::IsEmpty());
    }
    // The application takes its entries along.
    EXPECT_THAT(seenEntries(*firstSubmenu(otherMenu)), testing::IsEmpty());
}

TEST_F(PageMenuTest, AMenuWithoutThePlacesIsDoneWithout) {
    QMainWindow other;
    auto* area = new QWidget;
    other.setCentralWidget(area);
    CommandSet otherCommands(other);
    QMenu bare;
    test::SampleApp application;
    application.attach(other, *area, otherCommands, bare);
    application.add(QStringLiteral("A")).addMenu(4971);
    application.select(0);
    EXPECT_TRUE(bare.isEmpty());
    EXPECT_EQ(application.shown(), "A");
}

} // namespace
} // namespace raincast
