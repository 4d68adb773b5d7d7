// SPDX-License-Identifier: MIT
#include "fitting/fit_text.h"
#include "support/qt_app.h"

#include <QAction>
#include <QFontMetrics>
#include <QLabel>
#include <QMenu>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class FitTextTest : public test::GuiTest {};

TEST_F(FitTextTest, BreaksAtBlanksAndNowhereElse) {
    const QFontMetrics metrics{QFont()};
    const int width = metrics.horizontalAdvance(QStringLiteral("mmm mmm"));
    const auto brokenTo = [&](const char* text) {
        return broken(QString::fromUtf8(text), metrics, width).toStdString();
    };
    EXPECT_EQ(brokenTo(""), "");
    EXPECT_EQ(brokenTo("mmm mmm"), "mmm mmm");
    EXPECT_EQ(brokenTo("mmm mmm mmm"), "mmm mmm\nmmm");
    EXPECT_EQ(brokenTo("&mmm mmm"), "&mmm mmm"); // the mark of a letter takes no room
    EXPECT_EQ(brokenTo("mmmmmmmmmmmm m"), "mmmmmmmmmmmm\nm");
    EXPECT_EQ(brokenTo("m\nmmm mmm"), "m\nmmm mmm");
}

TEST_F(FitTextTest, NarrowsTheLettersOfALabelAsLittleAsItCan) {
    QLabel label(QStringLiteral("A text of some length"));
    const QFont usual = label.font();
    label.resize(label.sizeHint());
    fitLabel(label);
    EXPECT_EQ(label.font(), usual);

    const int height = label.height();
    label.resize(label.width() * 4 / 5, height);
    fitLabel(label);
    EXPECT_LE(label.sizeHint().width(), label.width());
    EXPECT_GE(label.font().stretch(), 65);
    EXPECT_LE(label.font().stretch(), 85);

    label.setText(QStringLiteral("Short"));
    fitLabel(label);
    EXPECT_EQ(label.font().stretch(), 100); // it has room again
}

TEST_F(FitTextTest, NarrowsTheLettersOfALabelWithSeveralLines) {
    QLabel label(QStringLiteral("Three lines of words, or maybe two"));
    label.setWordWrap(true);
    const int width = label.fontMetrics().horizontalAdvance(label.text()) * 6 / 10;
    label.resize(width, label.heightForWidth(width));
    label.setText(label.text() + QStringLiteral(" and some that are more"));
    ASSERT_GT(label.heightForWidth(width), label.height());
    fitLabel(label);
    EXPECT_LE(label.heightForWidth(width), label.height());
}

TEST_F(FitTextTest, NarrowsToHalfAtMost) {
    QLabel label(QStringLiteral("A text of some length"));
    label.resize(5, 20);
    fitLabel(label);
    EXPECT_EQ(label.font().stretch(), 50);
}

TEST_F(FitTextTest, AMenuLosesItsKeysBeforeItsLettersGetNarrow) {
    QMenu menu;
    QAction* const entry = menu.addAction(QStringLiteral("&Whole image"));
    entry->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_PageDown);
    menu.addAction(QStringLiteral("Plain"));
    const int whole = menu.sizeHint().width();
    fitMenu(menu, whole);
    EXPECT_EQ(entry->text(), "&Whole image");
    fitMenu(menu, whole - 10);
    EXPECT_EQ(entry->text(), "&Whole image\t");
    EXPECT_LE(menu.sizeHint().width(), whole - 10);
    EXPECT_EQ(menu.font().stretch(), QMenu().font().stretch());
    const int without = menu.sizeHint().width();
    fitMenu(menu, without - 10);
    EXPECT_LE(menu.sizeHint().width(), without - 10);
    EXPECT_EQ(menu.actions().last()->text(), "Plain");
    EXPECT_LT(menu.font().stretch(), 100);
}

TEST_F(FitTextTest, AMenuGetsItsKeysAndLettersBackWhenALongEntryHasGone) {
    QMenu menu;
    QAction* const entry = menu.addAction(QStringLiteral("&Whole image\tHome"));
    menu.addAction(QStringLiteral("Plain"));
    const int width = menu.sizeHint().width();
    QAction* const other =
        menu.addAction(QStringLiteral("A name that is longer than all of these"));
    fitMenu(menu, width);
    EXPECT_EQ(entry->text(), "&Whole image\t");
    EXPECT_LT(menu.font().stretch(), 100);
    delete other;
    fitMenu(menu, width);
    EXPECT_EQ(entry->text(), "&Whole image\tHome");
    EXPECT_EQ(menu.font().stretch(), 100);
}

} // namespace
} // namespace raincast
