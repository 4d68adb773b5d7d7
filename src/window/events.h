// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>

class QMenu;
class QWidget;

namespace raincast {

/// The framework's own events. They are sent (QCoreApplication::sendEvent), never posted, to the
/// window that they concern and pass through its Window objects like Qt's events do.
///
/// The numbers are apart from the codes of QEvent::registerEventType, which counts down from the
/// top.
namespace event_type {
inline constexpr auto command = static_cast<QEvent::Type>(QEvent::User + 1);
inline constexpr auto timer = static_cast<QEvent::Type>(QEvent::User + 3);
inline constexpr auto size = static_cast<QEvent::Type>(QEvent::User + 4);
inline constexpr auto character = static_cast<QEvent::Type>(QEvent::User + 5);
inline constexpr auto menuPopup = static_cast<QEvent::Type>(QEvent::User + 6);
inline constexpr auto destroy = static_cast<QEvent::Type>(QEvent::User + 7);
} // namespace event_type

/// What happened to the control that sends a command. Menus, keys and buttons send
/// `clicked`.
enum Notification : int {
    clicked = 0,
    selectionChanged = 1, ///< of a list or a combo box
    doubleClicked = 2,    ///< on a row of a list
    textChanged = 0x300,  ///< of an edit field
};

/// A menu entry was chosen, a key of an accelerator pressed, or a control used.
class CommandEvent : public QEvent {
public:
    CommandEvent(int id, QWidget* control, int notification)
        : QEvent(event_type::command), m_control(control), m_id(id), m_notification(notification) {}

    [[nodiscard]] int id() const { return m_id; }
    [[nodiscard]] QWidget* control() const { return m_control; } ///< null for menus and keys
    [[nodiscard]] int notification() const { return m_notification; }

private:
    QWidget* m_control;
    int m_id;
    int m_notification;
};

/// A timer started with Window::startTimer is due.
class TimerEvent : public QEvent {
public:
    explicit TimerEvent(int id) : QEvent(event_type::timer), m_id(id) {}

    [[nodiscard]] int id() const { return m_id; }

private:
    int m_id;
};

/// The client area of a window has a new size, in logical pixels.
class SizeEvent : public QEvent {
public:
    SizeEvent(int width, int height) : QEvent(event_type::size), m_width(width), m_height(height) {}

    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }

private:
    int m_width;
    int m_height;
};

/// One UTF-16 unit of the text that a key press gave; it follows the key press.
class CharacterEvent : public QEvent {
public:
    explicit CharacterEvent(char16_t unit) : QEvent(event_type::character), m_unit(unit) {}

    [[nodiscard]] char16_t unit() const { return m_unit; }

private:
    char16_t m_unit;
};

/// A menu is about to open: the time to check and grey its entries.
class MenuPopupEvent : public QEvent {
public:
    explicit MenuPopupEvent(QMenu& menu) : QEvent(event_type::menuPopup), m_menu(menu) {}

    [[nodiscard]] QMenu& menu() const { return m_menu; }

private:
    QMenu& m_menu;
};

/// The window is being destroyed; its children still live.
class DestroyEvent : public QEvent {
public:
    DestroyEvent() : QEvent(event_type::destroy) {}
};

/// Sends a command to a window.
void sendCommand(QWidget& window, int id, QWidget* control = nullptr, int notification = clicked);

} // namespace raincast
