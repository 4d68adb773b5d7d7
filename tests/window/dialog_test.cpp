// SPDX-License-Identifier: MIT
#include "core/resource_module.h"
#include "support/clean_layout.h"
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "window/dialog.h"
#include "window/dialog_template.h"
#include "window/dialog_widget.h"
#include "window/modal.h"
#include "window/screen_metrics.h"
#include "window/screen_style.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QScroller>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace raincast {
namespace {

using test::DialogScript;
using testing::ElementsAre;
using testing::IsEmpty;

// A dialog of lists and buttons that arranges itself, and one that does not.
constexpr int kListDialog = 4901;
constexpr int kFormDialog = 4902;
constexpr int kTextDialog = 4903;
constexpr int kList = 1043;
constexpr int kAdd = 1038;
constexpr int kName = 1044;
constexpr int kAnimate = 1010;
constexpr int kProduct = 1011;
constexpr int kHint = 1014;

const QString kListCaption = QStringLiteral("List");
const QString kFormCaption = QStringLiteral("Form");

const DialogTemplateRecord listDialog{
    {kListDialog,
     kListCaption,
     {120, 100},
     {
         {kList, ControlKind::listBox, {}, {2, 2, 70, 96}},
         {Dialog::kOk, ControlKind::pushButton, QStringLiteral("Show"), {74, 2, 44, 14}},
         {kAdd, ControlKind::pushButton, QStringLiteral("Add..."), {74, 18, 44, 14}},
     },
     {100, 60}}};

const DialogTemplateRecord formDialog{
    {kFormDialog,
     kFormCaption,
     {130, 76},
     {
         {0, ControlKind::label, QStringLiteral("&Name:"), {4, 4, 40, 14}},
         {kName, ControlKind::edit, {}, {46, 4, 80, 14}},
         {kAnimate, ControlKind::checkBox, QStringLiteral("Enable Animation"), {4, 22, 122, 14}},
         {0, ControlKind::label, QStringLiteral("&Product:"), {4, 40, 40, 14}},
         {kProduct, ControlKind::comboBox, {}, {46, 40, 80, 14}},
         {kHint, ControlKind::label, QStringLiteral("Shown at the bottom"), {4, 58, 122, 14}},
         {Dialog::kCancel, ControlKind::pushButton, QStringLiteral("Cancel"), {}},
     },
     {}}};

const DialogTemplateRecord textDialog{
    {kTextDialog,
     QStringLiteral("Text"),
     {60, 20},
     {{kHint,
       ControlKind::label,
       QStringLiteral("A text of several lines that is much longer than its dialog's units have "
                      "room for at first, so that they must grow."),
       {2, 2, 56, 16}}},
     {}}};

using Log = std::vector<std::string>;

class NotingDialog : public Dialog {
public:
    using Dialog::Dialog;

    Log log;
    std::function<void(NotingDialog&)> initialising;
    bool okStays = false;

    bool onInitialise() override {
        log.push_back("initialise");
        if (initialising) {
            initialising(*this);
        }
        return Dialog::onInitialise();
    }
    void onOk() override {
        log.push_back("ok");
        if (!okStays) {
            Dialog::onOk();
        }
    }
    void onCancel() override {
        log.push_back("cancel");
        Dialog::onCancel();
    }
    void onDestroy() override { log.push_back("destroy"); }
    void onCommand(int id, QWidget* sender, int notification) override {
        Window::onCommand(id, sender, notification);
        if (id != kOk && id != kCancel) {
            log.push_back("first " + std::to_string(id));
        }
    }
    void onDialogCommand(int id, QWidget* sender, int notification) override {
        if (id != kOk && id != kCancel) {
            EXPECT_EQ(sender, control(id));
            log.push_back("command " + std::to_string(id) + " " + std::to_string(notification));
        }
        Dialog::onDialogCommand(id, sender, notification);
    }
    void onSize(int width, int height) override {
        if (arranges) {
            anchor(kOk, anchorRight | anchorTop);
            placeNextTo(kOk, kAdd, below, sameColumn);
            anchor(kAdd, anchorRight);
            placeNextTo(kOk, kList, sameRow, leftOf, false, true);
            lastSize = {width, height};
        }
    }

    bool arranges = false;
    QSize lastSize;

