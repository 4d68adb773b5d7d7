// SPDX-License-Identifier: MIT
#include "window/action_row.h"

#include "window/dialog_layout.h"
#include "window/screen_metrics.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace raincast {

ActionRow::ActionRow(const QString& action, std::function<void()> pressed)
    : m_text(new QLabel), m_button(new QPushButton(action)) {
    const int margin = dialogMargin(ScreenMetrics::current().logPixelsY);
    hide();
    setBackgroundRole(QPalette::ToolTipBase);
    setAutoFillBackground(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setForegroundRole(QPalette::ToolTipText);
    m_button->setAutoDefault(true);
    m_button->setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard where it is
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(2 * margin, margin, margin, margin);
    row->addWidget(m_text, 1);
    row->addWidget(m_button);
    connect(m_button, &QPushButton::clicked, this, std::move(pressed));
}

void ActionRow::setText(const QString& text) {
    m_text->setText(text);
    setAccessibleName(text);
}

void ActionRow::setAction(const QString& action) {
    m_button->setText(action);
}

QString ActionRow::text() const {
    return m_text->text();
}

} // namespace raincast
