// SPDX-License-Identifier: MIT
#include "page/page.h"
#include "page/sample_pages.h"
#include "support/menu.h"
#include "support/serial_bytes.h"
#include "window/modal.h"

#include <QDialog>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

using test::SamplePage;
using testing::ElementsAre;
using testing::IsEmpty;

class PageTest : public test::PagedTest {
protected:
    SamplePage page{QStringLiteral("Old")};

    bool read(const QByteArray& hex) { return test::read(page, QByteArray::fromHex(hex)); }
};

TEST_F(PageTest, ThePagesRecordIsTheNameAndTheFlag) {
    page.setName(QStringLiteral("A\u00e4"));
    page.setEnabled(false);
    EXPECT_EQ(
        test::written(page).toHex(), "02000000"
                                     "04000000"
                                     "4100e400"
                                     "01000000"
                                     "00"
    );
}

TEST_F(PageTest, TheRecordIsReadBack) {
    EXPECT_TRUE(read("02000000"
                     "02000000"
                     "4200"
                     "01000000"
                     "00"));
    EXPECT_EQ(page.name(), QStringLiteral("B"));
    EXPECT_FALSE(page.enabled());
    EXPECT_TRUE(read("02000000"
                     "00000000"
                     "01000000"
                     "01"));
    EXPECT_EQ(page.name(), QString());
    EXPECT_TRUE(page.enabled());
}

TEST_F(PageTest, WhatIsMissingOrOverKeepsOrLosesNothing) {
    page.setEnabled(false);
    EXPECT_TRUE(read("")); // no record
    EXPECT_TRUE(read("00000000"));
    EXPECT_EQ(page.name(), QStringLiteral("Old"));
    EXPECT_TRUE(read("01000000"
                     "02000000"
                     "4300")); // an older one, without the flag
    EXPECT_EQ(page.name(), QStringLiteral("C"));
    EXPECT_FALSE(page.enabled());
    // A longer flag and a third field.
    EXPECT_TRUE(read("03000000"
                     "02000000"
                     "4400"
                     "04000000"
                     "01000000"
                     "01000000"
                     "ff"));
    EXPECT_EQ(page.name(), QStringLiteral("D"));
    EXPECT_TRUE(page.enabled());
}

TEST_F(PageTest, AFlagThatIsNoBooleanKeepsTheFlag) {
    for (const bool enabled : {true, false}) {
        page.setEnabled(enabled);
        EXPECT_TRUE(read("02000000"
                         "02000000"
                         "4500"
                         "01000000"
                         "07"));
        EXPECT_EQ(page.enabled(), enabled);
    }
}

TEST_F(PageTest, APageHasNoTypeNumberOfItsOwn) {
    class Plain : public CAppPaged::Page {
    public:
        bool activate(QWidget&, bool) override { return true; }
        void deactivate() override {}
    };
    Plain plain;
    EXPECT_EQ(plain.GetTypeId(), 0xFFFFFFFF);
    EXPECT_TRUE(plain.enabled());
    EXPECT_EQ(plain.pageType(), nullptr);
    // What a page need not override does nothing.
    EXPECT_FALSE(plain.command(40017, 0));
    EXPECT_FALSE(plain.keyDown(Qt::Key_A));
    EXPECT_FALSE(plain.character(u'a'));
    EXPECT_FALSE(plain.zoom(1, {}));
    const QByteArray before = test::written(plain);
    const test::Log entries = test::seenEntries(*menu);
    plain.contentChanged();
    plain.size(1, 1);
    plain.menuPopUp(*menu);
    EXPECT_EQ(test::written(plain), before);
    EXPECT_EQ(test::seenEntries(*menu), entries);
}

