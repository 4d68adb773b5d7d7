// SPDX-License-Identifier: MIT
#include "window/bottom_rows.h"

#include <QEvent>
#include <QVBoxLayout>

#include <utility>

namespace raincast {

BottomRows::BottomRows(QWidget& client) : QWidget(&client), m_rows(new QVBoxLayout(this)) {
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
    client.installEventFilter(this);
    hide();
}

void BottomRows::add(QWidget& row, Stay stay) {
    row.hide();
    m_rows->addWidget(&row);
    if (stay == Stay::lasting) {
        std::erase_if(m_lasting, [](const QPointer<QWidget>& each) { return each.isNull(); });
        m_lasting.emplace_back(&row);
    }
}

// A row that is shown, hidden or changed asks for a new layout.
bool BottomRows::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        fit();
    }
    return QWidget::event(event);
}

bool BottomRows::eventFilter(QObject* client, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        fit();
    } else if (event->type() == QEvent::ChildAdded) {
        raise();
    }
    return QWidget::eventFilter(client, event);
}

void BottomRows::fit() {
    m_rows->activate(); // by itself it stays as it is while this is hidden, and asks for nothing
    if (m_rows->isEmpty()) {
        hide();
        noteLasting();
        return;
    }
    const QRect area = parentWidget()->rect();
    const int wanted = m_rows->hasHeightForWidth() ? m_rows->totalHeightForWidth(area.width())
                                                   : m_rows->totalSizeHint().height();
    const int height = qMin(wanted, area.height());
    setGeometry(0, area.height() - height, area.width(), height);
    show();
    m_rows->activate(); // the rows have their heights now
    noteLasting();
}

void BottomRows::noteLasting() {
    int height = 0;
    for (const QPointer<QWidget>& row : m_lasting) {
        height += row.isNull() || row->isHidden() ? 0 : row->height();
    }
    if (std::exchange(m_lastingHeight, height) != height && m_changed) {
        m_changed();
    }
}

} // namespace raincast
