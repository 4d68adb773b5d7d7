// SPDX-License-Identifier: MIT
#pragma once

#include "server/periodic_task.h"

#include <QFileSystemWatcher>
#include <QTimer>

namespace raincast {

class Level3Folder;

/// Watches the folder of products. A thread renders new ones when the system reports a change, and
/// looks by itself from time to time. Needs an event loop.
class Level3Watch {
public:
    /// The folder is borrowed.
    explicit Level3Watch(Level3Folder& folder);

private:
    void watchFolders();

    Level3Folder& m_folder;
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
    PeriodicTask m_task;
};

} // namespace raincast
