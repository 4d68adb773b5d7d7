// SPDX-License-Identifier: MIT
#include "pictures/animated_gif.h"

#include "pictures/gif_palette.h"

#include <QRect>

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <vector>

namespace raincast {

namespace {

constexpr int kMostExtent = 65535;
constexpr int kMillisecondsPerUnit = 10;

struct FreeColours {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using ColourMap = std::unique_ptr<ColorMapObject, FreeColours>;

ColourMap colourMap(const std::vector<QRgb>& colours) {
    std::array<GifColorType, 256> entries{};
    std::transform(colours.begin(), colours.end(), entries.begin(), [](QRgb colour) {
        const auto part = [](int value) { return static_cast<GifByteType>(value); };
        return GifColorType{part(qRed(colour)), part(qGreen(colour)), part(qBlue(colour))};
    });
    return ColourMap(
        GifMakeMapObject(static_cast<int>(std::bit_ceil(colours.size())), entries.data())
    );
}

int give(GifFileType* gif, const GifByteType* bytes, int count) {
    const auto& sink = *static_cast<const AnimatedGif::Sink*>(gif->UserData);
    return sink({reinterpret_cast<const char*>(bytes), count}) ? count : 0;
}

/// Where two pictures of one size differ; a single pixel where they do not, since a GIF has no
/// empty image.
QRect difference(const QImage& before, const QImage& now) {
    if (before.isNull()) {
        return now.rect();
    }
    QRect area;
    for (int row = 0; row < now.height(); ++row) {
        const auto* const old = reinterpret_cast<const QRgb*>(before.constScanLine(row));
        const auto* const line = reinterpret_cast<const QRgb*>(now.constScanLine(row));
        const auto* const end = line + now.width();
        const auto* const first = std::mismatch(line, end, old).first;
        if (first != end) {
            const auto* last = end;
            while (last[-1] == old[last - 1 - line]) {
                --last;
            }
            area |= QRect(
                QPoint(static_cast<int>(first - line), row),
                QPoint(static_cast<int>(last - line) - 1, row)
            );
        }
    }
    return area.isEmpty() ? QRect(0, 0, 1, 1) : area;
}

class Writer {
public:
    Writer(GifFileType* gif, GifPalette& palette) : m_gif(gif), m_palette(palette) {}

    bool head(const QSize& size) {
        const ColourMap map = colourMap(m_palette.colours());
        EGifSetGifVersion(m_gif, true);
        return map &&
               EGifPutScreenDesc(
                   m_gif, size.width(), size.height(), map->BitsPerPixel, 0, map.get()
               ) == GIF_OK &&
               forEver();
    }

    bool frame(const AnimatedGif::Frame& frame, const QRect& part) {
        GraphicsControlBlock control{};
        control.DisposalMode = DISPOSE_DO_NOT;
        control.DelayTime = frame.milliseconds / kMillisecondsPerUnit;
        control.TransparentColor = NO_TRANSPARENT_COLOR;
        std::array<GifByteType, 4> extension{};
        EGifGCBToExtension(&control, extension.data());
        return EGifPutExtension(
                   m_gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(extension.size()),
                   extension.data()
               ) == GIF_OK &&
               EGifPutImageDesc(
                   m_gif, part.x(), part.y(), part.width(), part.height(), false, nullptr
               ) == GIF_OK &&
               rows(frame.picture, part);
    }

private:
    // What browsers and viewers look for: the loop's count, 0 for no end.
    bool forEver() {
        static constexpr char kName[] = "NETSCAPE2.0";
        static constexpr std::array<GifByteType, 3> kNoEnd{1, 0, 0};
        return EGifPutExtensionLeader(m_gif, APPLICATION_EXT_FUNC_CODE) == GIF_OK &&
               EGifPutExtensionBlock(m_gif, sizeof kName - 1, kName) == GIF_OK &&
               EGifPutExtensionBlock(m_gif, kNoEnd.size(), kNoEnd.data()) == GIF_OK &&
               EGifPutExtensionTrailer(m_gif) == GIF_OK;
    }

    bool rows(const QImage& picture, const QRect& part) {
        std::vector<GifPixelType> indices(static_cast<std::size_t>(part.width()));
        for (int row = part.top(); row <= part.bottom(); ++row) {
            const auto* const line =
                reinterpret_cast<const QRgb*>(picture.constScanLine(row)) + part.left();
            std::transform(line, line + part.width(), indices.begin(), [this](QRgb colour) {
                return m_palette.indexOf(colour);
            });
            if (EGifPutLine(m_gif, indices.data(), part.width()) != GIF_OK) {
                return false;
            }
        }
        return true;
    }

    GifFileType* m_gif;
    GifPalette& m_palette;
};

bool writeFrames(
    Writer& writer, std::span<const AnimatedGif::Frame> frames,
    const AnimatedGif::Progress& progress
) {
    QImage before;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const AnimatedGif::Frame& frame = frames[i];
        if (!writer.frame(frame, difference(before, frame.picture)) ||
            !progress(static_cast<int>(i) + 1)) {
            return false;
        }
        before = frame.picture;
    }
    return true;
}

} // namespace

bool AnimatedGif::write(std::span<const Frame> frames, const Sink& sink, const Progress& progress) {
    const QSize size = frames.empty() ? QSize() : frames.front().picture.size();
    if (size.isEmpty() || size.width() > kMostExtent || size.height() > kMostExtent) {
        return false;
    }
    std::vector<QImage> pictures;
    std::transform(
        frames.begin(), frames.end(), std::back_inserter(pictures),
        [](const Frame& frame) { return frame.picture; }
    );
    GifPalette palette(pictures);
    Sink taken = sink;
    GifFileType* const gif = EGifOpen(&taken, give, nullptr);
    if (gif == nullptr) {
        return false;
    }
    Writer writer(gif, palette);
    const bool written = writer.head(size) && writeFrames(writer, frames, progress);
    const bool closed = EGifCloseFile(gif, nullptr) == GIF_OK;
    return written && closed;
}

} // namespace raincast
