// SPDX-License-Identifier: MIT
#include "window/modal.h"

#include "letters/give_letters.h"

#include <QDialog>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <utility>
#include <vector>

namespace raincast {

namespace {

// Windows that are minimised, or on another desktop, never appear.
constexpr int kMostMillisecondsToAppear = 1000;

struct State {
    std::vector<QPointer<QDialog>> open; // the innermost at the back
    Modal::Hook hook;
    bool neverAsk = false;
    bool endRequested = false;
};

State& state() {
    static State instance;
    return instance;
}

void cancel(const QPointer<QDialog>& dialog) {
    if (dialog) {
        dialog->reject();
    }
    if (dialog && dialog->isVisible()) {
        dialog->done(Modal::kCancelled);
    }
}

// Ends a loop when a window is on the screen, or has gone.
class ExposureWatch : public QObject {
public:
    ExposureWatch(QWindow& window, QEventLoop& loop) : m_loop(loop) {
        window.installEventFilter(this);
        connect(&window, &QObject::destroyed, &loop, &QEventLoop::quit);
    }

    bool eventFilter(QObject* window, QEvent* event) override {
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(window)->isExposed()) {
            m_loop.quit();
        }
        return false;
    }

private:
    QEventLoop& m_loop;
};

// A window that was only just shown does not know yet where the window manager will place it: a
// dialog that opened now would be placed over where it is not.
void awaitPlace(const QWidget* parent) {
    QWindow* const window = parent != nullptr ? parent->window()->windowHandle() : nullptr;
    if (window == nullptr || !window->isVisible() || window->isExposed()) {
        return;
    }
    QEventLoop loop;
    const ExposureWatch watch(*window, loop);
    QTimer::singleShot(kMostMillisecondsToAppear, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

int Modal::run(QDialog& dialog) {
    if (!asks()) {
        return kCancelled;
    }
    const QPointer<QDialog> guard = &dialog;
    state().open.emplace_back(guard);
    awaitPlace(dialog.parentWidget());
    if (!guard || !asks()) {
        state().open.pop_back();
        return kCancelled;
    }
    QTimer::singleShot(0, &dialog, [&dialog] {
        const Hook hook = state().hook; // it may set another one
        if (hook) {
            hook(dialog);
        }
    });
    giveLetters(dialog);
    const int result = dialog.exec();
    state().open.pop_back();
    return guard ? result : kCancelled;
}

bool Modal::asks() {
    return !state().neverAsk && !state().endRequested;
}

void Modal::neverAsk(bool never) {
    state().neverAsk = never;
}

void Modal::requestEnd() {
    state().endRequested = true;
    const auto open = state().open;
    for (auto dialog = open.rbegin(); dialog != open.rend(); ++dialog) {
        cancel(*dialog);
    }
}

bool Modal::endRequested() {
    return state().endRequested;
}

void Modal::forgetEnd() {
    state().endRequested = false;
}

int Modal::depth() {
    return static_cast<int>(state().open.size());
}

void Modal::setHook(Hook hook) {
    state().hook = std::move(hook);
}

} // namespace raincast
