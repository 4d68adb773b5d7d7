// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qnamespace.h>

class QPoint;
class QWidget;

namespace raincast::test {

/// Pointer events as the window system sends them, through the top-level window: unlike those of
/// QTest's widget functions they know their place in the window. `place` is in the widget's
/// logical pixels.
void press(QWidget& widget, const QPoint& place, Qt::KeyboardModifiers keys = {});
void moveTo(QWidget& widget, const QPoint& place);
void release(QWidget& widget, const QPoint& place);
void click(QWidget& widget, const QPoint& place, Qt::KeyboardModifiers keys = {});
/// A second press and release so soon after the first that it makes a double-click.
void doubleClick(QWidget& widget, const QPoint& place);

} // namespace raincast::test
