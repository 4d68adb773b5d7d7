// SPDX-License-Identifier: MIT
#include "server/serve_command.h"

#include "platform/clock.h"
#include "server/home_page.h"
#include "server/image_tree.h"
#include "server/layer_store.h"
#include "server/level3_folder.h"
#include "server/map_data.h"
#include "server/periodic_task.h"
#include "server/publisher.h"
#include "server/sample_weather.h"
#include "server/status_page.h"
#include "server/stop_signals.h"
#include "server/tree_server.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileSystemWatcher>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTimer>

#include <cerrno>
#include <cstdio>
#include <ostream>

namespace raincast {

namespace {

using namespace std::chrono_literals;

// How soon a change that the system does not tell of (a file that grows) is seen.
constexpr auto kRescan = 5s;
constexpr auto kLeastBetweenScans = 500ms;
constexpr auto kPublish = 30s;

void logToError(const QString& line) {
    std::fprintf(stderr, "%s\n", line.toUtf8().constData());
}

QString cacheFolder(const ServeOptions& options) {
    return options.cacheFolder.isEmpty()
               ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                     QStringLiteral("/raincast-server")
               : options.cacheFolder;
}

/// Each folder of products has a store of frames of its own.
QString storeFolder(const ServeOptions& options) {
    const QByteArray folder = QDir(options.level3Folder).absolutePath().toUtf8();
    return cacheFolder(options) + QStringLiteral("/frames-") +
           QString::fromLatin1(
               QCryptographicHash::hash(folder, QCryptographicHash::Sha1).toHex().left(12)
           );
}

/// Watches the folder of products: a thread renders what is new, woken by the system's
/// notifications, and looks by itself from time to time.
class Level3Watch {
public:
    explicit Level3Watch(Level3Folder& folder)
        : m_folder(folder),
          m_task(kRescan, kLeastBetweenScans, [this](const std::stop_token& stop) {
              m_folder.rescan(stop);
          }) {
        const auto wake = [this] { m_task.wake(); };
        QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, wake);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { watchFolders(); });
        m_timer.start(kRescan);
        watchFolders();
    }

private:
    void watchFolders() {
        QStringList unwatched;
        const QStringList watched = m_watcher.directories();
        for (const QString& folder : m_folder.folders()) {
            if (!watched.contains(folder)) {
                unwatched += folder;
            }
        }
        if (!unwatched.isEmpty()) {
            m_watcher.addPaths(unwatched);
        }
    }

    Level3Folder& m_folder;
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
    PeriodicTask m_task;
};

/// Everything that a running server consists of, in the order in which it depends on each other.
class RunningServer {
public:
    RunningServer(const ServeOptions& options, ServerLog log)
        : m_options(options), m_log(std::move(log)),
          m_maps(MapDataFiles::find(options.mapDataFolder, options.roadsFile)),
          m_layers(m_maps, cacheFolder(options) + QStringLiteral("/layers")),
          m_frames(makeFrames()), m_tree(*m_frames, m_layers),
          m_publisher(
              m_tree, options.publishFolder, options.publishSites, m_maps.files().stamp(), m_log
          ) {
        for (const QString& line : m_maps.files().missing()) {
            m_log(line);
        }
        if (!options.roadsFile.isEmpty() && !m_maps.hasRoads()) {
            m_log(QStringLiteral("The highways layer is empty: %1 has no lines that can be read.")
                      .arg(options.roadsFile));
        }
        const QByteArray home = homePage(m_maps, isSample());
        m_tree.addPage("/", "text/html; charset=utf-8", [home] { return home; });
        m_tree.addPage("/status", "application/json", [this] { return statusOfNow(); });
    }

    [[nodiscard]] bool listen() {
        m_server = std::make_unique<TreeServer>([this](std::string_view path) {
            return m_tree.find(path);
        });
        return m_server->start(m_options.listen->address, m_options.listen->port);
    }

    [[nodiscard]] bool publishOnce() {
        if (m_level3 != nullptr) {
            m_level3->rescan();
        }
        return m_publisher.publish();
    }

