// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class QDialog;

namespace raincast {

/// How dialogs and message boxes run: one place that refuses to ask in a run without a person,
/// closes the open ones when the program is asked to end, and notifies a test when a dialog has
/// opened.
class Modal {
public:
    /// The result of a cancelled dialog.
    static constexpr int kCancelled = 2;

    /// Shows a dialog and waits until it ends; returns what QDialog::done was given. A parent that
    /// is only about to appear is waited for, for a second at most, so that the dialog opens over
    /// it. Returns
    /// kCancelled at once, without showing it, in a run without a person, and also if the dialog
    /// is deleted under way.
    [[nodiscard]] static int run(QDialog& dialog);

    /// Whether dialogs open at all: not after neverAsk(true) and not once the program is asked to
    /// end.
    [[nodiscard]] static bool asks();
    static void neverAsk(bool never);

    /// The request to end the program. It is remembered; the dialogs that are open end as
    /// cancelled, the innermost first, each by its own cancel operation and, if that leaves it
    /// open, by force.
    static void requestEnd();
    [[nodiscard]] static bool endRequested();
    /// Forgets the request: for the questions that are left when all open dialogs have ended, and
    /// for tests.
    static void forgetEnd();

    /// How many dialogs and message boxes are open.
    [[nodiscard]] static int depth();

    /// Called in a dialog's event loop once it is on the screen, for tests to drive it; null
    /// removes the hook.
    using Hook = std::function<void(QDialog&)>;
    static void setHook(Hook hook);
};

} // namespace raincast
