// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "tree/folder_watch.h"

#include <chrono>
#include <stop_token>
#include <thread>
#include <utility>

namespace raincast {

class Level3Folder;

/// Watches the folder of products: a thread renders new ones as soon as the system tells that they
/// are whole. It looks at everything by itself rarely, or every few seconds where the system does
/// not tell all (a file system of the network, no watches left).
class Level3Watch {
public:
    struct Pace {
        /// Between two looks at everything where the system should tell all, and where not.
        std::chrono::milliseconds sure = std::chrono::minutes(10);
        std::chrono::milliseconds unsure = std::chrono::seconds(5);
        /// Between two looks at files that are being written.
        std::chrono::milliseconds unfinished = std::chrono::seconds(5);
    };

    /// The folder is borrowed.
    explicit Level3Watch(Level3Folder& folder, const Pace& pace);
    ~Level3Watch();
    Level3Watch(const Level3Watch&) = delete;
    Level3Watch& operator=(const Level3Watch&) = delete;

private:
    using Time = std::chrono::steady_clock::time_point;

    void run(const std::stop_token& stop);
    void lookAtEverything(const std::stop_token& stop);
    void lookAtChanges(const std::stop_token& stop);
    void lookAgain(const std::stop_token& stop);
    void waitForChange() const;

    Level3Folder& m_folder;
    Pace m_pace;
    FileDescriptor m_end; ///< readable when the thread is to end
    FolderWatch m_watch;
    std::pair<quint64, quint64> m_watched{}; ///< device and number of the folder
    Time m_nextFullLook;
    Time m_nextSmallLook;
    std::jthread m_thread;
};

} // namespace raincast
