// SPDX-License-Identifier: MIT
#include "map/marks_dialog.h"
#include "map_page.h"
#include "support/clean_layout.h"
#include "support/dialog_script.h"
#include "support/serial_bytes.h"
#include "window/row_delegate.h"
#include "window/screen_metrics.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include <gmock/gmock.h>

#include <cstring>

namespace raincast {
namespace {

using test::positionOf;
using testing::ElementsAre;
using testing::IsEmpty;

const QString kCaption = QStringLiteral("Marks");
const GeoPosition kHere = positionOf(300, 275);

QPushButton& button(const QDialog& dialog, const char16_t* text) {
    for (auto* candidate : dialog.findChildren<QPushButton*>()) {
        if (candidate->text().remove(u'&') == QString::fromUtf16(text)) {
            return *candidate;
        }
    }
    throw std::runtime_error("no such button");
}

void press(const QDialog& dialog, const char16_t* text) {
    QPushButton& found = button(dialog, text);
    EXPECT_TRUE(found.isEnabled()) << qPrintable(found.text());
    test::click(found, found.rect().center());
}

QListWidget& listOf(const QDialog& dialog) {
    return *dialog.findChild<QListWidget*>();
}

void chooseRow(const QDialog& dialog, int row) {
    QListWidget& list = listOf(dialog);
    list.scrollToItem(list.item(row));
    test::click(*list.viewport(), list.visualItemRect(list.item(row)).center());
}

// The rows, the selected one in brackets, "*" behind the target.
test::Log rows(const QDialog& dialog) {
    test::Log texts;
    const QListWidget& list = listOf(dialog);
    for (int row = 0; row < list.count(); ++row) {
        const QListWidgetItem& item = *list.item(row);
        const std::string text = item.text().toStdString() + (item.icon().isNull() ? "" : "*");
        texts.push_back(item.isSelected() ? "[" + text + "]" : text);
    }
    return texts;
}

test::Log enabledButtons(const QDialog& dialog) {
    test::Log texts;
    for (const auto* candidate : dialog.findChildren<QPushButton*>()) {
        if (candidate->isEnabled()) {
            texts.push_back(candidate->text().remove(u'&').toStdString());
        }
    }
    return texts;
}

class DlgMarksTest : public test::GuiTest, protected test::SharedMapState {
protected:
    DlgMarksTest() {
        addMark(330, 275, QStringLiteral("Far"));
        addMark(301, 275, QStringLiteral("Near"));
        addMark(300, 265, QStringLiteral("Bay"));
    }
    ~DlgMarksTest() override { ScreenMetrics::use(std::nullopt); }

    int run(test::DialogScript::Step step, const std::optional<GeoPosition>& from = kHere) {
        script.expect(kCaption, std::move(step));
        MarksDialog dialog(marks, nullptr, from, goTo);
        return dialog.run(nullptr);
    }
    const COverlayMark& mark(int index) const { return *std::next(marks.marks().begin(), index); }

