// SPDX-License-Identifier: MIT
#include "window/message_box.h"

#include "core/text.h"
#include "fitting/fit_text.h"
#include "window/modal.h"
#include "window/screen_metrics.h"

#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace raincast {

namespace {

// A longer line of text is tiring to read; at this width Qt begins to break lines.
constexpr int kWidest = 501;

QMessageBox::Icon toQt(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::exclamation:
        return QMessageBox::Warning;
    case MessageIcon::stop:
        return QMessageBox::Critical;
    case MessageIcon::none:
        break;
    }
    return QMessageBox::NoIcon;
}

// On a narrow screen Qt squeezes a text into a column of single words: give it what room there is.
void widen(QMessageBox& box) {
    auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (label == nullptr) {
        return;
    }
    box.ensurePolished();
    const int text = label->sizeHint().width();
    const int beside = box.layout()->totalMinimumSize().width() - text;
    const int room = std::min(kWidest, ScreenMetrics::current().available.width()) - beside;
    label->setMinimumWidth(std::clamp(text, 0, std::max(room, 0)));
}

struct Buttons {
    QMessageBox::StandardButton first;
    QMessageBox::StandardButton second;
    QMessageBox::StandardButton escape;
    // Not every desktop gives its buttons letters for Alt: these are ours.
    const char* firstText;
    const char* secondText;
};

Buttons buttonsOf(Question question) {
    switch (question) {
    case Question::yesNo:
        return {
            QMessageBox::Yes, QMessageBox::No, QMessageBox::No, Text::marked("&Yes"),
            Text::marked("&No")};
    case Question::retryDiscard:
        break;
    }
    return {
        QMessageBox::Retry, QMessageBox::Discard, QMessageBox::Retry, Text::marked("&Retry"),
        Text::marked("&Discard")};
}

// What is too high for the screen even so gets narrow letters: nothing of it may be missed.
void shorten(QMessageBox& box) {
    auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (label == nullptr) {
        return;
    }
    label->setWordWrap(true); // as Qt does when it shows the box
    narrowUntil(*label, [&box] {
        QLayout& layout = *box.layout();
        layout.activate();
        const int width = layout.totalMinimumSize().width();
        return layout.totalHeightForWidth(width) <= ScreenMetrics::current().available.height();
    });
}

int run(QMessageBox& box) {
    box.setTextFormat(Qt::PlainText);
    widen(box);
    shorten(box);
    return Modal::run(box);
}

} // namespace

void messageBox(QWidget* parent, const QString& text, const QString& caption, MessageIcon icon) {
    if (!Modal::asks()) {
        return; // there may be no application yet that a widget could be made for
    }
    QMessageBox box(toQt(icon), caption, text, QMessageBox::Ok, parent);
    box.button(QMessageBox::Ok)->setText(Text::tr("&OK"));
    static_cast<void>(run(box));
}

Answer askQuestion(
    QWidget* parent, const QString& text, const QString& caption, Question question,
    MessageIcon icon
) {
    if (!Modal::asks()) {
        return Answer::none;
    }
    const Buttons buttons = buttonsOf(question);
    QMessageBox box(toQt(icon), caption, text, buttons.first | buttons.second, parent);
    box.button(buttons.first)->setText(Text::of(buttons.firstText));
    box.button(buttons.second)->setText(Text::of(buttons.secondText));
    box.setDefaultButton(buttons.first);
    box.setEscapeButton(buttons.escape);
    const int result = run(box);
    if (result == buttons.first || result == buttons.second) {
        return result == buttons.first ? Answer::first : Answer::second;
    }
    return Answer::none;
}

} // namespace raincast