TEST_F(PageTest, APageWithoutANameShowsItsTypes) {
    class Type : public CAppPaged::PageType {
    public:
        using PageType::PageType;
        std::unique_ptr<CAppPaged::Page> create(QWidget*) const override { return nullptr; }
    };
    const Type type(QStringLiteral("Blank"), 1);
    page.setName({});
    EXPECT_EQ(page.shownName(), QString());
    page.setPageType(&type);
    EXPECT_EQ(page.shownName(), QStringLiteral("Blank"));
    page.setName(QStringLiteral("Radar"));
    EXPECT_EQ(page.shownName(), QStringLiteral("Radar"));
}

TEST_F(PageTest, AShownNameIsOneShortLine) {
    page.setName(QStringLiteral("a\nb\tc\u2028d") + QChar(0));
    EXPECT_EQ(page.shownName(), QStringLiteral("a b c d "));
    page.setName(QString(100, u'x'));
    EXPECT_EQ(page.shownName(), QString(100, u'x'));
    page.setName(QString(1000000, u'x'));
    EXPECT_EQ(page.shownName(), QString(99, u'x') + QChar(0x2026));
}

constexpr int kFirstMenu = 4971;
constexpr int kSecondMenu = 4972;
constexpr MenuRow kFirstRows[] = {menuEntry(40017, "Layout"), menuSeparator()};
constexpr MenuRow kFirstBar[] = {subMenu("page", kFirstRows)};
constexpr MenuRow kInnerRows[] = {menuEntry(40801, "Rivers")};
constexpr MenuRow kSecondRows[] = {menuEntry(40800, "Stations"), subMenu("Layers", kInnerRows)};
constexpr MenuRow kSecondBar[] = {subMenu("item", kSecondRows)};
const MenuTableRecord firstMenu{kFirstMenu, kFirstBar};
const MenuTableRecord secondMenu{kSecondMenu, kSecondBar};

class PageMenusTest : public PageTest {
protected:
    test::Log pageEntries() {
        test::Log entries = test::seenEntries(*menu);
        const auto previous = std::find_if(entries.begin(), entries.end(), [](const auto& text) {
            return text.find("Previous Page") != std::string::npos;
        });
        entries.erase(previous - 1, entries.end()); // the separator in front of it too
        return entries;
    }
};

TEST_F(PageMenusTest, AMenuIsHeldOnce) {
    page.addMenu(0);
    page.addMenu(kFirstMenu);
    page.addMenu(kSecondMenu);
    page.addMenu(kFirstMenu);
    EXPECT_THAT(page.menus(), ElementsAre(kFirstMenu, kSecondMenu));
    page.removeMenu(kFirstMenu);
    page.removeMenu(kFirstMenu);
    EXPECT_THAT(page.menus(), ElementsAre(kSecondMenu));
}

TEST_F(PageMenusTest, TheEntriesStandInThePageMenuWhileThePageIsCurrent) {
    app.add(QStringLiteral("A")).addMenu(kFirstMenu);
    app.pages()[0]->addMenu(kSecondMenu);
    app.add(QStringLiteral("B")).addMenu(kSecondMenu);
    openMenu();
    EXPECT_THAT(pageEntries(), IsEmpty());
    app.select(0);
    EXPECT_THAT(pageEntries(), ElementsAre("Layout", "|", "Stations", "Layers>"));
    app.select(1);
    openMenu();
    EXPECT_THAT(pageEntries(), ElementsAre("Stations", "Layers>"));
    app.select(std::nullopt);
    openMenu();
    EXPECT_THAT(pageEntries(), IsEmpty());
}

TEST_F(PageMenusTest, MenusThatComeAndGoAreFollowedAtOnce) {
    SamplePage& shown = app.add(QStringLiteral("A"));
    app.select(0);
    shown.addMenu(kSecondMenu);
    EXPECT_THAT(pageEntries(), ElementsAre("Stations", "Layers>"));
    shown.addMenu(kFirstMenu);
    EXPECT_THAT(pageEntries(), ElementsAre("Stations", "Layers>", "Layout", "|"));
    shown.removeMenu(kSecondMenu);
    EXPECT_THAT(pageEntries(), ElementsAre("Layout", "|"));
}