    using Dialog::anchor;
    using Dialog::control;
    using Dialog::placeNextTo;
    using Dialog::setCaption;
    using Dialog::setNumber;
    using Dialog::setText;
    using Dialog::text;
};

QWidget* child(const QDialog& dialog, int id) {
    return dialog.findChild<QWidget*>(QString::number(id));
}

void clickOn(const QDialog& dialog, int id) {
    QWidget* const control = child(dialog, id);
    ASSERT_NE(control, nullptr);
    test::click(*control, control->rect().center());
}

class DialogTest : public test::GuiTest {
protected:
    DialogScript script;

    ~DialogTest() override {
        ScreenMetrics::use(std::nullopt);
        Modal::neverAsk(false);
        Modal::forgetEnd();
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    }
};

TEST_F(DialogTest, ADialogWithoutATemplateEndsAtOnceAsCancelled) {
    NotingDialog dialog(0);
    EXPECT_EQ(dialog.run(nullptr), 2);
    NotingDialog unknown(4999);
    EXPECT_EQ(unknown.run(nullptr), 2);
    EXPECT_THAT(dialog.log, IsEmpty());
    EXPECT_THAT(unknown.log, IsEmpty());
}

TEST_F(DialogTest, ButtonOneEndsItWithOne) {
    script.expect(kListCaption, [](QDialog& open) { clickOn(open, Dialog::kOk); });
    NotingDialog dialog(kListDialog);
    EXPECT_EQ(dialog.run(nullptr), 1);
    EXPECT_THAT(dialog.log, ElementsAre("initialise", "ok", "destroy"));
    EXPECT_EQ(dialog.widget(), nullptr);
}

TEST_F(DialogTest, CancelEscapeAndClosingEndItWithTwo) {
    const std::function<void(QDialog&)> ways[] = {
        [](QDialog& open) { clickOn(open, Dialog::kCancel); },
        [](QDialog& open) { QTest::keyClick(&open, Qt::Key_Escape); },
        [](QDialog& open) { open.close(); },
    };
    for (const auto& way : ways) {
        script.expect(kFormCaption, way);
        NotingDialog dialog(kFormDialog);
        EXPECT_EQ(dialog.run(nullptr), 2);
        EXPECT_THAT(dialog.log, ElementsAre("initialise", "cancel", "destroy"));
    }
}

TEST_F(DialogTest, EnterIsCommandOneFromAnyField) {
    for (const int field : {kName, kAnimate, kProduct}) {
        script.expect(kFormCaption, [field](QDialog& open) {
            child(open, field)->setFocus();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        });
        NotingDialog dialog(kFormDialog);
        EXPECT_EQ(dialog.run(nullptr), 1) << field;
    }
    script.expect(kListCaption, [](QDialog& open) {
        static_cast<QListWidget*>(child(open, kList))->addItem(QStringLiteral("Row"));
        static_cast<QListWidget*>(child(open, kList))->setCurrentRow(0);
        child(open, kList)->setFocus();
        QTest::keyClick(child(open, kList), Qt::Key_Enter);
    });
    NotingDialog dialog(kListDialog);
    EXPECT_EQ(dialog.run(nullptr), 1);
}

TEST_F(DialogTest, EnterDoesNothingWhileButtonOneIsDisabled) {
    script.expect(kListCaption, [](QDialog& open) {
        child(open, Dialog::kOk)->setEnabled(false);
        QTest::keyClick(child(open, kList), Qt::Key_Return);
    });
    NotingDialog dialog(kListDialog);
    EXPECT_EQ(dialog.run(nullptr), 2);
    EXPECT_THAT(dialog.log, ElementsAre("initialise", "cancel", "destroy"));
}

TEST_F(DialogTest, EnterOnAFocusedButtonIsThatButtons) {
    script.expect(kListCaption, [](QDialog& open) {
        child(open, kAdd)->setFocus();
        QTest::keyClick(child(open, kAdd), Qt::Key_Return);
    });
    NotingDialog dialog(kListDialog);
    EXPECT_EQ(dialog.run(nullptr), 2);
    EXPECT_THAT(dialog.log, testing::Contains("command 1038 0"));
}

TEST_F(DialogTest, AnOkThatDoesNotEndItKeepsItOpen) {
    script.expect(kListCaption, [](QDialog& open) {
        clickOn(open, Dialog::kOk);
        EXPECT_TRUE(open.isVisible());
    });
    NotingDialog dialog(kListDialog);
    dialog.okStays = true;
    EXPECT_EQ(dialog.run(nullptr), 2);
}

TEST_F(DialogTest, WithTheDoneFlagAMissingButtonOneIsMade) {
    script.expect(kFormCaption, [](QDialog& open) {
        auto* ok = qobject_cast<QPushButton*>(child(open, Dialog::kOk));
        ASSERT_NE(ok, nullptr);
        EXPECT_EQ(ok->text(), QStringLiteral("&OK"));
        EXPECT_TRUE(ok->isDefault());
        // The template's cancel button stands beside it.
        const QWidget* cancel = child(open, Dialog::kCancel);
        EXPECT_EQ(cancel->mapTo(&open, QPoint()).y(), ok->mapTo(&open, QPoint()).y());
        clickOn(open, Dialog::kOk);
    });
    NotingDialog dialog(kFormDialog);
    EXPECT_EQ(dialog.run(nullptr), 1);
}

TEST_F(DialogTest, WithoutTheDoneFlagNothingIsMade) {
    script.expect(kFormCaption, [](QDialog& open) {
        EXPECT_EQ(child(open, Dialog::kOk), nullptr);
        QTest::keyClick(&open, Qt::Key_Return); // still command 1
    });
    NotingDialog dialog(kFormDialog, Dialog::kDefaultFlags & ~Dialog::kDoneButton);
    EXPECT_EQ(dialog.run(nullptr), 1);
}

TEST_F(DialogTest, ADialogThatHasAButtonOneGetsNoOther) {
    script.expect(kListCaption, [](QDialog& open) {
        EXPECT_EQ(open.findChildren<QWidget*>(QStringLiteral("1")).size(), 1);
        EXPECT_EQ(qobject_cast<QPushButton*>(child(open, 1))->text(), QStringLiteral("&Show"));
    });
    EXPECT_EQ(NotingDialog(kListDialog).run(nullptr), 2);
}

TEST_F(DialogTest, UsingAControlSendsItsCommandWithWhatHappened) {
    script.expect(kListCaption, [](QDialog& open) {
        auto* list = static_cast<QListWidget*>(child(open, kList));
        const QPoint row = list->visualItemRect(list->item(1)).center();
        test::click(*list->viewport(), row);
        clickOn(open, kAdd);
    });
    NotingDialog dialog(kListDialog);
    dialog.initialising = [](NotingDialog& d) {
        d.control<QListWidget>(kList)->addItems({QStringLiteral("One"), QStringLiteral("Two")});
        d.control<QListWidget>(kList)->setCurrentRow(0);
        d.log.clear();
    };
    EXPECT_EQ(dialog.run(nullptr), 2);
    EXPECT_THAT(
        dialog.log,
        ElementsAre(
            "first 1043", "command 1043 1", "first 1038", "command 1038 0", "cancel", "destroy"
        )
    );
}

TEST_F(DialogTest, OfAListTheRowWithTheKeyboardIsTheSelectedOne) {
    script.expect(kListCaption, [](QDialog& open) {
        auto* list = static_cast<QListWidget*>(child(open, kList));
        ASSERT_TRUE(list->hasFocus());
        EXPECT_TRUE(list->item(0)->isSelected());
        for (const auto keys : {Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier}) {
            for (const int row : {2, 2, 0, 1}) {
                test::click(
                    *list->viewport(), list->visualItemRect(list->item(row)).center(), keys
                );
                EXPECT_EQ(list->currentRow(), row);
                EXPECT_EQ(list->selectedItems(), QList({list->item(row)}));
            }
            for (const auto key : {Qt::Key_Space, Qt::Key_Up, Qt::Key_End, Qt::Key_Space}) {
                QTest::keyClick(open.windowHandle(), key, keys);
                EXPECT_EQ(list->selectedItems(), QList({list->currentItem()}));
            }
        }
        // Below the rows there is nothing to press.
        test::click(*list->viewport(), list->viewport()->rect().bottomLeft() - QPoint(-3, 3));
        EXPECT_EQ(list->selectedItems(), QList({list->currentItem()}));
        QTest::keyClick(open.windowHandle(), Qt::Key_Return);
        EXPECT_FALSE(open.isVisible());
    });
    NotingDialog dialog(kListDialog);
    dialog.initialising = [](NotingDialog& d) {
        d.control<QListWidget>(kList)->addItems({"One", "Two", "Three"});
    };
    EXPECT_EQ(dialog.run(nullptr), 1);
}

TEST_F(DialogTest, FieldsTellTheirChangesToo) {
    script.expect(kFormCaption, [](QDialog& open) {
        QTest::keyClicks(child(open, kName), QStringLiteral("A"));
        clickOn(open, kAnimate);
        QTest::keyClick(child(open, kProduct), Qt::Key_Down);
    });
    NotingDialog dialog(kFormDialog);
    dialog.initialising = [](NotingDialog& d) {
        d.control<QComboBox>(kProduct)->addItems({QStringLiteral("x"), QStringLiteral("y")});
        d.log.clear();
    };
    EXPECT_EQ(dialog.run(nullptr), 2);
    EXPECT_THAT(
        dialog.log, ElementsAre(
                        "first 1044", "command 1044 768", "first 1010", "command 1010 0",
                        "first 1011", "command 1011 1", "cancel", "destroy"
                    )
    );
}

TEST_F(DialogTest, OtherMessagesAreOfferedAndMayBeKept) {
    class Keeping : public Dialog {
    public:
        using Dialog::Dialog;
        bool onOtherMessage(QEvent& event) override {
            return event.type() == QEvent::KeyPress; // Esc does not close this one
        }
    };
    script.expect(kListCaption, [](QDialog& open) {
        QTest::keyClick(&open, Qt::Key_Escape);
        EXPECT_TRUE(open.isVisible());
    });
    EXPECT_EQ(Keeping(kListDialog).run(nullptr), 2);
}

TEST_F(DialogTest, OneThatEndsWhileInitialisingIsNeverShown) {
    NotingDialog dialog(kListDialog);
    dialog.initialising = [](NotingDialog& d) { d.end(7); };
    EXPECT_EQ(dialog.run(nullptr), 7);
    EXPECT_THAT(dialog.log, ElementsAre("initialise", "destroy"));
}

TEST_F(DialogTest, ADialogObjectCanRunAgain) {
    NotingDialog dialog(kListDialog);
    script.expect(kListCaption, [](QDialog& open) { clickOn(open, Dialog::kOk); });
    EXPECT_EQ(dialog.run(nullptr), 1);
    script.expect(kListCaption);
    EXPECT_EQ(dialog.run(nullptr), 2);
}

TEST_F(DialogTest, TheCaptionCanBeReplaced) {
    script.expect(QStringLiteral("Select Page Type"));
    NotingDialog dialog(kListDialog);
    dialog.initialising = [](NotingDialog& d) { d.setCaption(QStringLiteral("Select Page Type")); };
    EXPECT_EQ(dialog.run(nullptr), 2);
}

TEST_F(DialogTest, TextsAndNumbersAreSetAndRead) {
    script.expect(kFormCaption);
    NotingDialog dialog(kFormDialog);
    dialog.initialising = [](NotingDialog& d) {
        d.setText(kName, QStringLiteral("41\u00B030'N"));
        EXPECT_EQ(d.text(kName), QStringLiteral("41\u00B030'N"));
        d.setText(kAnimate, QStringLiteral("Animate"));
        EXPECT_EQ(d.text(kAnimate), QStringLiteral("Animate"));
        d.setNumber(kHint, "Version %d.%d", 5, 2);
        EXPECT_EQ(d.text(kHint), QStringLiteral("Version 5.2"));
        d.setNumber(kName, "%.2f", 2.5); // whatever the user's decimal sign
        EXPECT_EQ(d.text(kName), QStringLiteral("2.50"));
        d.setNumber(kName, "%.d", 0);
        EXPECT_EQ(d.text(kName), QString());
        d.setNumber(kName, "%.d", 5);
        EXPECT_EQ(d.text(kName), QStringLiteral("5"));
        EXPECT_EQ(d.text(4711), QString());
    };
    EXPECT_EQ(dialog.run(nullptr), 2);
    EXPECT_EQ(dialog.text(kName), QString()); // no longer running
}

TEST_F(DialogTest, TheFocusStartsAtTheFirstField) {
    script.expect(kFormCaption, [](QDialog& open) {
        EXPECT_EQ(open.focusWidget(), child(open, kName));
    });
    EXPECT_EQ(NotingDialog(kFormDialog).run(nullptr), 2);
}

TEST_F(DialogTest, ALabelsMnemonicReachesTheFieldThatFollows) {
    script.expect(kFormCaption, [](QDialog& open) {
        QTest::keyClick(&open, Qt::Key_P, Qt::AltModifier);
        EXPECT_EQ(open.focusWidget(), child(open, kProduct));
    });
    EXPECT_EQ(NotingDialog(kFormDialog).run(nullptr), 2);
}

TEST_F(DialogTest, LayoutHelpersWorkInTheClientArea) {
    script.expect(kListCaption, [](QDialog& open) {
        QWidget* const client = child(open, kList)->parentWidget();
        const QRect ok = child(open, Dialog::kOk)->geometry();
        EXPECT_EQ(ok.y(), 4);
        EXPECT_EQ(ok.x() + ok.width(), client->width() - 4);
        const QRect list = child(open, kList)->geometry();
        EXPECT_EQ(list.x(), 4);
        EXPECT_EQ(list.x() + list.width(), ok.x() - 4);
        const QRect add = child(open, kAdd)->geometry();
        EXPECT_EQ(add.y() + add.height(), client->height() - 4);

        const QSize before = client->size();
        open.resize(open.size() + QSize(60, 40));
        test::settle();
        EXPECT_EQ(client->size(), before + QSize(60, 40));
        EXPECT_EQ(child(open, Dialog::kOk)->x(), ok.x() + 60);
        EXPECT_EQ(child(open, kList)->width(), list.width() + 60);
    });
    NotingDialog dialog(kListDialog);
    dialog.arranges = true;
    EXPECT_EQ(dialog.run(nullptr), 2);
    EXPECT_FALSE(dialog.lastSize.isEmpty());
}

TEST_F(DialogTest, TheMarginFollowsTheScreen) {
    ScreenMetrics screen;
    screen.logPixelsY = 192;
    ScreenMetrics::use(screen);
    script.expect(kListCaption, [](QDialog& open) { EXPECT_EQ(child(open, Dialog::kOk)->y(), 8); });
    NotingDialog dialog(kListDialog);
    dialog.arranges = true;
    EXPECT_EQ(dialog.run(nullptr), 2);
}

TEST_F(DialogTest, DialogUnitsFollowTheFont) {
    ScreenMetrics screen;
    screen.logPixelsY = 96;
    screen.available = {2000, 2000};
    ScreenMetrics::use(screen);
    QSize small;
    for (const int points : {9, 18}) {
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), points));
        for (const auto& [id, caption] :
             {std::pair{kFormDialog, kFormCaption},
              std::pair{kTextDialog, QStringLiteral("Text")}}) {
            script.expect(caption, [&](QDialog& open) {
                test::expectCleanLayout(open);
                small = small.isEmpty() ? open.size() : small;
            });
            EXPECT_EQ(NotingDialog(id).run(nullptr), 2);
        }
        script.expect(kFormCaption, [&](QDialog& open) {
            const double growth = static_cast<double>(open.width()) / small.width();
            EXPECT_NEAR(growth, points / 9.0, 0.2);
        });
        EXPECT_EQ(NotingDialog(kFormDialog).run(nullptr), 2);
    }
}

