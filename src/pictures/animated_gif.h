// SPDX-License-Identifier: MIT
#pragma once

#include "pictures/gif_palette.h"

#include <QByteArrayView>
#include <QImage>
#include <QSize>

#include <functional>

struct GifFileType;

namespace raincast {

/// Writes pictures, one after the other, as an animated GIF (89a) that plays for ever: all of one
/// size, Format_RGB32, of at most 65535 pixels' extent. Of a picture only the part that differs
/// from the one before is kept.
class AnimatedGif {
public:
    struct Frame {
        QImage picture;
        int milliseconds = 500; ///< until the next one; hundredths of a second are kept
    };
    /// Takes the file's bytes, in their order; false ends the writing.
    using Sink = std::function<bool(QByteArrayView bytes)>;

    /// Begins with the first frame's size. The palette is that of all pictures.
    AnimatedGif(GifPalette palette, Sink sink);
    ~AnimatedGif();
    AnimatedGif(const AnimatedGif&) = delete;
    AnimatedGif& operator=(const AnimatedGif&) = delete;

    /// False once something failed, as for a picture that is none or has another size.
    bool add(const Frame& frame);
    /// Ends the file. Returns whether all was written, and at least one frame.
    [[nodiscard]] bool finish();

private:
    bool begin(const QSize& size);
    bool put(const Frame& frame);

    GifPalette m_palette;
    Sink m_sink;
    GifFileType* m_gif = nullptr;
    QImage m_before;
    bool m_good = true;
};

} // namespace raincast