// An item that deletes itself by an entry of its own submenu takes that submenu along.
TEST_F(PageMenusTest, AMenuMayGoWhileItsOwnEntryIsBeingHandled) {
    class Leaving : public SamplePage {
    public:
        using SamplePage::SamplePage;
        bool command(int id, int) override {
            removeMenu(kSecondMenu);
            return id == 40801;
        }
    };
    auto& shown = app.append(std::make_unique<Leaving>(QStringLiteral("A")));
    shown.addMenu(kSecondMenu);
    app.select(0);
    menu->popup(window.mapToGlobal(QPoint()));
    QMenu* layers = entry(QStringLiteral("Layers"))->menu<QMenu*>();
    menu->setActiveAction(layers->menuAction());
    layers->popup(window.mapToGlobal(QPoint(50, 50)));
    const QPointer<QMenu> guard = layers;
    QTest::mouseClick(
        layers, Qt::LeftButton, {}, layers->actionGeometry(layers->actions().first()).center()
    );
    EXPECT_THAT(shown.menus(), IsEmpty());
    EXPECT_THAT(pageEntries(), IsEmpty());
    test::settle();
    EXPECT_EQ(guard, nullptr);
}

// What the entry opens runs the event loop while the menu is still busy with the entry.
TEST_F(PageMenusTest, AMenuThatGoesOutlivesTheDialogOfItsEntry) {
    class Asking : public SamplePage {
    public:
        using SamplePage::SamplePage;
        QPointer<QMenu> layers;
        int asked = 0;

        bool command(int id, int) override {
            removeMenu(kSecondMenu);
            QDialog dialog;
            Modal::setHook([this](QDialog& open) {
                test::settle();
                EXPECT_NE(layers, nullptr);
                ++asked;
                open.reject();
            });
            static_cast<void>(Modal::run(dialog));
            Modal::setHook(nullptr);
            return id == 40801;
        }
    };
    auto& shown = dynamic_cast<Asking&>(app.append(std::make_unique<Asking>(QStringLiteral("A"))));
    shown.addMenu(kSecondMenu);
    app.select(0);
    shown.layers = entry(QStringLiteral("Layers"))->menu<QMenu*>();
    test::chooseInMenu(*window.menuBar(), {"Menu", "Layers", "Rivers"});
    EXPECT_EQ(shown.asked, 1);
    EXPECT_THAT(pageEntries(), IsEmpty());
    test::settle();
    EXPECT_EQ(shown.layers, nullptr);
}

TEST_F(PageMenusTest, TheEntriesComeBeforeThePageIsShownAndGoBeforeItIsLeft) {
    class Looking : public SamplePage {
    public:
        using SamplePage::SamplePage;
        std::function<void(const char*)> look;

        bool activate(QWidget& parent, bool flag) override {
            look("shown");
            return SamplePage::activate(parent, flag);
        }
        void deactivate() override {
            look("left");
            SamplePage::deactivate();
        }
    };
    auto& looking = dynamic_cast<Looking&>(app.append(std::make_unique<Looking>("A")));
    looking.addMenu(kFirstMenu);
    test::Log seen;
    looking.look = [&](const char* when) {
        seen.push_back(when + std::to_string(pageEntries().size()));
    };
    app.select(0);
    app.select(std::nullopt);
    EXPECT_THAT(seen, ElementsAre("shown2", "left0"));
}

TEST_F(PageMenusTest, ADestroyedPageTakesItsEntriesAlong) {
    app.add(QStringLiteral("A")).addMenu(kFirstMenu);
    app.select(0);
    EXPECT_THAT(pageEntries(), ElementsAre("Layout", "|"));
    app.clear();
    openMenu();
    EXPECT_THAT(pageEntries(), IsEmpty());
}

} // namespace
} // namespace raincast
