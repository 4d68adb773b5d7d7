// SPDX-License-Identifier: MIT
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "window/message_box.h"
#include "window/modal.h"
#include "window/screen_metrics.h"

#include <QLabel>
#include <QMessageBox>
#include <QTest>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const QString kText = QStringLiteral("The number of frames must be 2 to 25, and the interval must "
                                     "be 1 to 60 minutes");
const QString kCaption = QStringLiteral("Raincast");

class MessageBoxTest : public test::GuiTest {
protected:
    test::DialogScript script;

    ~MessageBoxTest() override {
        Modal::neverAsk(false);
        Modal::forgetEnd();
        ScreenMetrics::use(std::nullopt);
    }
};

TEST_F(MessageBoxTest, ShowsItsTextCaptionAndIconUntilItIsClosed) {
    script.expect(kCaption, [](QDialog& open) {
        auto& box = static_cast<QMessageBox&>(open);
        EXPECT_EQ(box.text(), kText);
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        QTest::keyClick(&open, Qt::Key_Return);
        EXPECT_FALSE(open.isVisible());
    });
    messageBox(nullptr, kText, kCaption, MessageIcon::stop);
}

TEST_F(MessageBoxTest, ItsTextIsNoMarkup) {
    script.expect(kCaption, [](QDialog& open) {
        const auto* label = open.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    });
    messageBox(nullptr, QStringLiteral("<b>folder</b>"), kCaption);
}

TEST_F(MessageBoxTest, OnANarrowScreenTheTextTakesTheRoomThereIs) {
    ScreenMetrics screen;
    screen.available = {240, 320};
    ScreenMetrics::use(screen);
    script.expect(kCaption, [](QDialog& open) {
        const auto* label = open.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        EXPECT_GE(label->minimumWidth(), 140);
        EXPECT_LE(open.minimumWidth(), 240);
    });
    messageBox(nullptr, kText, kCaption, MessageIcon::exclamation);
}

TEST_F(MessageBoxTest, NoTextIsCut) {
    // From a word to more than a line of the widest box has room for.
    QString text = QStringLiteral("Failed");
    for (int words = 1; words < 30; ++words) {
        script.expect(kCaption, [](QDialog& open) {
            const auto* label = open.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
            const int height = label->wordWrap() ? label->heightForWidth(label->width())
                                                 : label->sizeHint().height();
            EXPECT_TRUE(label->wordWrap() || label->width() >= label->sizeHint().width())
                << qPrintable(label->text());
            EXPECT_GE(label->height(), height) << qPrintable(label->text());
        });
        messageBox(nullptr, text, kCaption);
        text += QStringLiteral(" to move");
    }
}

struct Press {
    Question question;
    int key;
    Answer answer;
};

TEST_F(MessageBoxTest, AQuestionIsAnsweredByItsButtonsAndKeys) {
    const Press presses[] = {
        {Question::yesNo, Qt::Key_Return, Answer::first},
        {Question::yesNo, Qt::Key_Escape, Answer::second},
        {Question::yesNo, Qt::Key_Y, Answer::first},
        {Question::yesNo, Qt::Key_N, Answer::second},
        {Question::retryDiscard, Qt::Key_Return, Answer::first},
        {Question::retryDiscard, Qt::Key_Escape, Answer::first},
        {Question::retryDiscard, Qt::Key_R, Answer::first},
        {Question::retryDiscard, Qt::Key_D, Answer::second},
    };
    for (const Press& row : presses) {
        script.expect(kCaption, [&row](QDialog& open) {
            const auto& box = static_cast<QMessageBox&>(open);
            EXPECT_EQ(box.text(), kText);
            EXPECT_EQ(box.buttons().size(), 2);
            ASSERT_TRUE(QTest::qWaitForWindowActive(&open));
            // Its letters are those of the buttons, as the menu's are.
            const bool letter = row.key < Qt::Key_Escape;
            QTest::keyClick(&open, Qt::Key(row.key), letter ? Qt::AltModifier : Qt::NoModifier);
            // A button pressed by its letter is seen to go down first.
            EXPECT_TRUE(QTest::qWaitFor([&open] { return !open.isVisible(); })) << row.key;
        });
        EXPECT_EQ(askQuestion(nullptr, kText, kCaption, row.question), row.answer) << row.key;
    }
}

TEST_F(MessageBoxTest, WhereNobodyAnswersThereIsNoAnswer) {
    for (const Question question : {Question::yesNo, Question::retryDiscard}) {
        Modal::neverAsk(true);
        EXPECT_EQ(askQuestion(nullptr, kText, kCaption, question), Answer::none);
        Modal::neverAsk(false);
        script.expect(kCaption, [](QDialog& open) {
            Modal::requestEnd();
            EXPECT_FALSE(open.isVisible());
        });
        EXPECT_EQ(askQuestion(nullptr, kText, kCaption, question), Answer::none);
        EXPECT_EQ(askQuestion(nullptr, kText, kCaption, question), Answer::none);
        Modal::forgetEnd();
    }
}

TEST_F(MessageBoxTest, NobodyIsAskedWhereNobodyMayBe) {
    int shown = 0;
    Modal::setHook([&shown](QDialog& open) {
        ++shown;
        open.reject();
    });
    messageBox(nullptr, kText, kCaption);
    EXPECT_EQ(shown, 1);
    Modal::neverAsk(true);
    messageBox(nullptr, kText, kCaption);
    Modal::neverAsk(false);
    Modal::requestEnd();
    messageBox(nullptr, kText, kCaption);
    EXPECT_EQ(shown, 1);
}

TEST_F(MessageBoxTest, TheRequestToEndClosesIt) {
    script.expect(kCaption, [](QDialog& open) {
        Modal::requestEnd();
        EXPECT_FALSE(open.isVisible());
    });
    messageBox(nullptr, kText, kCaption);
    EXPECT_EQ(Modal::depth(), 0);
}

} // namespace
} // namespace raincast
