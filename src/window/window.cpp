// SPDX-License-Identifier: MIT
#include "window/window.h"

#include "core/busy_guard.h"
#include "window/device_pixels.h"
#include "window/window_map.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <limits>
#include <vector>

namespace raincast {

namespace {

std::int16_t toInt16(int value) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<int>(value, Limits::min(), Limits::max()));
}

void leftButton(Window& window, const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton) {
        return;
    }
    const QPoint place = toDevicePixels(*window.widget(), event.scenePosition());
    window.onLeftButton(
        event.type() == QEvent::MouseButtonDblClick, toInt16(place.x()), toInt16(place.y()),
        event.modifiers()
    );
}

// A window's timers are children of its widget that carry their number in the name.
QString timerName(int id) {
    return QStringLiteral("raincastTimer%1").arg(id);
}

QTimer* findTimer(const QWidget* widget, int id) {
    return widget == nullptr
               ? nullptr
               : widget->findChild<QTimer*>(timerName(id), Qt::FindDirectChildrenOnly);
}

void stopTimers(const QWidget& widget) {
    for (QTimer* timer : widget.findChildren<QTimer*>(Qt::FindDirectChildrenOnly)) {
        if (timer->objectName().startsWith(u"raincastTimer")) {
            timer->stop();
        }
    }
}

constexpr char kDestroyed[] = "raincastDestroyed";

void tellDestroyed(QWidget& widget) {
    widget.setProperty(kDestroyed, true);
    stopTimers(widget);
    DestroyEvent event;
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

void Window::onPaint(QPaintDevice& /*target*/, const QRegion& /*exposed*/) {}
void Window::onDestroy() {}
void Window::onCommand(int /*id*/, QWidget* /*control*/, int /*notification*/) {}
void Window::onLeftButton(
    bool /*doubleClick*/, std::int16_t /*x*/, std::int16_t /*y*/, Qt::KeyboardModifiers /*keys*/
) {}
void Window::onTimer(int /*id*/) {}
void Window::onSize(int /*width*/, int /*height*/) {}

Window::~Window() {
    if (m_widget) {
        destroyWindow(*m_widget);
    }
    // Destroying twice does nothing, so that an object that dies while its window is being
    // destroyed is still bound.
    WindowMap::instance().detach(*this);
}

bool Window::windowProcedure(QEvent& event) {
    switch (static_cast<int>(event.type())) {
    case event_type::destroy:
        onDestroy();
        break;
    case event_type::size: {
        const auto& size = static_cast<const SizeEvent&>(event);
        onSize(std::max(size.width(), 0), std::max(size.height(), 0));
        break;
    }
    case QEvent::Paint:
        onPaint(*m_widget, static_cast<const QPaintEvent&>(event).region());
        break;
    case event_type::command: {
        const auto& command = static_cast<const CommandEvent&>(event);
        onCommand(command.id(), command.control(), command.notification());
        break;
    }
    case event_type::timer:
        onTimer(static_cast<const TimerEvent&>(event).id());
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        leftButton(*this, static_cast<const QMouseEvent&>(event));
        break;
    default:
        break;
    }
    return false;
}

void Window::attach(QWidget& widget, QWidget* client) {
    WindowMap::instance().attach(*this, widget, client);
}

void Window::startTimer(int id, int milliseconds) {
    QTimer* timer = findTimer(m_widget, id);
    if (timer == nullptr && m_widget) {
        timer = new QTimer(m_widget);
        timer->setObjectName(timerName(id));
        QObject::connect(timer, &QTimer::timeout, m_widget, [widget = m_widget.data(), id] {
            if (!BusyGuard::active()) {
                TimerEvent event(id);
                QCoreApplication::sendEvent(widget, &event);
            }
        });
    }
    if (timer != nullptr) {
        timer->start(milliseconds);
    }
}

void Window::stopTimer(int id) {
    if (QTimer* timer = findTimer(m_widget, id)) {
        timer->stop();
    }
}

void Window::destroyWindow(QWidget& widget) {
    if (widget.property(kDestroyed).toBool()) {
        return;
    }
    // What hears of it may delete others of the list.
    std::vector<QPointer<QWidget>> children;
    for (QWidget* child : widget.findChildren<QWidget*>()) {
        children.emplace_back(child);
    }
    tellDestroyed(widget);
    for (const QPointer<QWidget>& child : children) {
        if (child && !child->property(kDestroyed).toBool()) {
            tellDestroyed(*child);
        }
    }
    widget.hide();
    widget.deleteLater();
}

} // namespace raincast
