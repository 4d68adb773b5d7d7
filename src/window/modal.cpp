// SPDX-License-Identifier: MIT
#include "window/modal.h"

#include <QDialog>
#include <QPointer>
#include <QTimer>

#include <utility>
#include <vector>

namespace raincast {

namespace {

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

} // namespace

int Modal::run(QDialog& dialog) {
    if (!asks()) {
        return kCancelled;
    }
    const QPointer<QDialog> guard = &dialog;
    state().open.emplace_back(guard);
    QTimer::singleShot(0, &dialog, [&dialog] {
        const Hook hook = state().hook; // it may set another one
        if (hook) {
            hook(dialog);
        }
    });
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
