// SPDX-License-Identifier: MIT
#pragma once

#include "app/app_options.h"
#include "app/exposures.h"
#include "app/keeper.h"
#include "app/local_server.h"
#include "app/position_feeds.h"
#include "app/position_source_settings_type.h"
#include "app/raincast_app.h"
#include "core/timers.h"
#include "position/position_receiver.h"

#include <memory>

namespace raincast {

class MainWindow;
class LogOut;
class SingleInstance;

/// One run of the viewer, from its settings to its settings: loads them, shows the main window with
/// the pages of the page file, runs the event loop and saves pages and settings at the end.
class Viewer {
public:
    explicit Viewer(AppOptions options);
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Runs until the user, the desktop or a signal ends it; returns the process's exit status. It
    /// is 0 at once, with nothing written, when a viewer with the same page file runs already. To
    /// be called once.
    [[nodiscard]] int run();

    /// Asks the run to end, from wherever in it: open dialogs end as cancelled, what waits returns
    /// first; then pages and settings are saved. If the event loop does not run yet it will not.
    /// Says on standard error what cannot be saved: the user may not be in front of the window.
    void requestEnd();

    /// Saves pages and settings without ending: the desktop may end the program any moment now.
    void saveNow();

    /// Null before run() and once the window is destroyed.
    [[nodiscard]] MainWindow* window() const { return m_window.get(); }
    [[nodiscard]] const CRaincastApp& application() const { return m_application; }
    [[nodiscard]] const PositionFeeds& feeds() const { return m_feeds; }

private:
    [[nodiscard]] bool forAPerson() const { return m_options.screenshot.isEmpty(); }
    /// The exit status of a run that was asked to end: a picture has not been made then.
    [[nodiscard]] int endStatus() const { return forAPerson() ? 0 : 1; }
    void loadSettings();
    [[nodiscard]] bool claimPageFile();
    void createWindow();
    void loadPages();
    void saveAtExit();
    void openPositionSource();
    [[nodiscard]] int loop();
    void pictureTaken(bool saved);
    void closedByUser();
    void end();
    [[nodiscard]] Keeper::Audience audience() const;
    void savePages();
    void saveSettings();

    AppOptions m_options;
    Exposures m_exposures;
    LocalServer m_localServer;
    PositionFeeds m_feeds;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<Keeper> m_keeper;
    std::unique_ptr<LogOut> m_logOut;
    std::unique_ptr<MainWindow> m_window;
    CRaincastApp m_application;
    QtTimers m_timers;
    PositionReceiver m_receiver{m_timers};
    PositionSourceSettingsType m_positionSource{m_receiver};
    bool m_looping = false;
    bool m_userIsThere = false; ///< to be asked when something cannot be saved
};

} // namespace raincast
