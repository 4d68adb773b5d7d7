// SPDX-License-Identifier: MIT
#include "fitting/fit_controls.h"
#include "support/qt_app.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr int kRow = 30;

/// Controls of a form, 200 pixels wide, in rows of 30.
class FitControlsTest : public test::GuiTest {
protected:
    template<typename Control>
    Control& add(Control* control, int row, int left, int right) {
        control->setParent(&form);
        control->setGeometry(left, row * kRow, right - left, kRow - 4);
        controls.push_back(control);
        return *control;
    }

    QWidget form;
    std::vector<QWidget*> controls;
};

TEST_F(FitControlsTest, WhatFitsStaysAsItIs) {
    const auto& label = add(new QLabel("&At:"), 0, 0, 60);
    const auto& box = add(new QCheckBox("On"), 1, 0, 200);
    const QRect places[] = {label.geometry(), box.geometry()};
    EXPECT_EQ(fitControls(controls), 0);
    EXPECT_EQ(label.geometry(), places[0]);
    EXPECT_EQ(box.geometry(), places[1]);
}

TEST_F(FitControlsTest, ALabelTakesFromTheFieldBesideIt) {
    auto& label = add(new QLabel("&Equipment:"), 0, 0, 60);
    auto& field = add(new QLineEdit, 0, 64, 200);
    label.setBuddy(&field);
    EXPECT_EQ(fitControls(controls), 0);
    EXPECT_GE(label.width(), label.sizeHint().width());
    EXPECT_EQ(field.x() - label.geometry().right(), 5);
    EXPECT_EQ(field.geometry().right(), 199);
    EXPECT_EQ(label.text(), "&Equipment:");
}

TEST_F(FitControlsTest, ALongTextGetsLinesAndTheRowsBelowMoveDown) {
    const auto& box = add(new QCheckBox("&Keep all pictures of the stations nearby"), 0, 0, 120);
    const auto& below = add(new QPushButton("&Go"), 1, 0, 80);
    const auto& last = add(new QLineEdit, 2, 0, 120);
    const int more = fitControls(controls);
    EXPECT_GT(more, 0);
    EXPECT_TRUE(box.text().contains(u'\n')) << qPrintable(box.text());
    EXPECT_EQ(box.text().count(u'&'), 1);
    EXPECT_GE(box.width(), box.sizeHint().width());
    EXPECT_GE(box.height(), box.sizeHint().height());
    EXPECT_EQ(below.y(), kRow + more);
    EXPECT_EQ(last.y(), 2 * kRow + more);
    EXPECT_EQ(last.height(), kRow - 4);
}

TEST_F(FitControlsTest, AListBesideRowsGrowsWithThem) {
    auto& list = add(new QListWidget, 0, 0, 90);
    list.resize(90, 3 * kRow);
    add(new QPushButton("Up"), 0, 100, 200);
    const auto& wide = add(new QPushButton("Put everything back as before"), 1, 100, 200);
    const auto& below = add(new QPushButton("Down"), 2, 100, 200);
    const int more = fitControls(controls);
    EXPECT_GT(more, 0);
    EXPECT_EQ(list.y(), 0);
    EXPECT_EQ(list.height(), 3 * kRow + more);
    EXPECT_EQ(wide.y(), kRow);
    EXPECT_EQ(wide.height(), kRow - 4 + more);
    EXPECT_EQ(below.y(), 2 * kRow + more);
}

TEST_F(FitControlsTest, AWordThatCannotBeBrokenGetsNarrowLetters) {
    const auto& button = add(new QPushButton("Wiederherstellen"), 0, 0, 90);
    EXPECT_EQ(fitControls(controls), 0);
    EXPECT_EQ(button.text(), "Wiederherstellen");
    EXPECT_LT(button.font().stretch(), 100);
    EXPECT_LT(button.fontMetrics().horizontalAdvance(button.text()), 90);
}

TEST_F(FitControlsTest, ALabelWithSeveralLinesGrows) {
    auto& label =
        add(new QLabel("Some words of which there are many, and then still more"), 0, 0, 100);
    label.setWordWrap(true);
    const int more = fitControls(controls);
    EXPECT_GT(more, 0);
    EXPECT_GE(label.height(), label.heightForWidth(100));
    EXPECT_FALSE(label.text().contains(u'\n'));
}

} // namespace
} // namespace raincast
