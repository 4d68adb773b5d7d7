// SPDX-License-Identifier: MIT
#include "app/viewer.h"

#include "app/background_save.h"
#include "app/log_out.h"
#include "app/main_window.h"
#include "app/screenshot.h"
#include "app/single_instance.h"
#include "app/viewer_log.h"
#include "app/window_place.h"
#include "core/end_signals.h"
#include "core/special_folders.h"
#include "core/text.h"
#include "persist/registry_store.h"
#include "position/source/position_source_setting.h"
#include "weather/servers_setting.h"
#include "window/modal.h"
#include "window/screen_metrics.h"

#include <QApplication>
#include <QMainWindow>

#include <cstdlib>
#include <utility>

namespace raincast {

namespace {

/// The desktop's permission for a window of this process to come to the front.
QByteArray activationToken() {
    return qgetenv("XDG_ACTIVATION_TOKEN");
}

// Qt's code for the window system ends the process with exit() when the display goes away; some
// desktops log out that way. No window can be touched then, but the pages can still be saved.
Viewer* running = nullptr;

/// What the command line asks of the first radar item.
FirstShow firstShow(const AppOptions& options) {
    FirstShow first;
    if (!options.siteId.isEmpty()) {
        first.choice = FirstShow::Choice{options.siteId, options.product};
    }
    if (!options.welcomeSiteId.isEmpty()) {
        first.welcomeSite = options.welcomeSiteId;
    }
    first.animate = !options.loop.isEmpty();
    return first;
}

void closePopups() {
    // A popup that is closed may open again; the count keeps that from going on for ever.
    for (int most = 100; most > 0 && QApplication::activePopupWidget() != nullptr; --most) {
        QApplication::activePopupWidget()->close();
    }
}

} // namespace

Viewer::Viewer(AppOptions options)
    : m_options(std::move(options)),
      m_localServers(
          m_options.serverProgram.isEmpty() ? LocalServer::installedProgram()
                                            : m_options.serverProgram,
          m_options.liveArguments
      ),
      m_liveWatch(
          m_downloads, m_timers, [this] { return m_application.listing(); },
          [this](bool standsIn) { sayStandIn(standsIn); }
      ) {
    m_application.useDownloads(m_downloads);
    m_application.useWarnings(m_warningWatch);
}

Viewer::~Viewer() {
    running = nullptr;
    m_saving.reset();
    m_application.clear();
}

int Viewer::run() {
    static_cast<void>(ScreenMetrics::current()); // read once, and kept
    Modal::neverAsk(!forAPerson());
    loadSettings();
    if (!claimPageFile()) {
        return 0;
    }
    createWindow();
    m_replayWatch.begin(); // before anything asks for the weather's time
    loadPages();
    saveAtExit();
    m_window->showNow();
    openPositionSource();
    m_liveWatch.begin();
    const int status = loop();
    m_receiver.use(std::nullopt);
    if (m_userIsThere) {
        Modal::forgetEnd(); // all that was open has ended
    }
    WindowPlace::keep(*m_window->frame());
    savePages();
    m_saving.reset();
    m_window->destroy();
    running = nullptr;
    saveSettings();
    return !forAPerson() && m_keeper->complained() ? 1 : status;
}

void Viewer::saveAtExit() {
    running = this;
    static const int registered = std::atexit([] {
        if (Viewer* const viewer = std::exchange(running, nullptr)) {
            viewer->m_userIsThere = false;
            viewer->savePages();
            viewer->saveSettings();
        }
    });
    static_cast<void>(registered);
}

void Viewer::loadSettings() {
    RegistryStore store = RegistryStore::inStandardFolders();
    PersistantData::loadAll(store, CGlobals::application());
    PositionSourceSetting::useForThisRun(m_options.nmea);
    ServersSetting::setForThisRun(m_options.radarServer, m_options.basemapServer);
    m_application.setFirstShow(firstShow(m_options));
    if (!m_options.pageFile.isEmpty()) {
        m_settings.useForThisRun(m_options.pageFile);
    }
}

bool Viewer::claimPageFile() {
    if (!forAPerson()) {
        return true;
    }
    const QString& configured = m_settings.configFile;
    m_instance = std::make_unique<SingleInstance>(
        configured.isEmpty() ? Keeper::usualPageFile() : configured
    );
    return m_instance->claim(activationToken());
}

void Viewer::createWindow() {
    m_window = std::make_unique<MainWindow>(MainWindow::Callbacks{
        [this] { closedByUser(); },
        [this] { m_application.clear(); },
        [this] { return m_application.caption(); },
        [this] { return m_application.loading(); },
    });
    WindowPlace::restore(*m_window->frame(), m_options.geometry);
    m_window->showNow();
    m_application.attach(
        *m_window->frame(), *m_window->client(), m_window->commands(), *m_window->pageMenu()
    );
    if (m_instance) {
        m_instance->onFront([this](const QByteArray& token) { m_window->bringToFront(token); });
    }
    m_logOut = std::make_unique<LogOut>([this] { saveNow(); });
}

void Viewer::loadPages() {
    QString& path = m_settings.configFile;
    if (path.isEmpty() && forAPerson() && applicationFolder()) {
        path = Keeper::usualPageFile();
    }
    m_keeper = std::make_unique<Keeper>(
        m_application, m_settings, path.isEmpty() ? Keeper::usualPageFile() : path
    );
    if (forAPerson()) {
        saveInBackground();
    }
    m_keeper->loadPages(m_window->frame());
    m_target.apply();
    if (m_application.current() == nullptr && !Modal::endRequested()) {
        m_application.restoreDefaultPages();
    }
}

void Viewer::saveInBackground() {
    m_saving = std::make_unique<BackgroundSave>(
        *m_keeper, m_timers,
        BackgroundSave::Callbacks{
            [this] { WindowPlace::keep(*m_window->frame()); },
            [this](const QStringList& problems) {
                const QString again = Text::tr("It is tried again every 10 seconds.");
                m_application.setNotice(
                    problems.isEmpty() ? QString() : (problems + QStringList(again)).join(u' ')
                );
            }}
    );
}

void Viewer::sayStandIn(bool standsIn) {
    const QString text = Text::tr("Live radar cannot be reached: sample weather.");
    m_application.setRetryNotice(standsIn ? text : QString(), [this] { m_liveWatch.ask(); });
}

void Viewer::openPositionSource() {
    if (const auto address = PositionSourceSetting::address(); !address) {
        const QString text = Text::tr("No position: %1").arg(address.error());
        qCCritical(viewerLog, "%s", qUtf8Printable(text));
    }
    PositionSourceSetting::apply(m_receiver);
}

int Viewer::loop() {
    if (EndSignals::came()) {
        requestEnd();
    }
    if (Modal::endRequested()) {
        return endStatus();
    }
    std::unique_ptr<Screenshot> screenshot;
    if (!forAPerson()) {
        screenshot = std::make_unique<Screenshot>(
            *m_window->frame(), m_options.screenshot,
            [this] {
                const bool mayHaveStandIn =
                    m_liveWatch.undecided() && !m_application.problem().isEmpty();
                // A loop's file needs all frames, a picture only what it shows.
                const bool coming =
                    m_options.loop.isEmpty()
                        ? m_application.pictureComing() || m_application.sharpComing()
                        : m_application.loading() || m_application.sharpLoopComing();
                return coming || mayHaveStandIn;
            },
            [this](bool saved) { pictureTaken(saved); }
        );
    }
    m_looping = true;
    const int status = QApplication::exec();
    m_looping = false;
    return status;
}

void Viewer::pictureTaken(bool saved) {
    if (!saved) {
        const QString text = Text::tr("Cannot write %1.").arg(m_options.screenshot);
        qCCritical(viewerLog, "%s", qUtf8Printable(text));
    }
    if (m_options.loop.isEmpty()) {
        endPictures(saved);
        return;
    }
    m_application.writeLoop(m_options.loop, [this, saved](const WholeFile::Result& result) {
        if (!result) {
            const QString text =
                Text::tr("Cannot write %1: %2.").arg(m_options.loop, result.error());
            qCCritical(viewerLog, "%s", qUtf8Printable(text));
        }
        endPictures(saved && result);
    });
}

void Viewer::endPictures(bool saved) {
    const QString problem = m_application.problem();
    if (!problem.isEmpty()) {
        qCCritical(viewerLog, "%s", qUtf8Printable(problem.trimmed()));
    }
    QCoreApplication::exit(saved && problem.isEmpty() ? 0 : 1);
}

void Viewer::requestEnd() {
    m_userIsThere = false;
    end();
}

// A desktop may close the windows itself when the session ends.
void Viewer::closedByUser() {
    m_userIsThere = !m_logOut || !m_logOut->underWay();
    end();
}

void Viewer::end() {
    Modal::requestEnd();
    closePopups();
    if (m_looping) {
        QCoreApplication::exit(endStatus());
    }
}

Keeper::Audience Viewer::audience() const {
    return m_userIsThere ? Keeper::Audience::user : Keeper::Audience::nobody;
}

void Viewer::saveNow() {
    m_userIsThere = false;
    if (m_window && m_window->frame() != nullptr) {
        WindowPlace::keep(*m_window->frame());
        savePages();
        saveSettings();
    }
}

// A run that makes a picture writes only the files that its options name.
void Viewer::savePages() {
    if (m_saving) {
        m_saving->settle();
    }
    if (m_keeper && (forAPerson() || !m_options.pageFile.isEmpty())) {
        m_keeper->savePages(audience(), m_window->frame());
    }
}

void Viewer::saveSettings() {
    if (m_keeper && forAPerson()) {
        m_keeper->saveSettings(audience());
    }
}

} // namespace raincast