TEST_F(DialogTest, OnASmallScreenADialogFitsAndScrolls) {
    ScreenMetrics screen;
    screen.logPixelsY = 96;
    screen.available = {240, 100};
    ScreenMetrics::use(screen);
    script.expect(kFormCaption, [](QDialog& open) {
        EXPECT_LE(open.width(), 240);
        EXPECT_LE(open.height(), 100);
        auto* area = open.findChild<QScrollArea*>();
        EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
        // The buttons stay in sight; a field that gets the focus comes into it.
        const QWidget* ok = child(open, Dialog::kOk);
        EXPECT_TRUE(open.rect().contains(QRect(ok->mapTo(&open, QPoint()), ok->size())));
        QTest::keyClick(&open, Qt::Key_P, Qt::AltModifier);
        for (int i = 0; i < 2; ++i) {
            QTest::keyClick(open.focusWidget(), Qt::Key_Tab);
        }
        child(open, kName)->setFocus();
        QTest::keyClick(open.focusWidget(), Qt::Key_Tab);
        QTest::keyClick(open.focusWidget(), Qt::Key_Tab);
        const QWidget* product = child(open, kProduct);
        ASSERT_EQ(open.focusWidget(), product);
        const QRect place(product->mapTo(area->viewport(), QPoint()), product->size());
        EXPECT_TRUE(area->viewport()->rect().contains(place));
    });
    EXPECT_EQ(NotingDialog(kFormDialog).run(nullptr), 2);
}

