// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QImage>

#include <functional>
#include <span>

namespace raincast {

/// Writes pictures as an animated GIF (89a) that plays for ever: all of one size, Format_RGB32, of
/// at most 65535 pixels' extent. Of a picture only the part that differs from the one before is
/// kept.
class AnimatedGif {
public:
    struct Frame {
        QImage picture;
        int milliseconds = 500; ///< until the next one; hundredths of a second are kept
    };
    /// Takes the file's bytes, in their order; false ends the writing.
    using Sink = std::function<bool(QByteArrayView bytes)>;
    /// Called after each frame; false ends the writing.
    using Progress = std::function<bool(int done)>;

    /// Returns whether all was written.
    [[nodiscard]] static bool
    write(std::span<const Frame> frames, const Sink& sink, const Progress& progress);
};

} // namespace raincast
