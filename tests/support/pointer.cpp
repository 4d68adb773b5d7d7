// SPDX-License-Identifier: MIT
#include "support/pointer.h"

#include <QTest>
#include <QWidget>
#include <QWindow>

namespace raincast::test {

namespace {

QWindow* windowOf(const QWidget& widget) {
    return widget.window()->windowHandle();
}

QPoint inWindow(const QWidget& widget, const QPoint& place) {
    return widget.mapTo(widget.window(), place);
}

} // namespace

void press(QWidget& widget, const QPoint& place, Qt::KeyboardModifiers keys) {
    QTest::mousePress(windowOf(widget), Qt::LeftButton, keys, inWindow(widget, place));
}

void moveTo(QWidget& widget, const QPoint& place) {
    QTest::mouseMove(windowOf(widget), inWindow(widget, place));
}

void release(QWidget& widget, const QPoint& place) {
    QTest::mouseRelease(windowOf(widget), Qt::LeftButton, {}, inWindow(widget, place));
}

void click(QWidget& widget, const QPoint& place, Qt::KeyboardModifiers keys) {
    press(widget, place, keys);
    release(widget, place);
}

void doubleClick(QWidget& widget, const QPoint& place) {
    QTest::mouseDClick(windowOf(widget), Qt::LeftButton, {}, inWindow(widget, place));
}

} // namespace raincast::test
