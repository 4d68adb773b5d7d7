// SPDX-License-Identifier: MIT
#include "warnings/warning_text_dialog.h"

#include "core/clock.h"
#include "warnings/warning_words.h"
#include "window/dialog_template.h"
#include "window/screen_metrics.h"

#include <QPlainTextEdit>
#include <QScroller>

#include <utility>

namespace raincast {

namespace {

constexpr int kPlace = 1090;

const DialogTemplateRecord warningTextDialog{
    {WarningTextDialog::kTemplate,
     Text::marked("Warning"),
     {124, 128},
     {{kPlace, ControlKind::picture, {}, {2, 2, 120, 124}}},
     {100, 50}}};

} // namespace

WarningTextDialog::WarningTextDialog(WarningText warning)
    : Dialog(kTemplate), m_warning(std::move(warning)) {}

bool WarningTextDialog::onInitialise() {
    auto* const text = new QPlainTextEdit(control(kPlace));
    text->setObjectName(QStringLiteral("warningText"));
    text->setAccessibleName(Text::tr("Text of the warning"));
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setTabChangesFocus(true);
    text->setPlainText(wholeText(m_warning, Clock::current().now()));
    if (ScreenMetrics::current().touch) {
        // A finger moves the text instead of selecting in it.
        text->setTextInteractionFlags(Qt::TextSelectableByKeyboard);
        QScroller::grabGesture(text->viewport(), QScroller::TouchGesture);
    }
    text->setFocus();
    return false;
}

void WarningTextDialog::onSize(int /*width*/, int /*height*/) {
    anchor(kPlace, anchorLeftAndRight | anchorTopAndBottom);
    QWidget& place = *control(kPlace);
    place.findChild<QPlainTextEdit*>()->setGeometry(place.rect());
}

} // namespace raincast