TEST_F(DialogTest, OnASmallScreenAResizableDialogShrinksInsteadOfScrolling) {
    ScreenMetrics screen;
    screen.logPixelsY = 96;
    screen.available = {200, 150};
    ScreenMetrics::use(screen);
    script.expect(kListCaption, [](QDialog& open) {
        EXPECT_LE(open.width(), 200);
        EXPECT_LE(open.height(), 150);
        auto* area = open.findChild<QScrollArea*>();
        EXPECT_EQ(area->verticalScrollBar()->maximum(), 0);
        EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
    });
    NotingDialog dialog(kListDialog);
    dialog.arranges = true;
    EXPECT_EQ(dialog.run(nullptr), 2);
}

TEST_F(DialogTest, OnATouchScreenEverythingThatIsHitIsSevenMillimetresHigh) {
    ScreenMetrics screen;
    screen.logPixelsY = 96;
    screen.dotsPerMillimetre = 6;
    screen.touch = true;
    ScreenMetrics::use(screen);
    useScreenStyle();
    script.expect(kFormCaption, [](QDialog& open) {
        for (const int id : {Dialog::kOk, Dialog::kCancel, kName, kAnimate, kProduct}) {
            EXPECT_GE(child(open, id)->height(), 42) << id;
        }
        test::expectCleanLayout(open);
    });
    EXPECT_EQ(NotingDialog(kFormDialog).run(nullptr), 2);
    script.expect(kListCaption, [](QDialog& open) {
        auto* list = static_cast<QListWidget*>(child(open, kList));
        EXPECT_GE(list->visualItemRect(list->item(0)).height(), 42);
        EXPECT_GE(child(open, kAdd)->height(), 42);
    });
    NotingDialog dialog(kListDialog);
    dialog.initialising = [](NotingDialog& d) {
        d.control<QListWidget>(kList)->addItem(QStringLiteral("Row"));
    };
    EXPECT_EQ(dialog.run(nullptr), 2);
    QApplication::setStyle(QStringLiteral("Fusion"));
}

