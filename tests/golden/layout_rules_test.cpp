// SPDX-License-Identifier: MIT
// That the rules find what they are there for.
#include "golden_test.h"
#include "layout_rules.h"
#include "window/screen_metrics.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>

#include <gmock/gmock.h>

namespace raincast::test {
namespace {

using ::testing::HasSubstr;

class LayoutRules : public GoldenTest {
protected:
    LayoutRules() {
        window.resize(220, 120);
        window.show();
    }

    /// Puts a control on the window.
    template<typename Control>
    Control& add(QRect place, const QString& text = {}) {
        auto* control = new Control(&window);
        if constexpr (requires { control->setText(text); }) {
            control->setText(text);
        }
        control->setGeometry(place);
        control->show();
        return *control;
    }
    [[nodiscard]] std::string complaints() const {
        return complaintsAbout(window).join(u'\n').toStdString();
    }
    /// A height that a finger hits in every run.
    const int high = qMax(40, ScreenMetrics::current().touchHeight());
    QDialog window;
};

TEST_F(LayoutRules, NothingIsWrongWithATidyWindow) {
    add<QLabel>({0, 0, 100, 30}, "Number:");
    add<QLineEdit>({110, 0, 100, high}, "6");
    add<QPushButton>({0, 50, 100, high}, "OK");
    add<QCheckBox>({110, 50, 100, high}, "Animate");
    EXPECT_EQ(complaints(), "");
}

TEST_F(LayoutRules, ControlsOverlap) {
    add<QPushButton>({0, 0, 100, high}, "OK");
    add<QPushButton>({99, 10, 100, high}, "Cancel");
    EXPECT_THAT(complaints(), HasSubstr("\"OK\" overlaps QPushButton \"Cancel\""));
}

TEST_F(LayoutRules, ATextIsCut) {
    const QString text = QStringLiteral("A rather long text");
    const QRect narrow(0, 0, 50, high);
    QWidget* const controls[] = {
        &add<QLabel>(narrow, text), &add<QPushButton>(narrow, text), &add<QCheckBox>(narrow, text),
        &add<QLineEdit>(narrow, text)};
    for (QWidget* one : controls) {
        for (QWidget* other : controls) {
            other->setVisible(other == one);
        }
        EXPECT_THAT(complaints(), HasSubstr("is cut")) << one->metaObject()->className();
    }
}

TEST_F(LayoutRules, AWrappedTextIsTooHigh) {
    auto& label = add<QLabel>({0, 0, 60, 20}, "A text of more than one line");
    label.setWordWrap(true);
    EXPECT_THAT(complaints(), HasSubstr("is cut"));
}

TEST_F(LayoutRules, AnEntryOfADropDownListIsCut) {
    auto& combo = add<QComboBox>({0, 0, 80, high});
    combo.addItems({"Mi", "Nautical miles, of 1852 metres"});
    EXPECT_THAT(complaints(), HasSubstr("is cut"));
}

TEST_F(LayoutRules, ARowOfAListIsCut) {
    add<QListWidget>({0, 0, 80, 100}).addItem("Nautical miles, of 1852 metres");
    EXPECT_THAT(complaints(), HasSubstr("row 0 is cut"));
}

TEST_F(LayoutRules, AControlLiesOutside) {
    add<QPushButton>({200, 0, 100, high}, "OK");
    EXPECT_THAT(complaints(), HasSubstr("lies outside"));
}

TEST_F(LayoutRules, WhatIsScrolledToIsFoundUnlessItIsSideways) {
    auto& area = add<QScrollArea>({0, 0, 200, 100});
    auto* const content = new QWidget;
    content->resize(150, 300);
    (new QPushButton("OK", content))->setGeometry(0, 250, 100, high);
    area.setWidget(content);
    EXPECT_EQ(complaints(), "");
    content->resize(300, 300);
    EXPECT_THAT(complaints(), HasSubstr("sideways"));
    area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    content->resize(150, 240);
    EXPECT_THAT(complaints(), HasSubstr("lies outside"));
}

TEST_F(LayoutRules, TheWindowIsLargerThanTheScreen) {
    window.resize(ScreenMetrics::current().available + QSize(0, 10));
    EXPECT_THAT(complaints(), HasSubstr("larger than the screen"));
}

TEST_F(LayoutRules, AFingerNeedsSevenMillimetres) {
    add<QPushButton>({0, 0, 100, 20}, "OK");
    const bool touch = ScreenMetrics::current().touch;
    EXPECT_EQ(complaints().find("a finger needs") != std::string::npos, touch) << complaints();
}

} // namespace
} // namespace raincast::test
