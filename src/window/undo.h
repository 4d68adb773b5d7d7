// SPDX-License-Identifier: MIT
#pragma once

#include "window/action_row.h"

#include <QString>

#include <functional>

class QTimer;

namespace raincast {

class BottomRows;
class DialogWidget;

/// One step back: for ten seconds the user can put back what they deleted last, with the button of
/// a row at the bottom of the window, or with Ctrl+Z. The row moves into a dialog that asks for it,
/// and back when that ends.
///
/// There is one step: another one takes its place, and the one before can no longer be undone.
class Undo : public ActionRow {
public:
    static constexpr int kOfferedMilliseconds = 10'000;

    /// Becomes a row of the window.
    explicit Undo(BottomRows& rows);

    /// Offers to undo something. `what` is a sentence of its own: "Deleted Harbour."
    void offer(const QString& what, std::function<void()> putBack);
    /// What was offered can no longer be undone; nothing without an offer.
    void drop();
    /// Does what the button does; nothing without an offer.
    void undo();

    /// Moves into a dialog until that ends, which calls `undone` after each step back that the user
    /// takes meanwhile.
    void moveInto(DialogWidget& dialog, std::function<void()> undone);

    bool eventFilter(QObject* dialog, QEvent* event) override;

    /// "Deleted NAME.", with a long name cut.
    [[nodiscard]] static QString deleted(const QString& name);

private:
    void moveBack();

    BottomRows& m_rows;
    QTimer* m_timer;
    std::function<void()> m_putBack;
    std::function<void()> m_undone;
};

} // namespace raincast
