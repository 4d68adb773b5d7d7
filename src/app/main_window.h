// SPDX-License-Identifier: MIT
#pragma once

#include "window/command_set.h"
#include "window/window.h"

#include <QEvent>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QMainWindow;
class QToolBar;

namespace raincast {

/// The program's one top-level window: its bar with the menu and the tool buttons, its keys, and
/// the timer that beats the heartbeat. The object that is attached to it after this one (CAppPaged)
/// fills it, and hears of its events first.
class MainWindow : public Window {
public:
    static constexpr int kHeartbeatTimer = 943;
    static constexpr int kHeartbeatMilliseconds = 100;

    struct Callbacks {
        /// The user or the desktop wants the program to end. The window stays until destroy().
        std::function<void()> endRequested;
        /// The window is being destroyed; the bar and its menu still live.
        std::function<void()> destroyed;
        /// What the window shows, for its title; may be missing.
        std::function<QString()> caption = {};
        /// Whether what it shows is being loaded, which can be stopped; may be missing.
        std::function<bool()> loading = {};
    };

    /// Makes the window, without showing it, and starts its timer.
    explicit MainWindow(Callbacks callbacks);
    ~MainWindow() override;

    /// Null once destroyed, as is the menu.
    [[nodiscard]] QMainWindow* frame() const { return m_frame; }
    /// The client area: the central widget.
    [[nodiscard]] QWidget* client() const;
    [[nodiscard]] CommandSet& commands() { return m_commands; }
    /// The first submenu of the menu bar.
    [[nodiscard]] QMenu* pageMenu() const;

    /// Shows the window and paints it at once where it can be seen.
    void showNow();
    /// Brings the window, and a dialog that is open, in front of other windows, with the keyboard.
    /// `token`: the desktop's permission, from the instance that asks for this; may be empty.
    void bringToFront(const QByteArray& token);
    /// Destroys the window.
    void destroy();

    void onCommand(int id, QWidget* control, int notification) override;
    void onTimer(int id) override;
    void onDestroy() override;
    bool windowProcedure(QEvent& event) override;

private:
    void makeBar();
    void toggleFullScreen();
    void openMenu();
    void altReleased();
    void followCaption();
    void followPlace(QEvent::Type event);
    void followLoading();

    Callbacks m_callbacks;
    QPointer<QMainWindow> m_frame;
    QToolBar* m_tools = nullptr; ///< the frame's
    CommandSet m_commands;
    bool m_painted = false;
    int m_loadingBeats = 0; ///< how long something has been loading
};

} // namespace raincast
