// SPDX-License-Identifier: MIT
#pragma once

#include "core/background.h"
#include "core/whole_file.h"
#include "pictures/animated_gif.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace raincast {

/// Writes a loop into a file, in the background, one frame after the other, so that few of its
/// pictures are in memory at a time. The file is whole, or it is as it was before.
class LoopSaving {
public:
    /// Paints a frame by its index; none if that can be done no longer. Each one is painted twice:
    /// for its colours, and to be written.
    using Paint = std::function<std::optional<AnimatedGif::Frame>(int frame)>;
    using Done = std::function<void(const WholeFile::Result& result)>;

    /// Begins. `progress` is called with the number of frames that are written, `done` at the end,
    /// which may end this; all three from the event loop.
    LoopSaving(
        const QString& path, int frames, Paint paint, std::function<void(int done)> progress,
        Done done
    );
    /// Cancels what is not done: nothing is called any more.
    ~LoopSaving();
    LoopSaving(const LoopSaving&) = delete;
    LoopSaving& operator=(const LoopSaving&) = delete;

private:
    class File;

    void lookAt(int frame);
    void write(int frame);
    void end();
    void endEarly();

    int m_frames;
    Paint m_paint;
    std::function<void(int done)> m_progress;
    Done m_done;
    std::shared_ptr<File> m_file;
    Background m_background;
};

} // namespace raincast
