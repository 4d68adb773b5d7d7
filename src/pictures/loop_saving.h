// SPDX-License-Identifier: MIT
#pragma once

#include "core/background.h"
#include "core/whole_file.h"
#include "pictures/animated_gif.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace raincast {

/// Writes a loop into a file, in the background. The file is whole, or it is as it was before.
class LoopSaving {
public:
    using Done = std::function<void(const WholeFile::Result& result)>;

    /// Begins. `progress` is called with the number of frames that are written, `done` at the end;
    /// both from the event loop, and `done` may end this.
    LoopSaving(
        const QString& path, std::vector<AnimatedGif::Frame> frames,
        std::function<void(int done)> progress, Done done
    );
    /// Cancels what is not done: nothing is called any more.
    ~LoopSaving();
    LoopSaving(const LoopSaving&) = delete;
    LoopSaving& operator=(const LoopSaving&) = delete;

private:
    std::shared_ptr<std::atomic<bool>> m_cancelled = std::make_shared<std::atomic<bool>>(false);
    Mailbox m_progress;
    Background m_background;
};

} // namespace raincast