    void work() {
        if (m_level3 != nullptr) {
            m_watch = std::make_unique<Level3Watch>(*m_level3);
        }
        if (!m_options.publishFolder.isEmpty()) {
            m_publishing =
                std::make_unique<PeriodicTask>(kPublish, 0ms, [this](const std::stop_token& stop) {
                    m_allPublished = m_publisher.publish(stop);
                });
        }
    }

    /// "Serving sample weather at http://127.0.0.1:8155/"
    [[nodiscard]] QString readyLine() const {
        const QString what = isSample() ? QStringLiteral("sample weather") : m_options.level3Folder;
        if (!m_server) {
            return QStringLiteral("Publishing %1 in %2").arg(what, m_options.publishFolder);
        }
        const QString& address = m_options.listen->address;
        return QStringLiteral("Serving %1 at http://%2:%3/")
            .arg(what, address.contains(u':') ? u'[' + address + u']' : address)
            .arg(m_server->port());
    }

private:
    [[nodiscard]] bool isSample() const { return m_options.level3Folder.isEmpty(); }

    std::unique_ptr<FrameSource> makeFrames() {
        if (isSample()) {
            return std::make_unique<SampleWeather>(m_options.hours);
        }
        auto folder = std::make_unique<Level3Folder>(
            m_options.level3Folder, storeFolder(m_options), m_options.hours, m_log
        );
        m_level3 = folder.get();
        return folder;
    }

    [[nodiscard]] QByteArray statusOfNow() const {
        ServerStatus status{
            isSample() ? QStringLiteral("sample") : QStringLiteral("level3"), m_started,
            std::nullopt, m_tree.bytesInMemory()};
        if (m_server) {
            status.counts = m_server->counts();
        }
        return statusPage(status, *m_frames, m_maps);
    }

    const ServeOptions& m_options;
    ServerLog m_log;
    FileTime m_started = Clock::current().now();
    Level3Folder* m_level3 = nullptr;
    MapData m_maps;
    LayerStore m_layers;
    std::unique_ptr<FrameSource> m_frames;
    ImageTree m_tree;
    Publisher m_publisher;
    std::atomic<bool> m_allPublished = false;
    std::unique_ptr<TreeServer> m_server;
    std::unique_ptr<Level3Watch> m_watch;
    std::unique_ptr<PeriodicTask> m_publishing;
};

ServerExit failed(const QString& text) {
    logToError(QStringLiteral("raincast-server: ") + text);
    return ServerExit::failed;
}

ServerExit cannotListen(const ListenAddress& at, int error) {
    const bool tells = error == EADDRINUSE || error == EADDRNOTAVAIL || error == EACCES;
    return failed(QStringLiteral("Cannot listen at %1, port %2%3.")
                      .arg(at.address)
                      .arg(at.port)
                      .arg(tells ? QStringLiteral(": ") + qt_error_string(error) : QString()));
}

} // namespace

ServerExit runServer(const ServeOptions& options, StopSignals& signals, std::ostream& out) {
    if (options.endWithParent) {
        StopSignals::endWithParent();
    }
    if (!options.level3Folder.isEmpty() && !QFileInfo(options.level3Folder).isDir()) {
        return failed(QStringLiteral("%1 is no folder.").arg(options.level3Folder));
    }
    if (!options.roadsFile.isEmpty() && !QFileInfo(options.roadsFile).isFile()) {
        return failed(QStringLiteral("%1 is no file.").arg(options.roadsFile));
    }
    RunningServer server(
        options, options.quiet ? ServerLog([](const QString&) {}) : ServerLog(logToError)
    );
    errno = 0;
    if (options.listen && !server.listen()) {
        return cannotListen(*options.listen, errno);
    }
    if (options.once) {
        return server.publishOnce() ? ServerExit::good : ServerExit::failed;
    }
    server.work();
    out << server.readyLine().toStdString() << std::endl;
    signals.onStop([] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    return ServerExit::good;
}

} // namespace raincast
