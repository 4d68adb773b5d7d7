// SPDX-License-Identifier: MIT
#pragma once

#include "window/window.h"

#include <QObject>

#include <unordered_map>
#include <vector>

class QKeyEvent;

namespace raincast {

/// Which Window objects are bound to which widget, and the one event filter that all of those
/// widgets share. One instance per process, made on first use and never destroyed: objects bound
/// through it may be static.
class WindowMap : public QObject {
public:
    [[nodiscard]] static WindowMap& instance();

    void attach(Window& window, QWidget& widget, QWidget* client);

    /// Unbinds one object; nothing if it is not bound.
    void detach(Window& window);

    /// Hands an event to the objects of `widget`, the last attached first, until one consumes it.
    /// Returns whether one did. A widget without any object is a fatal error: a message says so
    /// and the process ends with exit code 1.
    bool dispatch(QWidget& widget, QEvent& event);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Binding {
        std::vector<Window*> windows; // the last attached at the back
        QPointer<QWidget> client;
    };

    WindowMap() = default;
    [[nodiscard]] bool bound(const QWidget& widget, const Window& window) const;
    bool offer(QWidget& widget, QEvent& event, std::vector<Window*> windows);
    void sendCharacters(QWidget& widget, const QKeyEvent& event);
    void unbind(QObject* widget);
    [[nodiscard]] QWidget* windowOfClient(QObject* resized) const;

    std::unordered_map<QObject*, Binding> m_bindings;
    std::unordered_map<QObject*, QWidget*> m_clients; // client area, where another, to its window
};

} // namespace raincast
