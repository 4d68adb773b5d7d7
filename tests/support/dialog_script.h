// SPDX-License-Identifier: MIT
#pragma once

#include "window/modal.h"

#include <QApplication>
#include <QDialog>
#include <QString>
#include <QTest>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <utility>

namespace raincast::test {

/// Stands in for the person in front of the dialogs: each dialog or message box that opens, nested
/// ones included, must be the next one expected, and is handed to that one's step. Dialogs that
/// nobody expects fail the test and are closed. For tests that link the room "window".
class DialogScript {
public:
    using Step = std::function<void(QDialog&)>;

    DialogScript() {
        Modal::setHook([this](QDialog& dialog) { play(dialog); });
    }

    ~DialogScript() {
        Modal::setHook(nullptr);
        for (const auto& [caption, step] : m_steps) {
            ADD_FAILURE() << "Did not open: " << qPrintable(caption);
        }
    }

    DialogScript(const DialogScript&) = delete;
    DialogScript& operator=(const DialogScript&) = delete;

    /// A step that leaves its dialog open has it cancelled.
    void expect(const QString& caption, Step step = {}) {
        m_steps.emplace_back(caption, std::move(step));
    }

private:
    void play(QDialog& dialog) {
        if (m_steps.empty() || m_steps.front().first != dialog.windowTitle()) {
            ADD_FAILURE() << "Opened unexpectedly: " << qPrintable(dialog.windowTitle());
            dialog.reject();
            return;
        }
        // A window over which it is modal counts as active, too; the keyboard is not here yet then.
        EXPECT_TRUE(QTest::qWaitFor([&dialog] { return QApplication::activeWindow() == &dialog; }))
            << qPrintable(dialog.windowTitle());
        const Step step = std::move(m_steps.front().second);
        m_steps.pop_front();
        if (step) {
            step(dialog);
        }
        if (dialog.isVisible()) {
            dialog.reject();
        }
    }

    std::deque<std::pair<QString, Step>> m_steps;
};

} // namespace raincast::test
