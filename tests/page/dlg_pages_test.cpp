// SPDX-License-Identifier: MIT
#include "page/dlg_pages.h"
#include "page/sample_pages.h"
#include "support/clean_layout.h"
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "window/screen_metrics.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using test::pageLog;
using test::SamplePage;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kShow = 1;
constexpr int kCancel = 2;
constexpr int kRestoreDefault = 1012;
constexpr int kTypes = 1028;
constexpr int kAdd = 1038;
constexpr int kDelete = 1039;
constexpr int kUp = 1040;
constexpr int kDown = 1041;
constexpr int kEnable = 1042;
constexpr int kPageList = 1043;
constexpr int kRename = 1044;

const QString kPagesCaption = QStringLiteral("Pages");
const QString kSelectCaption = QStringLiteral("Select Page Type");
const QString kRenameCaption = QStringLiteral("Rename");

class SampleType : public CAppPaged::PageType {
public:
    SampleType(const QString& name, int rank, bool fails = false)
        : PageType(name, rank), m_fails(fails) {}

    std::unique_ptr<CAppPaged::Page> create(QWidget* window) const override {
        createdFor = window;
        return m_fails ? nullptr : std::make_unique<SamplePage>(QStringLiteral("New ") + name());
    }
    mutable QWidget* createdFor = nullptr;

private:
    bool m_fails;
};

QWidget* child(const QDialog& dialog, int id) {
    return dialog.findChild<QWidget*>(QString::number(id));
}

QListWidget& listOf(const QDialog& dialog, int id = kPageList) {
    return *dialog.findChild<QListWidget*>(QString::number(id));
}

void click(const QDialog& dialog, int id) {
    QWidget* const control = child(dialog, id);
    ASSERT_NE(control, nullptr) << id;
    EXPECT_TRUE(control->isEnabled()) << id;
    test::click(*control, {control->height() / 2, control->height() / 2});
}

void chooseRow(const QDialog& dialog, int row, int id = kPageList) {
    QListWidget& list = listOf(dialog, id);
    test::click(*list.viewport(), list.visualItemRect(list.item(row)).center());
}

test::Log rows(const QListWidget& list) {
    test::Log texts;
    for (int row = 0; row < list.count(); ++row) {
        texts.push_back(list.item(row)->text().toStdString());
    }
    return texts;
}

int selectedRow(const QDialog& dialog) {
    const auto selected = listOf(dialog).selectedItems();
    return selected.isEmpty() ? -1 : listOf(dialog).row(selected.first());
}

// The buttons that can be pressed, in the order of the column.
std::vector<int> enabledButtons(const QDialog& dialog) {
    std::vector<int> enabled;
    for (const int id : {kShow, kUp, kDown, kRename, kEnable, kDelete, kAdd, kRestoreDefault}) {
        if (child(dialog, id)->isEnabled()) {
            enabled.push_back(id);
        }
    }
    return enabled;
}

class DlgPagesTest : public test::PagedTest {
protected:
    test::DialogScript script;
    SampleType blank{QStringLiteral("Blank"), 10};
    SampleType weather{QStringLiteral("Weather"), 20};

    ~DlgPagesTest() override { ScreenMetrics::use(std::nullopt); }

    void expectPages(test::DialogScript::Step step) {
        script.expect(kPagesCaption, std::move(step));
    }
};

