// SPDX-License-Identifier: MIT
#include "window/dialog.h"

#include "fitting/fit_text.h"
#include "window/dialog_template.h"
#include "window/dialog_widget.h"
#include "window/modal.h"
#include "window/screen_metrics.h"
#include "window/undo.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>

#include <locale.h> // POSIX: newlocale, uselocale

#include <array>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace raincast {

namespace {

// As std::vsnprintf does in the C locale. QString's own formatting differs in detail: a 0 through
// "%.d" is a digit there.
Q_ATTRIBUTE_FORMAT_PRINTF(1, 0)
QString formatted(const char* format, va_list numbers) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t{});
    const locale_t users = uselocale(cLocale);
    std::array<char, 256> text{};
    std::vsnprintf(text.data(), text.size(), format, numbers);
    uselocale(users);
    return QString::fromUtf8(text.data());
}

} // namespace

Dialog::Dialog(int templateId, unsigned flags) : m_templateId(templateId), m_flags(flags) {}

bool Dialog::onInitialise() {
    return true;
}

void Dialog::onOk() {
    end(kOk);
}

bool Dialog::onOtherMessage(QEvent& /*event*/) {
    return false;
}

void Dialog::onDialogCommand(int id, QWidget* /*control*/, int /*notification*/) {
    if (id == kOk) {
        onOk();
    } else if (id == kCancel) {
        onCancel();
    }
}

void Dialog::onCancel() {
    end(kCancel);
}

int Dialog::run(QWidget* parent) {
    if (m_templateId == 0) {
        return kCancel;
    }
    if (!requireResourceModule(parent, m_templateId)) {
        return kCancel;
    }
    const auto content = findDialogTemplate(m_templateId);
    if (!content || !Modal::asks()) {
        return kCancel;
    }
    // On the heap: a parent that is destroyed under way takes it along.
    const QPointer<DialogWidget> dialog =
        new DialogWidget(*this, *content, (m_flags & kDoneButton) != 0, parent);
    m_client = &dialog->client();
    m_result.reset();
    attach(*dialog, m_client);
    if (onInitialise()) {
        dialog->focusFirst();
    }
    if (!m_result) {
        SizeEvent size(m_client->width(), m_client->height());
        QCoreApplication::sendEvent(dialog, &size);
    }
    const bool ended = m_result.has_value();
    const int result = ended ? *m_result : Modal::run(*dialog);
    if (dialog && ended) {
        QHideEvent neverShown; // for what it hosts
        QCoreApplication::sendEvent(dialog, &neverShown);
    }
    if (dialog) {
        destroyWindow(*dialog);
    }
    return result;
}

void Dialog::end(int result) {
    m_result = result;
    if (auto* const dialog = static_cast<DialogWidget*>(widget())) {
        dialog->done(result);
    }
}

bool Dialog::dialogProcedure(QEvent& event) {
    // Before it is attached, and once it is destroyed, the widget is on its own.
    if (widget() == nullptr) {
        return false;
    }
    if (event.type() == event_type::command) {
        const auto& command = static_cast<const CommandEvent&>(event);
        onDialogCommand(command.id(), command.control(), command.notification());
        return true;
    }
    return onOtherMessage(event);
}

QWidget* Dialog::findControl(int id) const {
    const auto* const dialog = static_cast<const DialogWidget*>(widget());
    return dialog != nullptr ? dialog->control(id) : nullptr;
}

void Dialog::host(Undo* undo, std::function<void()> undone) {
    if (undo != nullptr) {
        undo->moveInto(*static_cast<DialogWidget*>(widget()), std::move(undone));
    }
}

void Dialog::setCaption(const QString& caption) {
    if (QWidget* const dialog = widget()) {
        dialog->setWindowTitle(caption);
    }
}

void Dialog::setText(int controlId, const QString& text) {
    if (auto* edit = control<QLineEdit>(controlId)) {
        edit->setText(text);
    } else if (auto* button = control<QAbstractButton>(controlId)) {
        button->setText(text);
    } else if (auto* label = control<QLabel>(controlId)) {
        label->setText(text);
        fitLabel(*label);
    }
}

QString Dialog::text(int controlId) const {
    if (const auto* edit = control<QLineEdit>(controlId)) {
        return edit->text();
    }
    if (const auto* button = control<QAbstractButton>(controlId)) {
        return button->text();
    }
    const auto* label = control<QLabel>(controlId);
    return label != nullptr ? label->text() : QString();
}

void Dialog::setNumber(int controlId, const char* format, ...) {
    va_list numbers;
    va_start(numbers, format);
    setText(controlId, formatted(format, numbers));
    va_end(numbers);
}

void Dialog::anchor(int controlId, int flags) {
    if (QWidget* const moved = control(controlId)) {
        const int margin = dialogMargin(ScreenMetrics::current().logPixelsY);
        moved->setGeometry(anchored(m_client->rect(), moved->geometry(), flags, margin));
    }
}

void Dialog::placeNextTo(
    int referenceId, int controlId, VerticalRelation vertical, HorizontalRelation horizontal,
    bool stretchVertically, bool stretchHorizontally
) {
    const QWidget* const reference = control(referenceId);
    QWidget* const moved = control(controlId);
    if (reference != nullptr && moved != nullptr) {
        const int margin = dialogMargin(ScreenMetrics::current().logPixelsY);
        moved->setGeometry(placedNextTo(
            m_client->rect(), reference->geometry(), moved->geometry(), vertical, horizontal,
            stretchVertically, stretchHorizontally, margin
        ));
    }
}

} // namespace raincast
