// SPDX-License-Identifier: MIT
#include "letters/type_ahead.h"

#include <QKeyEvent>
#include <QListWidget>

namespace raincast {

namespace {

// Time enough to find the next letter, also on a screen's keyboard.
constexpr quint64 kPauseMilliseconds = 1000;

} // namespace

TypeAhead::TypeAhead(QListWidget& list) : QObject(&list), m_list(list) {
    list.installEventFilter(this);
}

bool TypeAhead::eventFilter(QObject* /*watched*/, QEvent* event) {
    return event->type() == QEvent::KeyPress && typed(static_cast<const QKeyEvent&>(*event));
}

bool TypeAhead::typed(const QKeyEvent& event) {
    const bool command = (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
    if (event.timestamp() - m_lastKey > kPauseMilliseconds) {
        m_typed.clear();
    }
    const QString text = event.text();
    const bool startsWithSpace = m_typed.isEmpty() && text == u" "; // selects the current row
    if (command || text.isEmpty() || !text.front().isPrint() || startsWithSpace) {
        return false;
    }
    m_lastKey = event.timestamp();
    m_typed += text;
    jump();
    return true;
}

void TypeAhead::jump() {
    const bool repeated = m_typed.count(m_typed.front(), Qt::CaseInsensitive) == m_typed.size();
    const QString start = repeated ? m_typed.left(1) : m_typed;
    // A longer beginning may be met by the current row already.
    const int first = m_list.currentRow() + (repeated ? 1 : 0);
    const int count = m_list.count();
    for (int i = 0; i < count; ++i) {
        const int row = (first + i + count) % count;
        if (matches(row, start)) {
            m_list.setCurrentRow(row);
            return;
        }
    }
}

bool TypeAhead::matches(int row, const QString& start) const {
    const QString text = m_list.item(row)->text();
    const qsizetype colon = text.indexOf(u':');
    return text.startsWith(start, Qt::CaseInsensitive) ||
           QStringView(text).mid(colon + 1).startsWith(start, Qt::CaseInsensitive);
}

} // namespace raincast