TEST_F(DialogTest, OnATouchScreenAFingerScrollsAListAndATapStillChoosesARow) {
    ScreenMetrics screen = ScreenMetrics::current();
    screen.touch = true;
    ScreenMetrics::use(screen);
    script.expect(kListCaption, [](QDialog& open) {
        auto& list = static_cast<QListWidget&>(*child(open, kList));
        QWidget* const rows = list.viewport();
        static QPointingDevice* const device = QTest::createTouchDevice();
        const QPoint start(20, rows->height() - 5);
        QTest::touchEvent(rows, device).press(0, start);
        for (int y = start.y(); y > 5; y -= 10) {
            QTest::touchEvent(rows, device).move(0, {20, y});
        }
        EXPECT_TRUE(QTest::qWaitFor([&list] { return list.verticalScrollBar()->value() > 0; }));
        QTest::touchEvent(rows, device).release(0, {20, 5});
        QScroller::scroller(rows)->stop();

        test::click(*rows, {20, 20});
        EXPECT_EQ(list.selectedItems(), QList({list.itemAt(20, 20)}));
    });
    NotingDialog dialog(kListDialog);
    dialog.initialising = [](NotingDialog& d) {
        for (int row = 0; row < 100; ++row) {
            d.control<QListWidget>(kList)->addItem(QString::number(row));
        }
    };
    EXPECT_EQ(dialog.run(nullptr), 2);
}

