// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>
#include <QStringList>

#include <vector>

class QWidget;

namespace raincast::test {

/// Something in a window that a person reads or presses.
struct SeenControl {
    const QWidget* widget;
    QString name; ///< its identifier in the dialog's template, or its class
    QRect place; ///< in the window's logical pixels; beyond the window where it must be scrolled to
    QString text; ///< mnemonics left out; a list's first rows
};

/// The controls of a window that are shown, in the order of their making.
[[nodiscard]] std::vector<SeenControl> controlsOf(const QWidget& window);

/// The window's size and its controls as text, one a line, to be compared with an earlier time's.
[[nodiscard]] QStringList describe(const QWidget& window);

} // namespace raincast::test
