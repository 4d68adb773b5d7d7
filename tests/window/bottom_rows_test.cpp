// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/bottom_rows.h"

#include <QLabel>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class BottomRowsTest : public test::GuiTest {
protected:
    BottomRowsTest() {
        client.resize(240, 320);
        rows->add(*one);
        rows->add(*other);
        one->setWordWrap(true);
        test::show(client);
    }

    QWidget client;
    BottomRows* rows = new BottomRows(client);
    QLabel* one = new QLabel("One");
    QLabel* other = new QLabel("Other");
};

TEST_F(BottomRowsTest, WhatIsShownLiesAtTheBottomAsWideAsTheArea) {
    test::settle();
    EXPECT_FALSE(rows->isVisible());
    other->show();
    test::settle();
    EXPECT_TRUE(rows->isVisible());
    const int height = rows->height();
    EXPECT_EQ(rows->geometry(), QRect(0, 320 - height, 240, height));
    EXPECT_EQ(other->geometry(), rows->rect());
    one->show();
    test::settle();
    EXPECT_GT(rows->height(), height);
    EXPECT_EQ(rows->geometry().bottom(), 319);
    EXPECT_LT(one->y(), other->y());
    one->hide();
    other->hide();
    test::settle();
    EXPECT_FALSE(rows->isVisible());
}

TEST_F(BottomRowsTest, LongTextsTakeSeveralLines) {
    one->setText("One");
    one->show();
    test::settle();
    const int height = rows->height();
    one->setText(
        QString("The pages and marks cannot be saved: No space left on device. ").repeated(2)
    );
    test::settle();
    EXPECT_GE(rows->height(), 3 * height);
    client.resize(800, 320);
    test::settle();
    EXPECT_LE(rows->height(), 2 * height);
    EXPECT_EQ(rows->geometry().bottom(), 319);
    EXPECT_EQ(rows->width(), 800);
}

TEST_F(BottomRowsTest, TheyStayOverWhatComesLater) {
    one->show();
    test::settle();
    QWidget page(&client);
    page.setGeometry(client.rect());
    page.show();
    test::settle();
    EXPECT_EQ(client.childAt(120, 318), one);
}

TEST_F(BottomRowsTest, SaysHowHighLastingRowsAre) {
    auto* const lasting = new QLabel("Lasting");
    rows->add(*lasting, BottomRows::Stay::lasting);
    std::vector<int> heights;
    rows->onLastingHeight([&] { heights.push_back(rows->lastingHeight()); });
    one->show();
    test::settle();
    EXPECT_TRUE(heights.empty()) << "it goes soon";
    lasting->show();
    test::settle();
    ASSERT_EQ(heights.size(), 1U);
    EXPECT_EQ(heights[0], lasting->height());
    EXPECT_EQ(rows->height(), lasting->height() + one->height());
    lasting->hide();
    test::settle();
    EXPECT_EQ(heights.back(), 0);
    lasting->show();
    test::settle();
    EXPECT_GT(heights.back(), 0);
    delete lasting;
    test::settle();
    EXPECT_EQ(heights.back(), 0);
}

} // namespace
} // namespace raincast
