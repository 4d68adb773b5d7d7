// SPDX-License-Identifier: MIT
#pragma once

#include "window/events.h"

#include <QPointer>
#include <QWidget> // widget() converts

#include <cstdint>

class QPaintDevice;
class QRegion;

namespace raincast {

/// An object that takes part in a widget's life: attached to it, it sees every event before the
/// widget does, as calls of the operations below.
///
/// Several objects may be attached to one widget; the one attached last is asked first. An event
/// that an object does not consume goes on to the one attached before it, and in the end to the
/// widget itself. An object is bound to at most one widget, from attach() until that widget is
/// destroyed with destroyWindow(); it borrows the widget. A widget that Qt deletes by itself only
/// unbinds its objects: only destroyWindow() announces the destruction.
///
/// User-interface thread only.
class Window {
public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// The window must be painted. `target` is the widget, ready for a QPainter that must be gone
    /// when the call returns; the widget's own painting comes after it.
    virtual void onPaint(QPaintDevice& target, const QRegion& exposed);
    /// The window is being destroyed; its children still live.
    virtual void onDestroy();
    virtual void onCommand(int id, QWidget* control, int notification);
    /// The left button (or a finger) went down at x, y in device pixels of the window.
    virtual void
    onLeftButton(bool doubleClick, std::int16_t x, std::int16_t y, Qt::KeyboardModifiers keys);
    /// A timer of startTimer() is due. Not called while the program is busy (BusyGuard).
    virtual void onTimer(int id);
    /// The client area has this size, in logical pixels.
    virtual void onSize(int width, int height);
    /// Destroys the window if there still is one.
    virtual ~Window();
    /// Takes an event apart and calls the operation above that it is for. Returns whether the
    /// event is consumed and goes no further; the default consumes none.
    virtual bool windowProcedure(QEvent& event);

    /// Binds this object to a widget, in front of those bound to it already. `client` is the
    /// widget whose size is the window's client area, the central widget of a main window; null
    /// for the one that an earlier object named, or else the widget itself.
    void attach(QWidget& widget, QWidget* client = nullptr);

    /// The widget, null before attach() and once it is destroyed.
    [[nodiscard]] QWidget* widget() const { return m_widget; }

    /// Starts or restarts a timer of this window; it ends with the window.
    void startTimer(int id, int milliseconds);
    void stopTimer(int id);

    /// Destroys a window: sends a DestroyEvent to the widget and then, outermost first, to its
    /// children, all of which still live. Then unbinds every one of them, hides the widget and
    /// leaves its deletion to Qt's event loop, since it may be handling an event right now. A
    /// second call does nothing.
    static void destroyWindow(QWidget& widget);

private:
    friend class WindowMap;

    QPointer<QWidget> m_widget;
};

} // namespace raincast
