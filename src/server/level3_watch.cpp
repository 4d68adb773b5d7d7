// SPDX-License-Identifier: MIT
#include "server/level3_watch.h"

#include "tree/level3_folder.h"

namespace raincast {

namespace {

using namespace std::chrono_literals;

// Finds changes that the system does not report (a file that grows) within this time.
constexpr auto kRescan = 5s;
constexpr auto kLeastBetweenScans = 500ms;

} // namespace

Level3Watch::Level3Watch(Level3Folder& folder)
    : m_folder(folder), m_task(kRescan, kLeastBetweenScans, [this](const std::stop_token& stop) {
          m_folder.rescan(stop);
      }) {
    const auto wake = [this] { m_task.wake(); };
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, wake);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { watchFolders(); });
    m_timer.start(kRescan);
    watchFolders();
}

void Level3Watch::watchFolders() {
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

} // namespace raincast
