// SPDX-License-Identifier: MIT
#include "window/zoom_input.h"

#include "window/device_pixels.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLineF>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace raincast {

namespace {

// A notch of a usual wheel.
constexpr int kAnglePerStep = QWheelEvent::DefaultDeltasPerStep;

// A finger's scenePosition() counts from the window's frame with some window systems, and that of a
// wheel from the widget under the pointer; the place on the screen can be relied on.
QPointF inWindow(const QWidget& widget, const QPointF& globalPosition) {
    return widget.window()->mapFromGlobal(globalPosition);
}

void sendMouse(
    QWidget& widget, QEvent::Type type, const QEventPoint& point, const QTouchEvent& touch
) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent mouse(
        type, point.position(), inWindow(widget, point.globalPosition()), point.globalPosition(),
        button, held, touch.modifiers(), Qt::MouseEventSynthesizedByApplication
    );
    QCoreApplication::sendEvent(&widget, &mouse);
}

} // namespace

void ZoomInput::enable(QWidget& widget) {
    widget.setAttribute(Qt::WA_AcceptTouchEvents);
}

std::optional<ZoomInput::Step> ZoomInput::handle(QWidget& widget, QEvent& event) {
    std::optional<Step> step;
    switch (event.type()) {
    case QEvent::Wheel:
        step = wheel(widget, static_cast<const QWheelEvent&>(event));
        break;
    case QEvent::NativeGesture:
        step = gesture(widget, static_cast<const QNativeGestureEvent&>(event));
        break;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        step = touch(widget, static_cast<const QTouchEvent&>(event));
        break;
    default:
        return std::nullopt;
    }
    event.accept();
    return step;
}

ZoomInput::Step ZoomInput::wheel(const QWidget& widget, const QWheelEvent& event) {
    constexpr int kMostAngle = kMostSteps * kAnglePerStep;
    const int angle = std::clamp(event.angleDelta().y(), -kMostAngle, kMostAngle);
    if ((angle > 0) != (m_wheelAngle > 0)) {
        m_wheelAngle = 0; // turned back: what was left over counts no more
    }
    m_wheelAngle += angle;
    const int steps = m_wheelAngle / kAnglePerStep;
    m_wheelAngle -= steps * kAnglePerStep;
    return {steps, toDevicePixels(widget, inWindow(widget, event.globalPosition()))};
}

ZoomInput::Step ZoomInput::gesture(const QWidget& widget, const QNativeGestureEvent& event) {
    int steps = 0;
    if (event.gestureType() == Qt::BeginNativeGesture) {
        m_scale = 1;
    } else if (event.gestureType() == Qt::ZoomNativeGesture) {
        steps = takeScale(1 + event.value());
    }
    return {steps, toDevicePixels(widget, event.scenePosition())};
}

// Half way to the next level, by the ratio that the eye sees, is a step.
int ZoomInput::takeScale(double factor) {
    if (!(factor > 0) || !std::isfinite(factor)) {
        return 0;
    }
    // Bounded: the halving below would never reach an end with an infinite product.
    const double most = std::exp2(kMostSteps);
    m_scale *= std::clamp(factor, 1 / most, most);
    int steps = 0;
    for (; m_scale >= std::numbers::sqrt2; m_scale /= 2) {
        ++steps;
    }
    for (; m_scale <= 1 / std::numbers::sqrt2; m_scale *= 2) {
        --steps;
    }
    return steps;
}

ZoomInput::Step ZoomInput::touch(QWidget& widget, const QTouchEvent& event) {
    if (event.type() == QEvent::TouchBegin) {
        m_distance = 0;
        m_scale = 1;
    }
    // A touch that the system takes for itself tells of no fingers at all.
    if (event.type() != QEvent::TouchCancel && event.pointCount() == 1) {
        followFinger(widget, event);
        return {};
    }
    m_tapped = 0;
    Step step = event.pointCount() == 2 ? pinch(widget, event) : Step{};
    step.pressLost = std::exchange(m_pressed, false);
    return step;
}

void ZoomInput::followFinger(QWidget& widget, const QTouchEvent& event) {
    const QEventPoint& finger = event.points().first();
    if (event.type() == QEvent::TouchBegin) {
        m_pressed = true;
        const bool again = pressesAgain(event);
        sendMouse(
            widget, again ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, finger, event
        );
    } else if (m_pressed) {
        const double moved = QLineF(finger.globalPosition(), m_tapPlace).length();
        if (moved > QGuiApplication::styleHints()->touchDoubleTapDistance()) {
            m_tapped = 0; // a drag is no tap
        }
        m_pressed = event.type() == QEvent::TouchUpdate;
        const auto type = m_pressed ? QEvent::MouseMove : QEvent::MouseButtonRelease;
        sendMouse(widget, type, finger, event);
    }
}

// The window system pairs the clicks of a mouse only.
bool ZoomInput::pressesAgain(const QTouchEvent& event) {
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const QPointF place = event.points().first().globalPosition();
    const auto interval = static_cast<quint64>(hints.mouseDoubleClickInterval());
    const bool again = m_tapped != 0 && event.timestamp() - m_tapped < interval &&
                       QLineF(place, m_tapPlace).length() <= hints.touchDoubleTapDistance();
    m_tapped = again ? 0 : event.timestamp();
    m_tapPlace = place;
    return again;
}

ZoomInput::Step ZoomInput::pinch(const QWidget& widget, const QTouchEvent& event) {
    const auto& points = event.points();
    const QLineF line(
        inWindow(widget, points[0].globalPosition()), inWindow(widget, points[1].globalPosition())
    );
    const double before = std::exchange(m_distance, line.length());
    const int steps = before > 0 ? takeScale(line.length() / before) : 0;
    return {steps, toDevicePixels(widget, line.center())};
}

} // namespace raincast
