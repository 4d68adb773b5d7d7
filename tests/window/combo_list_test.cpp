// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/combo_list.h"

#include <QComboBox>
#include <QTest>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class ComboListTest : public test::GuiTest {
protected:
    QPointer<QComboBox> box = new QComboBox;
    ComboList list;

    ComboListTest() { list.attach(*box); }
    ~ComboListTest() override { delete box; }
};

TEST_F(ComboListTest, RowsHaveATextAndADatum) {
    list.add(QStringLiteral("Velocity"), 3);
    list.add(QStringLiteral("Base Reflectivity"), 5);
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.selected(), -1);
    EXPECT_FALSE(list.selectedDatum().isValid());
    list.select(1);
    EXPECT_EQ(list.selected(), 1);
    EXPECT_EQ(list.selectedText(), QStringLiteral("Base Reflectivity"));
    EXPECT_EQ(list.selectedDatum().toInt(), 5);
    list.clear();
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.selected(), -1);
}

TEST_F(ComboListTest, SelectingWhatIsNoRowSelectsNone) {
    list.add(QStringLiteral("One"));
    for (const int row : {-1, 1, 100}) {
        list.select(0);
        list.select(row);
        EXPECT_EQ(list.selected(), -1);
    }
}

TEST_F(ComboListTest, OnlyThePersonsSelectionIsAnnounced) {
    int announced = 0;
    QObject::connect(box, &QComboBox::currentIndexChanged, box, [&announced] { ++announced; });
    list.add(QStringLiteral("One"));
    list.add(QStringLiteral("Two"));
    list.select(0);
    EXPECT_EQ(announced, 0);
    QTest::keyClick(box, Qt::Key_Down);
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(list.selected(), 1);
}

TEST_F(ComboListTest, OnceItsBoxIsDestroyedItIsEmpty) {
    list.add(QStringLiteral("One"));
    Window::destroyWindow(*box);
    list.add(QStringLiteral("Two"));
    list.select(0);
    list.clear();
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.selected(), -1);
    EXPECT_EQ(list.selectedText(), QString());
}

} // namespace
} // namespace raincast