TEST_F(DialogTest, AMissingResourceModuleIsTriedAndToldAtEachRequest) {
    const QTemporaryDir empty;
    ResourceModule module(empty.path());
    ResourceModule::use(&module);
    for (int request = 0; request < 2; ++request) {
        script.expect(QStringLiteral("Error"), [](QDialog& open) {
            EXPECT_EQ(
                static_cast<QMessageBox&>(open).text(),
                QStringLiteral("Failed to load Res.dll\nPlease re-install the software")
            );
            QTest::keyClick(&open, Qt::Key_Return);
        });
        NotingDialog dialog(5001);
        EXPECT_EQ(dialog.run(nullptr), 2);
        EXPECT_THAT(dialog.log, IsEmpty());
    }
    ResourceModule::use(nullptr);
}

// A module as rcc writes it (format 1) whose one resource is "dialogs/5001".
QByteArray moduleWith(const QByteArray& content) {
    const auto number = [](qsizetype value) {
        return QByteArray::number(value, 16).rightJustified(8, '0');
    };
    const qsizetype data = 20;
    const qsizetype names = data + 4 + content.size();
    const qsizetype tree = names + 34;
    const QByteArray header = "71726573" + number(1) + number(tree) + number(data) + number(names);
    return QByteArray::fromHex(
        header + number(content.size()) + content.toHex() +
        "00070af83523006400690061006c006f006700730004000383310035003000300031"
        "0000000000020000000100000001"
        "0000000000020000000100000002"
        "0000001400000000000100000000"
    );
}

