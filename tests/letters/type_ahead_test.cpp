// SPDX-License-Identifier: MIT
#include "letters/type_ahead.h"
#include "support/qt_app.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QListWidget>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class TypeAheadTest : public test::GuiTest {
protected:
    QListWidget list;
    quint64 now = 50000;

    TypeAheadTest() {
        for (const char* name :
             {"AL:Birmingham", "AL:Mobile", "KS:Dodge City", "KS:Goodland", "KS:Wichita",
              "MT:Billings", "OK:Tulsa", "TX:K"}) {
            list.addItem(QString::fromLatin1(name));
        }
        new TypeAhead(list);
    }

    // Types with 100 ms between the keys; returns the text of the current row.
    std::string type(const QString& text, Qt::KeyboardModifiers modifiers = {}) {
        for (const QChar unit : text) {
            now += 100;
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, modifiers, QString(unit));
            press.setTimestamp(now);
            QCoreApplication::sendEvent(&list, &press);
        }
        return list.currentItem() != nullptr ? list.currentItem()->text().toStdString() : "";
    }

    void pause() { now += 1000; }
};

TEST_F(TypeAheadTest, TheRowIsFoundByItsBeginning) {
    EXPECT_EQ(type(QStringLiteral("ks")), "KS:Dodge City");
    EXPECT_EQ(type(QStringLiteral(":w")), "KS:Wichita");
    EXPECT_TRUE(list.item(4)->isSelected());
}

TEST_F(TypeAheadTest, TheRowIsFoundByThePartBehindTheColon) {
    EXPECT_EQ(type(QStringLiteral("Tul")), "OK:Tulsa");
    pause();
    EXPECT_EQ(type(QStringLiteral("dodge c")), "KS:Dodge City");
}

TEST_F(TypeAheadTest, APauseStartsAnew) {
    EXPECT_EQ(type(QStringLiteral("bi")), "AL:Birmingham");
    EXPECT_EQ(type(QStringLiteral("ll")), "MT:Billings");
    pause();
    EXPECT_EQ(type(QStringLiteral("w")), "KS:Wichita");
}

TEST_F(TypeAheadTest, ALetterAgainAndAgainGoesThroughTheRows) {
    EXPECT_EQ(type(QStringLiteral("k")), "KS:Dodge City");
    EXPECT_EQ(type(QStringLiteral("k")), "KS:Goodland");
    EXPECT_EQ(type(QStringLiteral("k")), "KS:Wichita");
    EXPECT_EQ(type(QStringLiteral("k")), "TX:K");
    EXPECT_EQ(type(QStringLiteral("k")), "KS:Dodge City");
}

TEST_F(TypeAheadTest, WhatIsFoundNowhereChangesNothing) {
    EXPECT_EQ(type(QStringLiteral("tu")), "OK:Tulsa");
    EXPECT_EQ(type(QStringLiteral("x")), "OK:Tulsa");
}

TEST_F(TypeAheadTest, OtherKeysAreTheLists) {
    list.setCurrentRow(0);
    EXPECT_EQ(type(QStringLiteral("k"), Qt::ControlModifier), "AL:Birmingham");
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, {});
    QCoreApplication::sendEvent(&list, &down);
    EXPECT_EQ(list.currentRow(), 1);
    EXPECT_EQ(type(QStringLiteral(" ")), "AL:Mobile");
}

TEST_F(TypeAheadTest, AnEmptyListIsNoTrouble) {
    list.clear();
    EXPECT_EQ(type(QStringLiteral("k")), "");
}

} // namespace
} // namespace raincast
