// SPDX-License-Identifier: MIT
#pragma once

class QRect;

namespace raincast {

/// How a control is tied to its dialog: one horizontal and one vertical value, added. Both 0 and
/// the value named here mean "at the right" and "at the bottom".
enum AnchorFlags : int {
    anchorLeft = 1,
    anchorRight = 2,
    anchorLeftAndRight = 3, ///< stretched
    anchorTop = 4,
    anchorBottom = 8,
    anchorTopAndBottom = 12, ///< stretched
};

/// Where a control stands relative to another one.
enum VerticalRelation : int { sameRow = 0, above = 1, below = 2 };
enum HorizontalRelation : int { sameColumn = 0, leftOf = 1, rightOf = 2 };

/// The margin between controls in logical pixels: 4 pixels at 96 logical dots per inch, scaled and
/// rounded.
[[nodiscard]] int dialogMargin(int logPixelsY);

/// The rectangle that a control takes in a dialog's client area; all in one system of coordinates.
/// An extent never becomes negative.
[[nodiscard]] QRect anchored(const QRect& dialog, const QRect& control, int flags, int margin);

/// The rectangle that a control takes beside a reference control. An axis without a relation keeps
/// its place and extent; a stretched one reaches from the reference to the dialog's edge.
[[nodiscard]] QRect placedNextTo(
    const QRect& dialog, const QRect& reference, const QRect& control, VerticalRelation vertical,
    HorizontalRelation horizontal, bool stretchVertically, bool stretchHorizontally, int margin
);

} // namespace raincast
