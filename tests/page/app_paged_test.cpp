// SPDX-License-Identifier: MIT
#include "page/app_paged.h"
#include "page/sample_pages.h"
#include "support/serial_bytes.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using test::Log;
using test::pageLog;
using test::SamplePage;
using test::written;
using testing::ElementsAre;
using testing::IsEmpty;

const SerializableType<SamplePage> sampleType{SamplePage::kTypeId};

class AppPagedTest : public test::PagedTest {
protected:
    bool read(const QByteArray& bytes) { return test::read(app, bytes); }
};

TEST_F(AppPagedTest, SelectingDeactivatesTheOldPageAndActivatesTheNewOne) {
    addPages({u"A", u"B"});
    EXPECT_EQ(app.shown(), "-");
    app.select(0);
    EXPECT_EQ(app.shown(), "A");
    app.select(1);
    EXPECT_EQ(app.shown(), "B");
    EXPECT_TRUE(app.current()->active());
    EXPECT_FALSE(app.pages()[0]->active());
    EXPECT_THAT(pageLog(), ElementsAre("A activate 400 1", "A deactivate", "B activate 400 1"));
    app.select(std::nullopt);
    EXPECT_EQ(app.shown(), "-");
    EXPECT_EQ(pageLog().back(), "B deactivate");
    app.select(2); // no such page
    EXPECT_EQ(app.shown(), "-");
}

TEST_F(AppPagedTest, SelectingTheCurrentPageMakesItsWindowAnew) {
    addPages({u"A"});
    app.select(0);
    app.select(0);
    EXPECT_THAT(pageLog(), ElementsAre("A activate 400 1", "A deactivate", "A activate 400 1"));
}

