// SPDX-License-Identifier: MIT
#pragma once

#include "support/menu.h"
#include "support/pointer.h"
#include "window/dialog.h"
#include "window/modal.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace raincast::test {

/// Stands in for a person who answers every dialog and message box in one way, whatever it asks,
/// with real events. Where its answer leaves a dialog open the dialog is cancelled. Dialogs without
/// end fail the test.
class AnyDialog {
public:
    enum class Answer {
        cancel,
        accept,     ///< as it stands
        acceptLast, ///< with the last row of its list chosen, if it has one
        useAll,     ///< use all its other buttons first, as far as it stays open, then cancel
    };

    AnyDialog(Hand hand, Answer answer) : m_hand(hand), m_answer(answer) {
        Modal::setHook([this](QDialog& dialog) { meet(dialog); });
    }
    ~AnyDialog() { Modal::setHook(nullptr); }
    AnyDialog(const AnyDialog&) = delete;
    AnyDialog& operator=(const AnyDialog&) = delete;

    void answerWith(Answer answer) { m_answer = answer; }

    /// The captions of those that opened since the last call.
    QStringList takeOpened() { return std::exchange(m_opened, {}); }

private:
    static constexpr int kMost = 10; // one after the other

    void meet(QDialog& open) {
        const QPointer<QDialog> dialog = &open;
        m_opened.append(open.windowTitle());
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == dialog; }))
            << qPrintable(open.windowTitle());
        if (m_opened.size() > kMost) {
            ADD_FAILURE() << "No end of dialogs: " << qPrintable(m_opened.join(", "));
            Modal::requestEnd();
            return;
        }
        if (m_answer == Answer::useAll) {
            useButtons(dialog);
        } else if (m_answer != Answer::cancel) {
            accept(*dialog);
        }
        // A dialog that does what it was asked for closes when that is done.
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return !dialog || !dialog->isVisible() || dialog->isEnabled(); }, 60'000
        )) << qPrintable(m_opened.last());
        if (dialog && dialog->isVisible()) {
            cancel(*dialog);
        }
        EXPECT_TRUE(!dialog || !dialog->isVisible()) << qPrintable(m_opened.last());
    }

    void accept(QDialog& dialog) {
        auto* const list = dialog.findChild<QAbstractItemView*>();
        if (m_answer == Answer::acceptLast && list != nullptr && list->hasFocus()) {
            QTest::keyClick(dialog.windowHandle(), Qt::Key_End);
        }
        if (m_hand == Hand::keys) {
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        } else if (QPushButton* const button = defaultButton(dialog)) {
            click(*button, button->rect().center());
        }
    }

    void useButtons(const QPointer<QDialog>& dialog) {
        const QStringList ends = {
            QString::number(Dialog::kOk), QString::number(Dialog::kCancel), QString()};
        std::vector<QPointer<QAbstractButton>> buttons;
        for (auto* const button : dialog->findChildren<QAbstractButton*>()) {
            if (!ends.contains(button->objectName())) {
                buttons.emplace_back(button);
            }
        }
        for (const auto& button : buttons) {
            if (dialog && dialog->isVisible() && button && button->isEnabled()) {
                use(*button);
            }
        }
    }

    void use(QAbstractButton& button) {
        if (m_hand == Hand::keys) {
            button.setFocus();
            QTest::keyClick(button.window()->windowHandle(), Qt::Key_Space);
        } else {
            click(button, button.rect().center());
        }
    }

    static QPushButton* defaultButton(const QDialog& dialog) {
        for (auto* const button : dialog.findChildren<QPushButton*>()) {
            if (button->isDefault()) {
                return button;
            }
        }
        return nullptr;
    }

    /// With Esc, or at the window's frame.
    void cancel(QDialog& dialog) {
        if (m_hand == Hand::keys) {
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        } else {
            dialog.close();
        }
    }

    Hand m_hand;
    Answer m_answer;
    QStringList m_opened;
};

} // namespace raincast::test
