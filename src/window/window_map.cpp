// SPDX-License-Identifier: MIT
#include "window/window_map.h"

#include "core/text.h"
#include "window/message_box.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QResizeEvent>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace raincast {

namespace {

[[noreturn]] void windowNotFound() {
    const auto text = Text::tr("Window not found in Window::wndProc\n");
    // On standard error too: the message box may have been suppressed.
    std::fputs(qPrintable(text), stderr);
    messageBox(nullptr, text, Text::tr("Fatal Error"), MessageIcon::stop);
    // Nothing of the program can be trusted to run any more, not even its static destructors.
    std::_Exit(1);
}

} // namespace

WindowMap& WindowMap::instance() {
    static auto* const map = new WindowMap;
    return *map;
}

void WindowMap::attach(Window& window, QWidget& widget, QWidget* client) {
    detach(window);
    const bool first = m_bindings.find(&widget) == m_bindings.end();
    Binding& binding = m_bindings[&widget];
    binding.windows.push_back(&window);
    window.m_widget = &widget;
    if (first) {
        binding.client = &widget;
        widget.installEventFilter(this);
        connect(&widget, &QObject::destroyed, this, &WindowMap::unbind);
    }
    if (client != nullptr && client != &widget) {
        binding.client = client;
        m_clients[client] = &widget;
        client->installEventFilter(this);
    }
}

void WindowMap::detach(Window& window) {
    QWidget* const widget = window.m_widget;
    window.m_widget = nullptr;
    const auto found = m_bindings.find(widget);
    if (found == m_bindings.end()) {
        return;
    }
    auto& windows = found->second.windows;
    windows.erase(std::remove(windows.begin(), windows.end(), &window), windows.end());
    if (windows.empty()) {
        unbind(widget);
    }
}

void WindowMap::unbind(QObject* widget) {
    const auto found = m_bindings.find(widget);
    if (found == m_bindings.end()) {
        return;
    }
    const Binding binding = std::move(found->second);
    m_bindings.erase(found);
    for (Window* window : binding.windows) {
        window->m_widget = nullptr;
    }
    for (auto client = m_clients.begin(); client != m_clients.end();) {
        client = client->second == widget ? m_clients.erase(client) : std::next(client);
    }
    disconnect(widget, &QObject::destroyed, this, nullptr);
    widget->removeEventFilter(this);
    if (binding.client && binding.client != widget) {
        binding.client->removeEventFilter(this);
    }
}

bool WindowMap::bound(const QWidget& widget, const Window& window) const {
    const auto found = m_bindings.find(const_cast<QWidget*>(&widget));
    if (found == m_bindings.end()) {
        return false;
    }
    const auto& windows = found->second.windows;
    return std::find(windows.begin(), windows.end(), &window) != windows.end();
}

// The list is a copy, and each object is looked up before it is asked: an operation may attach and
// destroy others.
bool WindowMap::offer(QWidget& widget, QEvent& event, std::vector<Window*> windows) {
    return std::any_of(windows.rbegin(), windows.rend(), [&](Window* window) {
        return bound(widget, *window) && window->windowProcedure(event);
    });
}

bool WindowMap::dispatch(QWidget& widget, QEvent& event) {
    const auto found = m_bindings.find(&widget);
    if (found == m_bindings.end()) {
        windowNotFound();
    }
    const bool consumed = offer(widget, event, found->second.windows);
    if (event.type() == event_type::destroy) {
        unbind(&widget);
    } else if (event.type() == QEvent::KeyPress) {
        sendCharacters(widget, static_cast<const QKeyEvent&>(event));
    }
    return consumed;
}

void WindowMap::sendCharacters(QWidget& widget, const QKeyEvent& event) {
    const QPointer<QWidget> target = &widget;
    const QString text = event.text();
    for (const QChar unit : text) {
        if (target) {
            CharacterEvent character(unit.unicode());
            QCoreApplication::sendEvent(target, &character);
        }
    }
}

// The window whose client area `resized` is; null for any other widget.
QWidget* WindowMap::windowOfClient(QObject* resized) const {
    const auto client = m_clients.find(resized);
    if (client != m_clients.end()) {
        return client->second;
    }
    const auto own = m_bindings.find(resized);
    const bool isClient = own != m_bindings.end() && own->second.client == resized;
    return isClient ? static_cast<QWidget*>(resized) : nullptr;
}

bool WindowMap::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        if (QWidget* const window = windowOfClient(watched)) {
            const QSize size = static_cast<const QResizeEvent*>(event)->size();
            SizeEvent sizeEvent(size.width(), size.height());
            QCoreApplication::sendEvent(window, &sizeEvent);
        }
    }
    if (m_bindings.find(watched) == m_bindings.end()) {
        return false; // a client area, or unbound by what the size started
    }
    return dispatch(static_cast<QWidget&>(*watched), *event);
}

} // namespace raincast
