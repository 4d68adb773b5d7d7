// SPDX-License-Identifier: MIT
#include "pictures/animated_gif.h"

#include "image/gif_colour_map.h"

#include <QRect>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace raincast {

namespace {

constexpr int kMostExtent = 65535;
constexpr int kMillisecondsPerUnit = 10;

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

// What browsers and viewers look for: the loop's count, 0 for no end.
bool putForEver(GifFileType* gif) {
    static constexpr char kName[] = "NETSCAPE2.0";
    static constexpr std::array<GifByteType, 3> kNoEnd{1, 0, 0};
    return EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE) == GIF_OK &&
           EGifPutExtensionBlock(gif, sizeof kName - 1, kName) == GIF_OK &&
           EGifPutExtensionBlock(gif, kNoEnd.size(), kNoEnd.data()) == GIF_OK &&
           EGifPutExtensionTrailer(gif) == GIF_OK;
}

bool putRows(GifFileType* gif, const QImage& picture, const QRect& part, GifPalette& palette) {
    std::vector<GifPixelType> indices(static_cast<std::size_t>(part.width()));
    for (int row = part.top(); row <= part.bottom(); ++row) {
        const auto* const line =
            reinterpret_cast<const QRgb*>(picture.constScanLine(row)) + part.left();
        std::transform(line, line + part.width(), indices.begin(), [&palette](QRgb colour) {
            return palette.indexOf(colour);
        });
        if (EGifPutLine(gif, indices.data(), part.width()) != GIF_OK) {
            return false;
        }
    }
    return true;
}

} // namespace

AnimatedGif::AnimatedGif(GifPalette palette, Sink sink)
    : m_palette(std::move(palette)), m_sink(std::move(sink)) {}

AnimatedGif::~AnimatedGif() {
    m_good = false;
    static_cast<void>(finish());
}

bool AnimatedGif::begin(const QSize& size) {
    if (size.isEmpty() || size.width() > kMostExtent || size.height() > kMostExtent) {
        return false;
    }
    const GifColourMap map = gifColourMap(m_palette.colours());
    m_gif = EGifOpen(&m_sink, give, nullptr);
    if (!map || m_gif == nullptr) {
        return false;
    }
    EGifSetGifVersion(m_gif, true);
    return EGifPutScreenDesc(m_gif, size.width(), size.height(), map->BitsPerPixel, 0, map.get()) ==
               GIF_OK &&
           putForEver(m_gif);
}

bool AnimatedGif::add(const Frame& frame) {
    if (m_good && m_gif == nullptr) {
        m_good = begin(frame.picture.size());
    }
    m_good = m_good && (m_before.isNull() || m_before.size() == frame.picture.size()) && put(frame);
    m_before = frame.picture;
    return m_good;
}

bool AnimatedGif::put(const Frame& frame) {
    const QRect part = difference(m_before, frame.picture);
    GraphicsControlBlock control{};
    control.DisposalMode = DISPOSE_DO_NOT;
    control.DelayTime = frame.milliseconds / kMillisecondsPerUnit;
    control.TransparentColor = NO_TRANSPARENT_COLOR;
    std::array<GifByteType, 4> extension{};
    EGifGCBToExtension(&control, extension.data());
    return EGifPutExtension(
               m_gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(extension.size()), extension.data()
           ) == GIF_OK &&
           EGifPutImageDesc(
               m_gif, part.x(), part.y(), part.width(), part.height(), false, nullptr
           ) == GIF_OK &&
           putRows(m_gif, frame.picture, part, m_palette);
}

bool AnimatedGif::finish() {
    GifFileType* const gif = std::exchange(m_gif, nullptr);
    const bool closed = gif != nullptr && EGifCloseFile(gif, nullptr) == GIF_OK;
    return std::exchange(m_good, false) && closed;
}

} // namespace raincast
