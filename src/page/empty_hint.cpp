// SPDX-License-Identifier: MIT
#include "page/empty_hint.h"

#include "window/dialog_layout.h"
#include "window/screen_metrics.h"

#include <QLabel>

namespace raincast {

EmptyHint::EmptyHint(QWidget& client) : m_label(new QLabel(&client)) {
    m_label->setTextFormat(Qt::PlainText);
    m_label->setAlignment(Qt::AlignCenter);
    m_label->setWordWrap(true);
    m_label->setMargin(4 * dialogMargin(ScreenMetrics::current().logPixelsY));
    m_label->setBackgroundRole(QPalette::Base);
    m_label->setForegroundRole(QPalette::Text);
    m_label->setAutoFillBackground(true);
    m_label->hide();
}

EmptyHint::~EmptyHint() {
    delete m_label;
}

void EmptyHint::show(const QString& text) {
    if (!m_label) {
        return;
    }
    m_label->setText(text);
    m_label->setVisible(!text.isEmpty());
    fit();
}

void EmptyHint::fit() {
    if (m_label) {
        m_label->setGeometry(m_label->parentWidget()->rect());
    }
}

} // namespace raincast
