// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QFontMetrics;
class QLabel;
class QMenu;
class QWidget;

namespace raincast {

// Texts that need more room than there is, as in a language of longer words on a small screen.
// Where there is room nothing changes.

/// A text with its lines broken at blanks, so that they are no wider than `width` if words allow.
[[nodiscard]] QString broken(const QString& text, const QFontMetrics& metrics, int width);

/// Makes a widget's letters narrower, by as little as is needed, until `fits` says so; at most to
/// half of their width. Letters that were narrow before get their width back first.
void narrowUntil(QWidget& widget, const std::function<bool()>& fits);

/// Narrows the letters of a label until its text fits the label's place.
void fitLabel(QLabel& label);

/// Leaves out a menu's keys, and narrows its letters, until it is no wider than `width`.
void fitMenu(QMenu& menu, int width);

} // namespace raincast