TEST_F(AppPagedTest, NextAndPreviousStopAtTheEnds) {
    addPages({u"A", u"B"});
    app.select(0);
    choose(kPreviousPage);
    EXPECT_EQ(app.shown(), "A");
    choose(kNextPage);
    EXPECT_EQ(app.shown(), "B");
    pageLog().clear();
    sendCommand(window, kNextPage);
    EXPECT_EQ(app.shown(), "B");
    EXPECT_THAT(pageLog(), ElementsAre("B command 40005 0"));
    choose(kPreviousPage);
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(AppPagedTest, DisabledPagesArePassedOver) {
    addPages({u"_A", u"B", u"_C", u"_D", u"E", u"_F"});
    app.select(1);
    app.nextPage();
    EXPECT_EQ(app.shown(), "E");
    app.nextPage();
    EXPECT_EQ(app.shown(), "E");
    app.previousPage();
    EXPECT_EQ(app.shown(), "B");
    app.previousPage();
    EXPECT_EQ(app.shown(), "B");
    app.select(2); // a disabled page can be chosen all the same
    EXPECT_EQ(app.shown(), "C");
    app.previousPage();
    EXPECT_EQ(app.shown(), "B");
}

TEST_F(AppPagedTest, WithAllPagesDisabledCyclingDoesNothing) {
    addPages({u"_A", u"_B"});
    app.select(0);
    pageLog().clear();
    choose(kNextPage); // both are greyed
    choose(kPreviousPage);
    QTest::keyClick(&window, Qt::Key_PageDown);
    QTest::keyClick(&window, Qt::Key_PageUp);
    app.nextEnabledWithWrap();
    EXPECT_EQ(app.shown(), "A");
    EXPECT_THAT(pageLog(), IsEmpty());
}

TEST_F(AppPagedTest, WithoutACurrentPageTheNextOneIsTheFirstEnabledOne) {
    app.nextPage();
    EXPECT_EQ(app.shown(), "-");
    addPages({u"_A", u"B", u"C"});
    app.previousPage();
    EXPECT_EQ(app.shown(), "-");
    sendCommand(window, kNextPage);
    EXPECT_EQ(app.shown(), "B");
}

TEST_F(AppPagedTest, TheNextEnabledPageWithWrapStartsOverBehindTheEnd) {
    addPages({u"_A", u"B", u"C", u"_D"});
    app.nextEnabledWithWrap();
    EXPECT_EQ(app.shown(), "B");
    app.nextEnabledWithWrap();
    EXPECT_EQ(app.shown(), "C");
    app.nextEnabledWithWrap();
    EXPECT_EQ(app.shown(), "B");
    app.pages()[2]->setEnabled(false);
    pageLog().clear();
    app.nextEnabledWithWrap();
    EXPECT_EQ(app.shown(), "B");
    EXPECT_THAT(pageLog(), IsEmpty());
}

TEST_F(AppPagedTest, ClearingDestroysThePages) {
    addPages({u"A", u"B"});
    app.select(1);
    pageLog().clear();
    app.clear();
    EXPECT_EQ(app.shown(), "-");
    EXPECT_THAT(app.pages(), IsEmpty());
    EXPECT_THAT(pageLog(), ElementsAre("B deactivate", "A destroyed", "B destroyed"));
}

TEST_F(AppPagedTest, RestoringReplacesAllPagesByTheDefaultOnes) {
    addPages({u"A", u"B"});
    app.select(1);
    app.restoreDefaultPages();
    EXPECT_THAT(app.names(), ElementsAre("Default"));
    EXPECT_EQ(app.shown(), "Default");
}

TEST_F(AppPagedTest, RemovingTheCurrentPageLeavesNone) {
    addPages({u"A", u"B", u"C"});
    app.select(1);
    app.remove(2);
    EXPECT_EQ(app.shown(), "B");
    app.remove(1);
    EXPECT_EQ(app.shown(), "-");
    app.remove(7);
    EXPECT_THAT(app.names(), ElementsAre("A"));
}

TEST_F(AppPagedTest, SwappingKeepsTheCurrentPage) {
    addPages({u"A", u"B"});
    app.select(0);
    app.swapWithNext(0);
    EXPECT_THAT(app.names(), ElementsAre("B", "A"));
    EXPECT_EQ(app.shown(), "A");
    app.swapWithNext(1);
    app.swapWithNext(static_cast<CAppPaged::Position>(-1));
    EXPECT_THAT(app.names(), ElementsAre("B", "A"));
}

TEST_F(AppPagedTest, ThePageIsOfferedEachCommandFirst) {
    class Taking : public SamplePage {
    public:
        using SamplePage::SamplePage;
        bool command(int id, int) override { return id == kNextPage; }
    };
    app.append(std::make_unique<Taking>(QStringLiteral("Taking")));
    addPages({u"B"});
    app.select(0);
    choose(kNextPage);
    EXPECT_EQ(app.shown(), "Taking");
    app.select(1);
    sendCommand(window, 40021, nullptr, 5);
    EXPECT_EQ(pageLog().back(), "B command 40021 5");
}

// Stands for the main window's own procedure, which was attached before the application.
class Behind : public Window {
public:
    Log log;
    void onCommand(int id, QWidget*, int) override {
        log.push_back("command " + std::to_string(id));
    }
    void onSize(int width, int) override { log.push_back("size " + std::to_string(width)); }
};

TEST_F(AppPagedTest, WhatThePageHandledIsPassedOnAllTheSame) {
    QMainWindow other;
    auto* area = new QWidget;
    other.setCentralWidget(area);
    Behind behind;
    behind.attach(other, area);
    test::SampleApp application;
    application.attach(other, *area, commands, *menu);
    application.add(QStringLiteral("A"));
    application.select(0);
    sendCommand(other, 40017);
    sendCommand(other, kNextPage);
    EXPECT_THAT(behind.log, ElementsAre("command 40017", "command 40005"));
}

TEST_F(AppPagedTest, PageUpAndPageDownSwitchAndOtherKeysAreThePages) {
    addPages({u"A", u"B"});
    app.select(0);
    pageLog().clear();
    QTest::keyClick(&window, Qt::Key_PageDown);
    EXPECT_EQ(app.shown(), "B");
    QTest::keyClick(&window, Qt::Key_PageUp);
    EXPECT_EQ(app.shown(), "A");
    pageLog().clear();
    QTest::keyClick(&window, Qt::Key_A);
    QTest::keyClick(&window, Qt::Key_Left);
    EXPECT_THAT(
        pageLog(), ElementsAre(
                       "A key " + std::to_string(Qt::Key_A), "A character 97",
                       "A key " + std::to_string(Qt::Key_Left)
                   )
    );
}

TEST_F(AppPagedTest, KeysOfAWidgetInsideOfThePageReachItToo) {
    addPages({u"A"});
    app.select(0);
    QWidget child(&client());
    child.setFocusPolicy(Qt::StrongFocus);
    child.show();
    child.setFocus();
    pageLog().clear();
    QTest::keyClick(&child, Qt::Key_Z);
    EXPECT_THAT(pageLog(), ElementsAre("A key " + std::to_string(Qt::Key_Z), "A character 122"));
}

TEST_F(AppPagedTest, ThePageHearsOfSizesAndMenus) {
    addPages({u"A"});
    app.select(0);
    pageLog().clear();
    window.resize(500, 320);
    test::settle();
    EXPECT_THAT(pageLog(), ElementsAre("A size 500 " + std::to_string(client().height())));
    openMenu();
    EXPECT_EQ(pageLog().back(), "A menu Menu");
}

TEST_F(AppPagedTest, WithoutACurrentPageInputIsPassedOver) {
    addPages({u"A"});
    QTest::keyClick(&window, Qt::Key_A);
    sendCommand(window, 40017);
    window.resize(500, 320);
    test::settle();
    openMenu();
    EXPECT_THAT(pageLog(), IsEmpty());
}

TEST_F(AppPagedTest, TheWheelZoomsAtItsPlaceInThePage) {
    addPages({u"A"});
    const auto turn = [this](int angle) {
        const QPointF place(20, 30);
        QWheelEvent event(
            client().mapTo(&window, place), client().mapToGlobal(place), {}, {0, angle},
            Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false
        );
        QSpontaneKeyEvent::setSpontaneous(&event); // only such ones go on to the parent
        qApp->notify(&client(), &event);
    };
    turn(120); // nobody there to zoom
    app.select(0);
    pageLog().clear();
    turn(60);
    turn(60);
    turn(-240);
    const qreal ratio = window.devicePixelRatio();
    const std::string at =
        " " + std::to_string(qRound(20 * ratio)) + " " + std::to_string(qRound(30 * ratio));
    EXPECT_THAT(pageLog(), ElementsAre("A zoom 1" + at, "A zoom -2" + at));
}

TEST_F(AppPagedTest, ThePagesComeBackInOrderAndTheFirstOneIsShown) {
    addPages({u"_A", u"B"});
    const QByteArray bytes = written(app);
    app.clear();
    pageLog().clear();
    EXPECT_TRUE(read(bytes));
    EXPECT_THAT(app.names(), ElementsAre("A", "B"));
    EXPECT_FALSE(app.pages()[0]->enabled());
    EXPECT_TRUE(app.pages()[1]->enabled());
    EXPECT_EQ(app.shown(), "A"); // though it is disabled
    EXPECT_THAT(pageLog(), ElementsAre("A activate 400 1"));
}

TEST_F(AppPagedTest, ReadingReplacesThePagesThatThereWere) {
    addPages({u"New"});
    const QByteArray bytes = written(app);
    app.clear();
    addPages({u"Old"});
    app.select(0);
    EXPECT_TRUE(read(bytes));
    EXPECT_THAT(app.names(), ElementsAre("New"));
    EXPECT_EQ(app.shown(), "New");
}

TEST_F(AppPagedTest, ThePagesOfAnotherOneTakeThePlaceOfAll) {
    addPages({u"_New", u"Next"});
    const QByteArray bytes = written(app);
    app.clear();
    addPages({u"Old"});
    app.select(0);
    test::SampleApp other;
    ASSERT_TRUE(test::read(other, bytes));
    pageLog().clear();
    app.takeFrom(other);
    EXPECT_THAT(app.names(), ElementsAre("New", "Next"));
    EXPECT_EQ(app.shown(), "New"); // though it is disabled
    EXPECT_EQ(app.pages()[1]->application(), &app);
    EXPECT_THAT(other.pages(), IsEmpty());
    app.takeFrom(other);
    EXPECT_EQ(app.shown(), "-");
    EXPECT_THAT(app.pages(), IsEmpty());
}

TEST_F(AppPagedTest, AnEmptyListOrNoBytesShowNoPage) {
    EXPECT_FALSE(read({}));
    EXPECT_EQ(app.shown(), "-");
    EXPECT_TRUE(read(QByteArray(4, '\0')));
    EXPECT_EQ(app.shown(), "-");
    EXPECT_THAT(app.pages(), IsEmpty());
}

TEST_F(AppPagedTest, ObjectsThatAreNoPagesAreDropped) {
    addPages({u"A", u"B"});
    QByteArray bytes = written(app);
    // Two more between them: an unknown number, and a list.
    const qsizetype second = 4 + (bytes.size() - 4) / 2;
    bytes.insert(
        second, QByteArray::fromHex("63000000020000000102"
                                    "000000000400000000000000")
    );
    bytes[0] = 4;
    EXPECT_TRUE(read(bytes));
    EXPECT_THAT(app.names(), ElementsAre("A", "B"));
}

TEST_F(AppPagedTest, ACountThatLiesGivesThePagesThatAreThere) {
    addPages({u"A", u"B"});
    QByteArray bytes = written(app);
    bytes.replace(0, 4, QByteArray::fromHex("ffffffff"));
    bytes.chop(3); // in the middle of the last field
    EXPECT_TRUE(read(bytes));
    EXPECT_THAT(app.names(), ElementsAre("A", "B"));
    EXPECT_TRUE(app.pages()[1]->enabled());
}

TEST_F(AppPagedTest, PagesCanBeReadAndWrittenWithoutAWindow) {
    addPages({u"A"});
    const QByteArray bytes = written(app);
    test::SampleApp bare;
    pageLog().clear();
    EXPECT_TRUE(test::read(bare, bytes));
    EXPECT_EQ(bare.shown(), "-");
    EXPECT_EQ(written(bare), bytes);
    EXPECT_THAT(pageLog(), IsEmpty());
}

TEST_F(AppPagedTest, AWindowThatIsGoneShowsNoPages) {
    auto* other = new QMainWindow;
    auto* area = new QWidget;
    other->setCentralWidget(area);
    QMenu otherMenu;
    CommandSet otherCommands(*other);
    otherCommands.fill(otherMenu, test::kMenuRows);
    test::SampleApp application;
    application.attach(*other, *area, otherCommands, otherMenu);
    application.add(QStringLiteral("A"));
    application.select(0);
    Window::destroyWindow(*other);
    test::settle();
    application.select(0);
    EXPECT_EQ(application.shown(), "-");
    application.clear();
    EXPECT_EQ(application.widget(), nullptr);
}

} // namespace
} // namespace raincast
