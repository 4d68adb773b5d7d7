// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QPointF>

#include <optional>

class QEvent;
class QNativeGestureEvent;
class QTouchEvent;
class QWheelEvent;
class QWidget;

namespace raincast {

/// Turns the wheel and pinches, on a touch pad or a touch screen, into steps of zooming; and the
/// first finger on a touch screen into the left button of a mouse, so that a window knows one kind
/// of pointer only: two quick taps are a double click. One object per window, asked from its window
/// procedure.
class ZoomInput {
public:
    struct Step {
        int steps = 0; ///< positive: zoom in, each step by a factor of two; 0: not enough yet
        QPoint place;  ///< of the pointer or between the fingers, in device pixels of the widget
        bool pressLost = false; ///< the finger that stood for the left button does so no longer
    };

    /// More than any view has levels; an event that asks for more counts as this many.
    static constexpr int kMostSteps = 16;

    /// Makes a widget receive what handle() understands.
    static void enable(QWidget& widget);

    /// Takes an event that `widget` got. Empty if it is another kind of event; else the event is
    /// accepted and must go no further. While one finger is down, the widget is sent mouse events.
    /// A second finger ends that, and so does the system when it takes the touch for itself: no
    /// release is sent then, which would make it a tap, but the step says that the press is lost.
    [[nodiscard]] std::optional<Step> handle(QWidget& widget, QEvent& event);

private:
    Step wheel(const QWidget& widget, const QWheelEvent& event);
    Step gesture(const QWidget& widget, const QNativeGestureEvent& event);
    Step touch(QWidget& widget, const QTouchEvent& event);
    void followFinger(QWidget& widget, const QTouchEvent& event);
    bool pressesAgain(const QTouchEvent& event);
    Step pinch(const QWidget& widget, const QTouchEvent& event);
    int takeScale(double factor);

    int m_wheelAngle = 0;   // turned but not yet a step, in eighths of a degree
    double m_scale = 1;     // pinched but not yet a step
    double m_distance = 0;  // between two fingers at the last event, 0 when they just came down
    bool m_pressed = false; // one finger stands for the left button
    quint64 m_tapped = 0;   // when a finger came down that may tap twice, 0 for none; milliseconds
    QPointF m_tapPlace;
};

} // namespace raincast
