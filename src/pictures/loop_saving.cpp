// SPDX-License-Identifier: MIT
#include "pictures/loop_saving.h"

#include <utility>

namespace raincast {

namespace {

WholeFile::Result writeLoop(
    const QString& path, std::span<const AnimatedGif::Frame> frames,
    const std::atomic<bool>& cancelled, const AnimatedGif::Progress& progress
) {
    WholeFile file(Lasting::yes);
    bool fits = file.open(path);
    const auto sink = [&](QByteArrayView bytes) {
        fits = fits && file.write(bytes);
        return fits && !cancelled;
    };
    const bool written = fits && AnimatedGif::write(frames, sink, progress);
    if (written || !fits) {
        return file.commit(); // which says what failed
    }
    return tl::unexpected(QStringLiteral("There is not enough memory"));
}

} // namespace

LoopSaving::LoopSaving(
    const QString& path, std::vector<AnimatedGif::Frame> frames,
    std::function<void(int done)> progress, Done done
) {
    auto report = [slit = m_progress.slit(), cancelled = m_cancelled,
                   progress = std::move(progress)](int count) {
        slit.post([progress, count] { progress(count); });
        return !*cancelled;
    };
    m_background.run(
        [path, frames = std::move(frames), cancelled = m_cancelled, report = std::move(report)] {
            return writeLoop(path, frames, *cancelled, report);
        },
        std::move(done)
    );
}

LoopSaving::~LoopSaving() {
    *m_cancelled = true;
}

} // namespace raincast
