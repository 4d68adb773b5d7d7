// SPDX-License-Identifier: MIT
#pragma once

#include "app/main_window.h"
#include "app/position_source_settings_type.h"
#include "app/raincast_app.h"
#include "core/resource_module.h"
#include "page/page_display.h"
#include "position/position_receiver.h"
#include "sample_server.h"
#include "support/fake_source.h"
#include "support/manual_timers.h"
#include "support/temporary_home.h"

class QMainWindow;

namespace raincast::test {

/// A viewer on the screen, of the size that it opens with at a first start: its page "Weather"
/// shows a radar item and, before it, a texture; two more pages follow, one of them switched off.
class SampleViewer {
public:
    SampleViewer();
    ~SampleViewer();
    SampleViewer(const SampleViewer&) = delete;
    SampleViewer& operator=(const SampleViewer&) = delete;

    [[nodiscard]] QMainWindow& frame() { return *m_window.frame(); }
    [[nodiscard]] CRaincastApp& application() { return m_application; }
    [[nodiscard]] PositionReceiver& receiver() { return m_receiver; }
    /// The page "Weather", while it exists.
    [[nodiscard]] CPageDisplay& page();
    /// One beat of the main window's clock: its title catches up with the page.
    void beat();
    /// Waits until the current page has loaded what it is about to load.
    void finish();
    /// Has the main window carry out a command, as its menu does.
    void command(int id);

private:
    void addPages();

    TemporaryHome m_home;
    ManualTimers m_timers;
    PositionReceiver m_receiver{m_timers, FakeSource::make};
    PositionSourceSettingsType m_positionSource{m_receiver};
    SampleServer m_server;
    ResourceModule m_resources;
    MainWindow m_window;
    CRaincastApp m_application;
};

} // namespace raincast::test