    std::optional<GeoPosition> gone;
    bool onMap = true;
    MarksDialog::GoTo goTo = [this](GeoPosition place) {
        gone = place;
        return onMap;
    };
    test::DialogScript script;
};

TEST_F(DlgMarksTest, ListsTheMarksWithTheNearestFirst) {
    EXPECT_EQ(
        run([](QDialog& dialog) {
            EXPECT_THAT(rows(dialog), ElementsAre("[Near]", "Bay", "Far"));
            test::Log ways;
            for (int row = 0; row < 3; ++row) {
                ways.push_back(listOf(dialog)
                                   .item(row)
                                   ->data(RowDelegate::kRemarkRole)
                                   .toString()
                                   .toStdString());
            }
            EXPECT_THAT(ways, ElementsAre("0.54 Mi  090°", "6.9 Mi  000°", "16.3 Mi  090°"));
        }),
        Dialog::kCancel
    );
}

TEST_F(DlgMarksTest, WithoutAPositionThereAreNoDistances) {
    run(
        [](QDialog& dialog) {
            EXPECT_THAT(rows(dialog), ElementsAre("[Far]", "Near", "Bay"));
            EXPECT_FALSE(listOf(dialog).item(0)->data(RowDelegate::kRemarkRole).isValid());
        },
        std::nullopt
    );
}

TEST_F(DlgMarksTest, DistancesAreInTheUsersUnits) {
    use(CUnits::kNauticalMiles);
    run([](QDialog& dialog) {
        EXPECT_EQ(
            listOf(dialog).item(1)->data(RowDelegate::kRemarkRole), QStringLiteral("6.0 NM  000°")
        );
    });
}

TEST_F(DlgMarksTest, ButtonsThatCannotWorkAreGreyed) {
    run([this](QDialog& dialog) {
        EXPECT_THAT(
            enabledButtons(dialog),
            ElementsAre("Go to", "Set as Target", "Rename", "Delete", "Close")
        );
        press(dialog, u"Set as Target");
        EXPECT_THAT(
            enabledButtons(dialog),
            ElementsAre("Go to", "Clear Target", "Rename", "Delete", "Close")
        );
        chooseRow(dialog, 1);
        EXPECT_THAT(
            enabledButtons(dialog),
            ElementsAre("Go to", "Set as Target", "Clear Target", "Rename", "Delete", "Close")
        );
        listOf(dialog).clearSelection();
        EXPECT_THAT(enabledButtons(dialog), ElementsAre("Clear Target", "Close"));
    });
    marks.clear();
    run([](QDialog& dialog) { EXPECT_THAT(enabledButtons(dialog), ElementsAre("Close")); });
}

TEST_F(DlgMarksTest, WithoutAMapThereIsNowhereToGo) {
    goTo = nullptr;
    run([](QDialog& dialog) {
        EXPECT_FALSE(button(dialog, u"Go to").isEnabled());
        QTest::keyClick(&listOf(dialog), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(DlgMarksTest, GoesToTheChosenMark) {
    EXPECT_EQ(
        run([](QDialog& dialog) {
            chooseRow(dialog, 1);
            press(dialog, u"Go to");
        }),
        Dialog::kOk
    );
    EXPECT_EQ(gone, mark(2).position());
    gone.reset();
    EXPECT_EQ(
        run([](QDialog& dialog) {
            QListWidget& list = listOf(dialog);
            test::doubleClick(*list.viewport(), list.visualItemRect(list.item(2)).center());
        }),
        Dialog::kOk
    );
    EXPECT_EQ(gone, mark(0).position());
}

TEST_F(DlgMarksTest, SaysThatAMarkIsNotOnTheMap) {
    onMap = false;
    EXPECT_EQ(
        run([this](QDialog& dialog) {
            script.expect(kCaption, [](QDialog& message) {
                EXPECT_EQ(message.findChild<QListWidget*>(), nullptr);
            });
            press(dialog, u"Go to");
            EXPECT_TRUE(dialog.isVisible());
        }),
        Dialog::kCancel
    );
}

// A file of pages may hold such marks, which are the user's to keep or to delete.
TEST_F(DlgMarksTest, AMarkThatIsNowhereCanBeNamedAndDeleted) {
    marks.clear();
    CMarkManager other;
    other.add({0, 0}, QStringLiteral("Lost"));
    QByteArray file = test::written(other);
    const double beyond = 90.5;
    std::memcpy(file.data() + file.size() - 20, &beyond, sizeof beyond);
    ASSERT_TRUE(test::read(marks, file));
    ASSERT_EQ(mark(0).latitude, 90.5);
    run([this](QDialog& dialog) {
        EXPECT_THAT(rows(dialog), ElementsAre("[Lost]"));
        EXPECT_THAT(enabledButtons(dialog), ElementsAre("Rename", "Delete", "Close"));
        EXPECT_EQ(
            listOf(dialog).item(0)->data(RowDelegate::kRemarkRole), QStringLiteral("not on earth")
        );
        QListWidget& list = listOf(dialog);
        QTest::keyClick(&list, Qt::Key_Return);
        test::doubleClick(*list.viewport(), list.visualItemRect(list.item(0)).center());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(gone);
        press(dialog, u"Delete");
    });
    EXPECT_THAT(markNames(), IsEmpty());
}

TEST_F(DlgMarksTest, TheTargetIsMarkedInTheList) {
    run([this](QDialog& dialog) {
        chooseRow(dialog, 2);
        press(dialog, u"Set as Target");
        EXPECT_THAT(rows(dialog), ElementsAre("Near", "Bay", "[Far*]"));
        EXPECT_TRUE(marks.isTarget(mark(0)));
        EXPECT_EQ(marks.target().name, QStringLiteral("Far"));
        EXPECT_EQ(
            listOf(dialog).item(2)->data(Qt::AccessibleTextRole), QStringLiteral("Far, target")
        );
        chooseRow(dialog, 0);
        press(dialog, u"Set as Target");
        EXPECT_THAT(rows(dialog), ElementsAre("[Near*]", "Bay", "Far"));
    });
    run([this](QDialog& dialog) {
        EXPECT_THAT(rows(dialog), ElementsAre("[Near*]", "Bay", "Far"));
        press(dialog, u"Clear Target");
        EXPECT_THAT(rows(dialog), ElementsAre("[Near]", "Bay", "Far"));
        EXPECT_FALSE(marks.hasTarget());
    });
}

// The line that the cross-track offset is measured from starts where the target is chosen.
TEST_F(DlgMarksTest, ChoosingATargetStartsItsLineAnew) {
    const auto choose = [this] {
        run([](QDialog& dialog) {
            chooseRow(dialog, 2);
            press(dialog, u"Set as Target");
        });
    };
    choose();
    test::publish(300, 275);
    test::publish(310, 270);
    ASSERT_NE(marks.navigation(), nullptr);
    EXPECT_LT(marks.navigation()->crossTrack, -5000);
    run([](QDialog& dialog) { press(dialog, u"Clear Target"); });
    choose();
    test::publish(310, 270);
    EXPECT_EQ(marks.navigation()->crossTrack, 0);
}

TEST_F(DlgMarksTest, AMarkIsRenamed) {
    marks.setTarget(mark(1));
    run([this](QDialog& dialog) {
        script.expect(QStringLiteral("Rename"), [](QDialog& rename) {
            auto* const edit = rename.findChild<QLineEdit*>();
            EXPECT_EQ(edit->text(), QStringLiteral("Near"));
            QTest::keyClicks(edit, QStringLiteral(" Closest "));
            QTest::keyClick(&rename, Qt::Key_Return);
        });
        press(dialog, u"Rename");
        EXPECT_THAT(rows(dialog), ElementsAre("[Closest*]", "Bay", "Far"));
        EXPECT_EQ(marks.target().name, QStringLiteral("Closest"));
        script.expect(QStringLiteral("Rename"), [](QDialog& rename) {
            QTest::keyClicks(rename.findChild<QLineEdit*>(), QStringLiteral("Not this"));
            QTest::keyClick(&rename, Qt::Key_Escape);
        });
        press(dialog, u"Rename");
        script.expect(QStringLiteral("Rename"), [](QDialog& rename) {
            rename.findChild<QLineEdit*>()->clear();
            QTest::keyClick(&rename, Qt::Key_Return);
        });
        press(dialog, u"Rename");
    });
    EXPECT_THAT(markNames(), ElementsAre("Far", "Closest", "Bay"));
}

TEST_F(DlgMarksTest, AMarkIsDeletedAndItsNeighbourSelected) {
    marks.setTarget(mark(2));
    run([this](QDialog& dialog) {
        chooseRow(dialog, 1);
        press(dialog, u"Delete");
        EXPECT_THAT(rows(dialog), ElementsAre("Near", "[Far]"));
        EXPECT_FALSE(marks.hasTarget());
        EXPECT_FALSE(button(dialog, u"Clear Target").isEnabled());
        press(dialog, u"Delete");
        EXPECT_THAT(rows(dialog), ElementsAre("[Near]"));
        press(dialog, u"Delete");
        EXPECT_THAT(rows(dialog), IsEmpty());
        EXPECT_THAT(enabledButtons(dialog), ElementsAre("Close"));
    });
    EXPECT_THAT(markNames(), IsEmpty());
}

TEST_F(DlgMarksTest, TypingFindsAMark) {
    run([](QDialog& dialog) {
        QTest::keyClicks(&listOf(dialog), QStringLiteral("fa"));
        EXPECT_THAT(rows(dialog), ElementsAre("Near", "Bay", "[Far]"));
    });
}

TEST_F(DlgMarksTest, ANameFromADamagedFileIsALine) {
    marks.rename(mark(1), QString());
    marks.rename(mark(2), QStringLiteral("a\nb"));
    run([](QDialog& dialog) { EXPECT_THAT(rows(dialog), ElementsAre("[Unnamed]", "a b", "Far")); });
}

TEST_F(DlgMarksTest, TenThousandMarksAreNotSluggish) {
    marks.clear();
    for (int i = 0; i < 10'000; ++i) {
        addMark(i % 600, i / 600, QStringLiteral("Mark %1").arg(i));
    }
    run([this](QDialog& dialog) {
        EXPECT_EQ(listOf(dialog).count(), 10'000);
        chooseRow(dialog, 9'999);
        press(dialog, u"Set as Target");
        press(dialog, u"Delete");
        EXPECT_EQ(listOf(dialog).count(), 9'999);
        EXPECT_FALSE(marks.hasTarget());
    });
}

// --- Layout -----------------------------------------------------------------------------------

TEST_F(DlgMarksTest, FitsASmallScreenAndUsesALargeOne) {
    ScreenMetrics screen;
    screen.logPixelsY = 96;
    screen.available = {240, 320};
    ScreenMetrics::use(screen);
    run([](QDialog& open) {
        EXPECT_LE(open.width(), 240);
        EXPECT_LE(open.height(), 320);
        test::expectCleanLayout(open);
        EXPECT_EQ(open.findChild<QScrollArea*>()->verticalScrollBar()->maximum(), 0);
        EXPECT_EQ(open.findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0);
        EXPECT_GT(listOf(open).height(), 100);
    });
    screen.available = {1000, 800};
    ScreenMetrics::use(screen);
    run([](QDialog& open) {
        const QSize before = listOf(open).size();
        open.resize(open.size() + QSize(200, 150));
        test::settle();
        EXPECT_EQ(listOf(open).width(), before.width() + 200);
        EXPECT_GE(listOf(open).height(), before.height() + 150);
        test::expectCleanLayout(open);
        open.resize(10, 10);
        test::settle();
        test::expectCleanLayout(open);
    });
}

} // namespace
} // namespace raincast
