// SPDX-License-Identifier: MIT
#include "window/dialog_layout.h"

#include <QRect>

#include <algorithm>

namespace raincast {

namespace {

// One axis of a rectangle; `end` lies behind the last pixel. Both axes follow the same rules.
struct Span {
    int begin = 0;
    int extent = 0;

    [[nodiscard]] int end() const { return begin + extent; }
};

Span across(const QRect& rect) {
    return {rect.x(), rect.width()};
}

Span down(const QRect& rect) {
    return {rect.y(), rect.height()};
}

QRect fromSpans(const Span& x, const Span& y) {
    return {x.begin, y.begin, std::max(x.extent, 0), std::max(y.extent, 0)};
}

// `flags`: 1 the near edge, 3 stretched, anything else the far edge.
Span anchoredSpan(const Span& dialog, const Span& control, int flags, int margin) {
    Span result{dialog.begin + margin, control.extent};
    if (flags == 3) {
        result.extent = dialog.end() - result.begin - margin;
    } else if (flags != 1) {
        result.begin = dialog.end() - control.extent - margin;
    }
    return result;
}

// `relation`: 1 before the reference, 2 after it, anything else none.
Span placedSpan(
    const Span& dialog, const Span& reference, const Span& control, int relation, bool stretch,
    int margin
) {
    Span result = control;
    if (relation == 1 && stretch) {
        result.begin = dialog.begin + margin;
        result.extent = reference.begin - result.begin - margin;
    } else if (relation == 1) {
        result.begin = reference.begin - control.extent - margin;
    } else if (relation == 2) {
        result.begin = reference.end() + margin;
        if (stretch) {
            result.extent = dialog.end() - result.begin - margin;
        }
    }
    return result;
}

} // namespace

int dialogMargin(int logPixelsY) {
    return (4 * logPixelsY + 48) / 96;
}

QRect anchored(const QRect& dialog, const QRect& control, int flags, int margin) {
    return fromSpans(
        anchoredSpan(across(dialog), across(control), flags & 3, margin),
        anchoredSpan(down(dialog), down(control), (flags & 12) >> 2, margin)
    );
}

QRect placedNextTo(
    const QRect& dialog, const QRect& reference, const QRect& control, VerticalRelation vertical,
    HorizontalRelation horizontal, bool stretchVertically, bool stretchHorizontally, int margin
) {
    return fromSpans(
        placedSpan(
            across(dialog), across(reference), across(control), horizontal, stretchHorizontally,
            margin
        ),
        placedSpan(
            down(dialog), down(reference), down(control), vertical, stretchVertically, margin
        )
    );
}

} // namespace raincast