TEST_F(DlgPagesTest, ItListsThePagesAndSelectsTheCurrentOne) {
    addPages({u"A", u"_B", u"C"});
    app.pages()[2]->setName({});
    app.pages()[2]->setPageType(&weather);
    app.select(1);
    expectPages([](QDialog& open) {
        EXPECT_THAT(rows(listOf(open)), ElementsAre("A", "B", "Weather"));
        EXPECT_EQ(selectedRow(open), 1);
        EXPECT_FALSE(static_cast<QCheckBox*>(child(open, kEnable))->isChecked());
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "B");
}

TEST_F(DlgPagesTest, TheButtonsFollowTheSelection) {
    addPages({u"A", u"B", u"_C"});
    expectPages([](QDialog& open) {
        listOf(open).setCurrentRow(-1);
        EXPECT_THAT(enabledButtons(open), ElementsAre(kDown, kAdd, kRestoreDefault));
        EXPECT_FALSE(static_cast<QCheckBox*>(child(open, kEnable))->isChecked());
        chooseRow(open, 0);
        EXPECT_THAT(
            enabledButtons(open),
            ElementsAre(kShow, kDown, kRename, kEnable, kDelete, kAdd, kRestoreDefault)
        );
        EXPECT_TRUE(static_cast<QCheckBox*>(child(open, kEnable))->isChecked());
        chooseRow(open, 1);
        EXPECT_THAT(
            enabledButtons(open),
            ElementsAre(kShow, kUp, kDown, kRename, kEnable, kDelete, kAdd, kRestoreDefault)
        );
        chooseRow(open, 2);
        EXPECT_THAT(
            enabledButtons(open),
            ElementsAre(kShow, kUp, kRename, kEnable, kDelete, kAdd, kRestoreDefault)
        );
        EXPECT_FALSE(static_cast<QCheckBox*>(child(open, kEnable))->isChecked());
    });
    choose(kPages);
}

TEST_F(DlgPagesTest, TheRowWithTheKeyboardIsTheSelectedOne) {
    addPages({u"A", u"B"});
    expectPages([](QDialog& open) { // no page is current
        QListWidget& list = listOf(open);
        EXPECT_TRUE(list.hasFocus());
        EXPECT_EQ(selectedRow(open), 0);
        EXPECT_THAT(
            enabledButtons(open),
            ElementsAre(kShow, kDown, kRename, kEnable, kDelete, kAdd, kRestoreDefault)
        );
        EXPECT_TRUE(static_cast<QCheckBox*>(child(open, kEnable))->isChecked());
        // Nor does the control key take the selection away.
        const QPoint row = list.visualItemRect(list.item(0)).center();
        test::click(*list.viewport(), row, Qt::ControlModifier);
        EXPECT_EQ(selectedRow(open), 0);
        QTest::keyClick(&list, Qt::Key_Space, Qt::ControlModifier);
        EXPECT_EQ(selectedRow(open), 0);
        QTest::keyClick(&list, Qt::Key_Down, Qt::ControlModifier);
        EXPECT_EQ(list.currentRow(), selectedRow(open));
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "-");
}

TEST_F(DlgPagesTest, ShowShowsTheChosenPageEnabledOrNot) {
    addPages({u"A", u"_B"});
    app.select(0);
    expectPages([](QDialog& open) {
        chooseRow(open, 1);
        click(open, kShow);
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "B");
    EXPECT_FALSE(app.current()->enabled());
}

TEST_F(DlgPagesTest, ADoubleClickOrEnterShowsAPageToo) {
    addPages({u"A", u"B"});
    app.select(0);
    expectPages([](QDialog& open) {
        QListWidget& list = listOf(open);
        test::doubleClick(*list.viewport(), list.visualItemRect(list.item(1)).center());
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "B");
    expectPages([](QDialog& open) {
        EXPECT_EQ(open.focusWidget(), &listOf(open));
        QTest::keyClick(&listOf(open), Qt::Key_Up);
        QTest::keyClick(&listOf(open), Qt::Key_Return);
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(DlgPagesTest, EnterShowsTheFirstPageWhereNoneIsCurrent) {
    addPages({u"A", u"B"});
    expectPages([](QDialog& open) { QTest::keyClick(open.windowHandle(), Qt::Key_Return); });
    choose(kPages);
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(DlgPagesTest, WithoutASelectionThereIsNothingToShow) {
    addPages({u"A"});
    expectPages([](QDialog& open) {
        listOf(open).setCurrentRow(-1);
        EXPECT_THAT(enabledButtons(open), ElementsAre(kDown, kAdd, kRestoreDefault));
        QTest::keyClick(&open, Qt::Key_Return);
        EXPECT_TRUE(open.isVisible());
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "-");
}

TEST_F(DlgPagesTest, WhereAllThatIsLeftIsDisabledTheWindowSaysHowToGoOn) {
    addPages({u"A", u"_B"});
    app.select(0);
    expectPages([](QDialog& open) { click(open, kDelete); });
    choose(kPages);
    EXPECT_EQ(app.shown(), "-");
    const auto* hint = client().findChild<QLabel*>();
    EXPECT_TRUE(hint->text().contains("\"Pages...\"")) << qPrintable(hint->text());
    EXPECT_FALSE(hint->text().contains("Page Down")) << qPrintable(hint->text());
    // Enabled again, it can be reached in the menu and with the key.
    expectPages([](QDialog& open) { click(open, kEnable); });
    choose(kPages);
    EXPECT_TRUE(hint->text().contains("Page Down")) << qPrintable(hint->text());
}

TEST_F(DlgPagesTest, LeavingItSelectsNothingButKeepsTheEdits) {
    addPages({u"A", u"B"});
    app.select(0);
    pageLog().clear();
    expectPages([](QDialog& open) {
        chooseRow(open, 1);
        click(open, kUp);
        QTest::keyClick(&open, Qt::Key_Escape);
    });
    choose(kPages);
    EXPECT_THAT(app.names(), ElementsAre("B", "A"));
    EXPECT_EQ(app.shown(), "A");
    EXPECT_THAT(pageLog(), ElementsAre("A command 40009 0"));
}

TEST_F(DlgPagesTest, UpAndDownMoveThePageAndItsRow) {
    addPages({u"A", u"B", u"C"});
    app.select(0);
    expectPages([](QDialog& open) {
        EXPECT_FALSE(child(open, kUp)->isEnabled());
        click(open, kDown);
        EXPECT_THAT(rows(listOf(open)), ElementsAre("B", "A", "C"));
        EXPECT_EQ(selectedRow(open), 1);
        click(open, kDown);
        EXPECT_THAT(rows(listOf(open)), ElementsAre("B", "C", "A"));
        EXPECT_FALSE(child(open, kDown)->isEnabled());
        sendCommand(open, kDown); // past the end
        EXPECT_THAT(rows(listOf(open)), ElementsAre("B", "C", "A"));
        click(open, kUp);
        EXPECT_EQ(selectedRow(open), 1);
        chooseRow(open, 0);
        sendCommand(open, kUp);
        EXPECT_THAT(rows(listOf(open)), ElementsAre("B", "A", "C"));
    });
    choose(kPages);
    EXPECT_THAT(app.names(), ElementsAre("B", "A", "C"));
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(DlgPagesTest, EnableInvertsTheFlag) {
    addPages({u"A"});
    app.select(0);
    expectPages([this](QDialog& open) {
        const auto* box = static_cast<QCheckBox*>(child(open, kEnable));
        click(open, kEnable);
        EXPECT_FALSE(box->isChecked());
        EXPECT_FALSE(app.pages()[0]->enabled());
        click(open, kEnable);
        EXPECT_TRUE(box->isChecked());
        EXPECT_TRUE(app.pages()[0]->enabled());
        click(open, kEnable);
    });
    choose(kPages);
    EXPECT_FALSE(app.pages()[0]->enabled());
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(DlgPagesTest, RenamingTakesTheEditedName) {
    addPages({u"A", u"B"});
    app.select(1);
    pageLog().clear();
    expectPages([](QDialog& open) {
        click(open, kRename);
        EXPECT_THAT(rows(listOf(open)), ElementsAre("A", "Radar"));
        EXPECT_EQ(selectedRow(open), 1);
        click(open, kRename);
    });
    script.expect(kRenameCaption, [](QDialog& open) {
        auto* edit = static_cast<QLineEdit*>(child(open, kRename));
        EXPECT_EQ(edit->text(), QStringLiteral("B"));
        QTest::keyClicks(edit, QStringLiteral("Radar")); // replaces what was selected
        QTest::keyClick(edit, Qt::Key_Return);
    });
    script.expect(kRenameCaption, [](QDialog& open) {
        QTest::keyClicks(child(open, kRename), QStringLiteral("Other"));
        click(open, kCancel);
    });
    choose(kPages);
    EXPECT_THAT(app.names(), ElementsAre("A", "Radar"));
    EXPECT_THAT(pageLog(), ElementsAre("B command 40009 0", "Radar changed"));
}

TEST_F(DlgPagesTest, DeletingSelectsThePageBeforeAndShowsNone) {
    addPages({u"A", u"B", u"C"});
    app.select(1);
    expectPages([this](QDialog& open) {
        pageLog().clear();
        click(open, kDelete);
        EXPECT_THAT(pageLog(), ElementsAre("B deactivate"));
        app.undo()->drop(); // as it is after ten seconds
        EXPECT_THAT(pageLog(), ElementsAre("B deactivate", "B destroyed"));
        EXPECT_EQ(app.shown(), "-");
        EXPECT_THAT(rows(listOf(open)), ElementsAre("A", "C"));
        EXPECT_EQ(selectedRow(open), 0);
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "-"); // until one is chosen or cycled to
    choose(kNextPage);
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(DlgPagesTest, DeletingTheFirstPageSelectsTheNewFirstOne) {
    addPages({u"A", u"B", u"C"});
    app.select(2);
    expectPages([this](QDialog& open) {
        chooseRow(open, 0);
        click(open, kDelete);
        EXPECT_THAT(rows(listOf(open)), ElementsAre("B", "C"));
        EXPECT_EQ(selectedRow(open), 0);
        EXPECT_EQ(app.shown(), "-"); // though another page was deleted
        click(open, kShow);
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "B");
}

TEST_F(DlgPagesTest, DeletingTheOnlyPageAsksForANewOneAtOnce) {
    addPages({u"A"});
    app.select(0);
    expectPages([](QDialog& open) { click(open, kDelete); });
    script.expect(kSelectCaption, [](QDialog& open) {
        EXPECT_EQ(Modal::depth(), 1); // the pages dialog is closed
        EXPECT_THAT(
            rows(listOf(open, kTypes)), ElementsAre("Blank", "Blank customizable page", "Weather")
        );
        chooseRow(open, 2, kTypes);
        click(open, 1);
    });
    choose(kPages);
    EXPECT_THAT(app.names(), ElementsAre("New Weather"));
    EXPECT_EQ(app.shown(), "New Weather");
    EXPECT_EQ(weather.createdFor, &window);
}

TEST_F(DlgPagesTest, TheRequestForANewPageCanBeCancelled) {
    addPages({u"A"});
    app.select(0);
    expectPages([](QDialog& open) { click(open, kDelete); });
    script.expect(kSelectCaption, [](QDialog& open) { click(open, kCancel); });
    choose(kPages);
    EXPECT_THAT(app.pages(), IsEmpty());
    EXPECT_EQ(app.shown(), "-");
}

TEST_F(DlgPagesTest, WithoutPagesItAsksForOneInstead) {
    script.expect(kSelectCaption, [](QDialog& open) {
        chooseRow(open, 0, kTypes);
        click(open, 1);
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "New Blank");
}

TEST_F(DlgPagesTest, AddAppendsAndShowsAPageAndEndsTheDialog) {
    addPages({u"A", u"B"});
    app.select(0);
    expectPages([this](QDialog& open) {
        chooseRow(open, 1);
        click(open, kAdd);
        EXPECT_EQ(open.result(), 2);
        EXPECT_EQ(app.shown(), "New Blank");
    });
    script.expect(kSelectCaption, [](QDialog& open) {
        EXPECT_EQ(Modal::depth(), 2);
        chooseRow(open, 0, kTypes);
        click(open, 1);
    });
    choose(kPages);
    EXPECT_THAT(app.names(), ElementsAre("A", "B", "New Blank"));
    EXPECT_EQ(app.shown(), "New Blank"); // and nothing is selected afterwards
}

TEST_F(DlgPagesTest, TypesWithoutANameAreNotOffered) {
    const SampleType nameless({}, 15);
    addPages({u"A"});
    app.select(0);
    expectPages([](QDialog& open) { click(open, kAdd); });
    script.expect(kSelectCaption, [](QDialog& open) {
        EXPECT_THAT(
            rows(listOf(open, kTypes)), ElementsAre("Blank", "Blank customizable page", "Weather")
        );
        chooseRow(open, 2, kTypes);
        click(open, 1);
    });
    choose(kPages);
    EXPECT_EQ(app.shown(), "New Weather");
    EXPECT_EQ(nameless.createdFor, nullptr);
}

TEST_F(DlgPagesTest, WithoutATypeOrAPageTheDialogStaysAndTheListAsWell) {
    const SampleType failing(QStringLiteral("Failing"), 30, true);
    addPages({u"A"});
    app.select(0);
    expectPages([](QDialog& open) {
        click(open, kAdd); // cancelled
        EXPECT_TRUE(open.isVisible());
        click(open, kAdd); // "OK" without a row
        EXPECT_TRUE(open.isVisible());
        click(open, kAdd); // a type that fails
        EXPECT_TRUE(open.isVisible());
        EXPECT_THAT(rows(listOf(open)), ElementsAre("A"));
    });
    script.expect(kSelectCaption);
    script.expect(kSelectCaption, [](QDialog& open) {
        open.findChild<QListWidget*>()->setCurrentRow(-1);
        click(open, 1);
    });
    script.expect(kSelectCaption, [](QDialog& open) {
        chooseRow(open, 3, kTypes);
        click(open, 1);
    });
    choose(kPages);
    EXPECT_EQ(failing.createdFor, &window);
    EXPECT_THAT(app.names(), ElementsAre("A"));
    EXPECT_EQ(app.shown(), "A");
}

TEST_F(DlgPagesTest, RestoringTheDefaultReplacesAllWithoutAsking) {
    addPages({u"A", u"B"});
    app.select(1);
    expectPages([](QDialog& open) {
        click(open, kRestoreDefault);
        EXPECT_FALSE(open.isVisible());
        EXPECT_EQ(open.result(), 2);
    });
    choose(kPages);
    EXPECT_THAT(app.names(), ElementsAre("Default"));
    EXPECT_EQ(app.shown(), "Default");
}

TEST_F(DlgPagesTest, WhereNobodyMayBeAskedNothingChanges) {
    addPages({u"A"});
    app.select(0);
    Modal::neverAsk(true);
    choose(kPages);
    app.clear();
    choose(kPages);
    Modal::neverAsk(false);
    EXPECT_THAT(app.pages(), IsEmpty());
}

TEST_F(DlgPagesTest, TheRequestToEndLeavesBothDialogs) {
    addPages({u"A"});
    app.select(0);
    expectPages([](QDialog& open) { click(open, kAdd); });
    script.expect(kSelectCaption, [](QDialog&) { Modal::requestEnd(); });
    choose(kPages);
    Modal::forgetEnd();
    EXPECT_THAT(app.names(), ElementsAre("A"));
}

TEST_F(DlgPagesTest, ItFitsASmallScreenAndUsesALargeOne) {
    addPages({u"A", u"B"});
    ScreenMetrics screen;
    screen.logPixelsY = 96;
    screen.available = {240, 320};
    ScreenMetrics::use(screen);
    expectPages([](QDialog& open) {
        EXPECT_LE(open.width(), 240);
        EXPECT_LE(open.height(), 320);
        test::expectCleanLayout(open);
        EXPECT_EQ(open.findChild<QScrollArea*>()->verticalScrollBar()->maximum(), 0);
        EXPECT_EQ(open.findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0);
    });
    choose(kPages);
    screen.logPixelsY = 192;
    screen.available = {1000, 800};
    ScreenMetrics::use(screen);
    const QFont usual = QApplication::font();
    QApplication::setFont(QFont(usual.family(), 2 * usual.pointSize())); // as that screen has it
    expectPages([](QDialog& open) {
        const int width = listOf(open).width();
        const int height = listOf(open).height();
        const int buttonWidth = child(open, kShow)->width();
        open.resize(open.size() + QSize(100, 60));
        test::settle();
        EXPECT_EQ(listOf(open).width(), width + 100);
        EXPECT_EQ(listOf(open).height(), height + 60);
        EXPECT_EQ(child(open, kShow)->width(), buttonWidth);
        test::expectCleanLayout(open);
    });
    choose(kPages);
    QApplication::setFont(usual);
}

} // namespace
} // namespace raincast