TEST_F(DialogTest, ADialogOfTheResourceModuleRunsLikeAnyOther) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Res.rcc")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(moduleWith(
        R"({"caption": "Vector", "size": [80, 40],
            "controls": [{"id": 1044, "kind": "edit", "place": [4, 4, 70, 14]}]})"
    ));
    file.close();
    ResourceModule module(folder.path());
    ResourceModule::use(&module);
    script.expect(QStringLiteral("Vector"), [](QDialog& open) {
        EXPECT_NE(qobject_cast<QLineEdit*>(child(open, kName)), nullptr);
        clickOn(open, Dialog::kOk);
    });
    EXPECT_EQ(NotingDialog(5001).run(nullptr), 1);
    // The module is there, but has no such dialog: nothing to tell the user.
    EXPECT_EQ(NotingDialog(5002).run(nullptr), 2);
    ResourceModule::use(nullptr);
}

TEST_F(DialogTest, WhereNobodyMayBeAskedADialogEndsAtOnce) {
    Modal::neverAsk(true);
    NotingDialog dialog(kListDialog);
    EXPECT_EQ(dialog.run(nullptr), 2);
    EXPECT_EQ(NotingDialog(5001).run(nullptr), 2);
    EXPECT_THAT(dialog.log, IsEmpty());
}

TEST_F(DialogTest, TheRequestToEndTheProgramCancelsWhatIsOpenInnermostFirst) {
    NotingDialog outer(kListDialog);
    NotingDialog inner(kFormDialog);
    std::vector<int> results;
    script.expect(kListCaption, [&](QDialog& open) { results.push_back(inner.run(&open)); });
    script.expect(kFormCaption, [](QDialog&) {
        EXPECT_EQ(Modal::depth(), 2);
        Modal::requestEnd();
    });
    results.push_back(outer.run(nullptr));
    EXPECT_THAT(results, ElementsAre(2, 2));
    EXPECT_THAT(inner.log, ElementsAre("initialise", "cancel", "destroy"));
    EXPECT_THAT(outer.log, ElementsAre("initialise", "cancel", "destroy"));
    EXPECT_TRUE(Modal::endRequested());
    EXPECT_EQ(Modal::depth(), 0);

    // Remembered: nothing opens any more.
    NotingDialog late(kListDialog);
    EXPECT_EQ(late.run(nullptr), 2);
    EXPECT_THAT(late.log, IsEmpty());
}

TEST_F(DialogTest, ADialogThatRefusesToBeCancelledEndsAllTheSame) {
    class Refusing : public Dialog {
    public:
        using Dialog::Dialog;
        void onCancel() override {}
    };
    script.expect(kListCaption, [](QDialog& open) {
        open.reject();
        EXPECT_TRUE(open.isVisible());
        Modal::requestEnd();
        EXPECT_FALSE(open.isVisible());
    });
    EXPECT_EQ(Refusing(kListDialog).run(nullptr), 2);
}

TEST_F(DialogTest, AParentThatIsDeletedUnderWayTakesItAlong) {
    auto* parent = new QWidget;
    script.expect(kListCaption, [parent](QDialog&) { parent->deleteLater(); });
    NotingDialog dialog(kListDialog);
    EXPECT_EQ(dialog.run(parent), 2);
    EXPECT_EQ(dialog.widget(), nullptr);
}

} // namespace
} // namespace raincast
