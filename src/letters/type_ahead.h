// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QKeyEvent;
class QListWidget;

namespace raincast {

/// Typing in a list selects the next row whose text, or the part of it behind a colon
/// ("KS:Wichita"), begins with the typed text, whatever the case. A pause starts a new text; one
/// letter again and again goes through the rows that begin with it.
class TypeAhead : public QObject {
public:
    /// Becomes a child of the list.
    explicit TypeAhead(QListWidget& list);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool typed(const QKeyEvent& event);
    void jump();
    [[nodiscard]] bool matches(int row, const QString& start) const;

    QListWidget& m_list;
    QString m_typed;
    quint64 m_lastKey = 0; // milliseconds of the window system's clock
};

} // namespace raincast
