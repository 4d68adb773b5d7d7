// SPDX-License-Identifier: MIT
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "support/test_clock.h"
#include "support/time_zone.h"
#include "warnings/warning_row_delegate.h"
#include "warnings/warnings_dialog.h"

#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace raincast {
namespace {

WarningText warningOf(const QString& event, const QString& text) {
    WarningText warning;
    warning.event = event;
    warning.headline = event + " issued at 7:40PM";
    warning.text = text;
    warning.end = fromCalendar({2026, 11, 22, 20, 15});
    return warning;
}

class WarningsDialogTest : public test::GuiTest {
protected:
    static QListWidget& listOf(QDialog& dialog) { return *dialog.findChild<QListWidget*>(); }
    /// Runs a list of a tornado and a flood.
    void run(const test::DialogScript::Step& step) {
        m_script.expect("Warnings", step);
        WarningsDialog({warningOf("Tornado Warning", "Take cover"),
                        warningOf("Flash Flood Warning", "<h1>Climb</h1>")})
            .run(&m_window);
    }
    void expectText(const QString& part) {
        m_script.expect("Warning", [part](QDialog& dialog) {
            const auto* const text = dialog.findChild<QPlainTextEdit*>();
            EXPECT_TRUE(text->toPlainText().contains(part)) << text->toPlainText().toStdString();
            EXPECT_TRUE(text->isReadOnly());
        });
    }

    const TimeZone m_zone{"UTC0"};
    const TestClock m_clock{fromCalendar({2026, 11, 22, 19, 42})};
    QWidget m_window;
    test::DialogScript m_script;
};

TEST_F(WarningsDialogTest, SaysWhatUntilWhenAndTheHeadline) {
    run([](QDialog& dialog) {
        ASSERT_EQ(listOf(dialog).count(), 2);
        const QListWidgetItem& row = *listOf(dialog).item(0);
        EXPECT_EQ(row.text(), "Tornado Warning");
        EXPECT_EQ(row.data(WarningRowDelegate::kEndRole), "until 20:15");
        EXPECT_EQ(row.data(WarningRowDelegate::kHeadlineRole), "Tornado Warning issued at 7:40PM");
        EXPECT_EQ(row.data(WarningRowDelegate::kColourRole).value<QColor>(), QColor(255, 0, 0));
        EXPECT_EQ(
            row.data(Qt::AccessibleTextRole),
            "Tornado Warning, until 20:15, Tornado Warning issued at 7:40PM"
        );
        EXPECT_EQ(listOf(dialog).currentRow(), 0);
    });
}

TEST_F(WarningsDialogTest, ReadShowsTheWholeTextAndTheListStays) {
    run([this](QDialog& dialog) {
        expectText("Take cover");
        auto* const read = dialog.findChild<QPushButton*>("1");
        test::click(*read, read->rect().center());
        EXPECT_TRUE(dialog.isVisible());
        expectText("<h1>Climb</h1>"); // as it stands
        QTest::keyClick(&listOf(dialog), Qt::Key_Down);
        QTest::keyClick(&listOf(dialog), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(WarningsDialogTest, ADoubleClickReads) {
    run([this](QDialog& dialog) {
        expectText("<h1>Climb</h1>");
        QListWidget& list = listOf(dialog);
        const QPoint row = list.visualItemRect(list.item(1)).center();
        test::click(*list.viewport(), row);
        test::doubleClick(*list.viewport(), row);
    });
}

TEST_F(WarningsDialogTest, ALongHeadlineTakesMoreLinesInANarrowList) {
    WarningText wordy = warningOf("Tornado Warning", {});
    wordy.headline = QString("word ").repeated(3000);
    m_script.expect("Warnings", [](QDialog& dialog) {
        QListWidget& list = listOf(dialog);
        const int line = list.fontMetrics().lineSpacing();
        const int high = list.visualItemRect(list.item(0)).height();
        EXPECT_GE(high, 6 * line) << "event, end and four lines";
        EXPECT_LT(high, 8 * line);
    });
    WarningsDialog({wordy}).run(&m_window);
}

} // namespace
} // namespace raincast
