// SPDX-License-Identifier: MIT
#pragma once

#include "app/app_options.h"
#include "app/exposures.h"
#include "app/globals.h"
#include "app/keeper.h"
#include "app/local_servers.h"
#include "app/position_feeds.h"
#include "app/position_source_settings_type.h"
#include "app/raincast_app.h"
#include "core/timers.h"
#include "map/target_setting.h"
#include "net/downloads.h"
#include "position/position_receiver.h"
#include "warnings/warning_watch.h"
#include "watch/live_watch.h"
#include "watch/replay_watch.h"

#include <memory>

namespace raincast {

class BackgroundSave;
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

    /// Runs until the user, the desktop or a signal ends it; returns the process's exit status. If
    /// a viewer with the same page file runs already, returns 0 at once and writes nothing. Call it
    /// once.
    [[nodiscard]] int run();

    /// Asks the run to end, from anywhere in it: open dialogs end as cancelled, waits return first;
    /// then pages and settings are saved. If the event loop does not run yet it will not start.
    /// Failures to save go to standard error and are not put to the user: the request does not come
    /// from the window.
    void requestEnd();

    /// Saves pages and settings without ending: the desktop may end the program any moment now.
    void saveNow();

    /// Null before run() and once the window is destroyed.
    [[nodiscard]] MainWindow* window() const { return m_window.get(); }
    [[nodiscard]] CRaincastApp& application() { return m_application; }
    [[nodiscard]] const CRaincastApp& application() const { return m_application; }
    [[nodiscard]] const PositionFeeds& feeds() const { return m_feeds; }
    /// The page file in use and what else belongs to the program as a whole.
    [[nodiscard]] const CGlobals::Persistant& settings() const { return m_settings; }

private:
    [[nodiscard]] bool forAPerson() const {
        return m_options.screenshot.isEmpty() && m_options.loop.isEmpty();
    }
    /// The exit status of a run that was asked to end: it has made no picture.
    [[nodiscard]] int endStatus() const { return forAPerson() ? 0 : 1; }
    void loadSettings();
    [[nodiscard]] bool claimPageFile();
    void createWindow();
    void loadPages();
    void saveInBackground();
    void saveAtExit();
    void openPositionSource();
    void sayStandIn(bool standsIn);
    [[nodiscard]] int loop();
    void pictureTaken(bool saved);
    void endPictures(bool saved);
    void closedByUser();
    void end();
    [[nodiscard]] Keeper::Audience audience() const;
    void savePages();
    void saveSettings();

    AppOptions m_options;
    CGlobals::Persistant m_settings;
    Exposures m_exposures;
    LocalServers m_localServers;
    Downloads m_downloads{m_localServers};
    PositionFeeds m_feeds;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<Keeper> m_keeper;
    std::unique_ptr<LogOut> m_logOut;
    std::unique_ptr<MainWindow> m_window;
    CRaincastApp m_application;
    TargetSetting m_target{m_application.marks()};
    QtTimers m_timers;
    WarningWatch m_warningWatch{m_application.marks(), m_timers};
    LiveWatch m_liveWatch;
    ReplayWatch m_replayWatch{m_downloads, m_timers};
    PositionReceiver m_receiver{m_timers};
    PositionSourceSettingsType m_positionSource{m_receiver};
    std::unique_ptr<BackgroundSave> m_saving; ///< of a run for a person
    bool m_looping = false;
    bool m_userIsThere = false; ///< and can be asked when something cannot be saved
};

} // namespace raincast
