// SPDX-License-Identifier: MIT
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "window/dlg_item_type_select.h"
#include "window/screen_metrics.h"

#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace raincast {
namespace {

QListWidget& listOf(const QDialog& open) {
    return *open.findChild<QListWidget*>(QStringLiteral("1028"));
}

void click(const QDialog& open, int id) {
    QTest::mouseClick(open.findChild<QWidget*>(QString::number(id)), Qt::LeftButton);
}

class DlgItemTypeSelectTest : public test::GuiTest {
protected:
    test::DialogScript script;
    CDlgItemTypeSelect dialog{QStringLiteral("Weather Station")};

    ~DlgItemTypeSelectTest() override { ScreenMetrics::use(std::nullopt); }

    void addStations() {
        dialog.add(QStringLiteral("KS:Wichita"), QStringLiteral("ICT"));
        dialog.add(QStringLiteral("OK:Tulsa"), QStringLiteral("INX"));
        dialog.add(QStringLiteral("TX:Dyess AFB"), QStringLiteral("DYX"));
    }

    int run(const test::DialogScript::Step& step) {
        script.expect(QStringLiteral("Weather Station"), step);
        return dialog.run(nullptr);
    }
};

TEST_F(DlgItemTypeSelectTest, OkTakesTheSelectedRow) {
    addStations();
    const int result = run([](QDialog& open) {
        EXPECT_EQ(listOf(open).count(), 3);
        QListWidget& list = listOf(open);
        test::click(*list.viewport(), list.visualItemRect(list.item(1)).center());
        click(open, 1);
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(dialog.selected(), 1);
    EXPECT_EQ(dialog.selectedDatum(), QStringLiteral("INX"));
}

TEST_F(DlgItemTypeSelectTest, TheFirstRowIsSelectedAndEnterTakesIt) {
    addStations();
    const int result = run([](QDialog& open) {
        EXPECT_TRUE(listOf(open).item(0)->isSelected());
        QTest::keyClick(open.windowHandle(), Qt::Key_Return);
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(dialog.selectedDatum(), QStringLiteral("ICT"));
}

TEST_F(DlgItemTypeSelectTest, OkWithoutASelectedRowTakesNone) {
    for (const bool anyRows : {false, true}) {
        if (anyRows) {
            addStations();
        }
        const int result = run([](QDialog& open) {
            listOf(open).setCurrentRow(-1);
            click(open, 1);
        });
        EXPECT_EQ(result, Dialog::kOk);
        EXPECT_FALSE(dialog.selected());
        EXPECT_FALSE(dialog.selectedDatum().isValid());
    }
}

TEST_F(DlgItemTypeSelectTest, CancelTakesNone) {
    addStations();
    const int result = run([](QDialog& open) {
        listOf(open).setCurrentRow(2);
        click(open, 2);
    });
    EXPECT_EQ(result, Dialog::kCancel);
    EXPECT_FALSE(dialog.selected());
}

TEST_F(DlgItemTypeSelectTest, ADoubleClickTakesItsRow) {
    addStations();
    const int result = run([](QDialog& open) {
        QListWidget& list = listOf(open);
        test::doubleClick(*list.viewport(), list.visualItemRect(list.item(2)).center());
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(dialog.selected(), 2);
}

TEST_F(DlgItemTypeSelectTest, ARowCanBeSelectedBeforehandAndIsInSight) {
    for (int i = 0; i < 200; ++i) {
        dialog.add(QString::number(i), i, i == 150);
    }
    const int result = run([](QDialog& open) {
        QListWidget& list = listOf(open);
        EXPECT_EQ(list.currentRow(), 150);
        EXPECT_TRUE(list.viewport()->rect().contains(list.visualItemRect(list.item(150))));
        QTest::keyClick(&list, Qt::Key_Down);
        QTest::keyClick(&list, Qt::Key_Return);
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(dialog.selectedDatum(), 151);
}

TEST_F(DlgItemTypeSelectTest, TypingJumpsToAName) {
    addStations();
    const int result = run([](QDialog& open) {
        QTest::keyClicks(open.focusWidget(), QStringLiteral("dyess "));
        QTest::keyClick(open.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(dialog.selectedDatum(), QStringLiteral("DYX"));
}

TEST_F(DlgItemTypeSelectTest, AnotherRunStartsWithoutAChoice) {
    addStations();
    EXPECT_EQ(
        run([](QDialog& open) {
            listOf(open).setCurrentRow(2);
            click(open, 1);
        }),
        Dialog::kOk
    );
    EXPECT_EQ(run([](QDialog& open) { EXPECT_EQ(listOf(open).count(), 3); }), Dialog::kCancel);
    EXPECT_FALSE(dialog.selected());
}

TEST_F(DlgItemTypeSelectTest, ItsOwnCaptionIsSelect) {
    script.expect(QStringLiteral("Select"));
    EXPECT_EQ(CDlgItemTypeSelect().run(nullptr), Dialog::kCancel);
}

TEST_F(DlgItemTypeSelectTest, ItFitsASmallScreen) {
    addStations();
    ScreenMetrics screen;
    screen.logPixelsY = 96;
    screen.available = {240, 320};
    ScreenMetrics::use(screen);
    run([](QDialog& open) {
        EXPECT_LE(open.width(), 240);
        EXPECT_LE(open.height(), 320);
        EXPECT_EQ(open.findChild<QScrollArea*>()->verticalScrollBar()->maximum(), 0);
        for (const int id : {1, 2}) {
            const auto* button = open.findChild<QPushButton*>(QString::number(id));
            EXPECT_TRUE(open.rect().contains(QRect(button->mapTo(&open, QPoint()), button->size()))
            );
        }
    });
}

} // namespace
} // namespace raincast
