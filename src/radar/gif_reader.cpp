// SPDX-License-Identifier: MIT
#include "radar/gif_reader.h"

#include "radar/bitmap.h"

#include <QPoint>

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

namespace raincast {

namespace {

struct CloseGif {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// What is left to read; giflib's read callback takes from its front.
struct Source {
    const char* next;
    qsizetype left;
};

int readFromSource(GifFileType* gif, GifByteType* to, int wanted) {
    auto* source = static_cast<Source*>(gif->UserData);
    const auto count = std::min<qsizetype>(wanted, source->left);
    std::memcpy(to, source->next, static_cast<std::size_t>(count));
    source->next += count;
    source->left -= count;
    return static_cast<int>(count);
}

/// Reads one extension whole. A graphics control extension sets `transparent` to the index that it
/// names, or to none.
bool readExtension(GifFileType* gif, int& transparent) {
    int kind = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif, &kind, &block) == GIF_ERROR) {
        return false;
    }
    while (block != nullptr) {
        GraphicsControlBlock control{};
        // A block's first byte is its length.
        if (kind == GRAPHICS_EXT_FUNC_CODE &&
            DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
            transparent = control.TransparentColor;
        }
        if (DGifGetExtensionNext(gif, &block) == GIF_ERROR) {
            return false;
        }
    }
    return true;
}

/// Reads up to the first image's descriptor; false without one. `transparent` becomes the
/// index of its transparent colour or NO_TRANSPARENT_COLOR.
bool readToFirstImage(GifFileType* gif, int& transparent) {
    transparent = NO_TRANSPARENT_COLOR;
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(gif, &record) == GIF_OK) {
        if (record == IMAGE_DESC_RECORD_TYPE) {
            return DGifGetImageDesc(gif) == GIF_OK;
        }
        if (record != EXTENSION_RECORD_TYPE || !readExtension(gif, transparent)) {
            return false;
        }
    }
    return false;
}

std::span<const GifColorType> coloursOf(const GifFileType& gif) {
    const ColorMapObject* map = gif.Image.ColorMap != nullptr ? gif.Image.ColorMap : gif.SColorMap;
    if (map == nullptr) {
        return {};
    }
    return {map->Colors, static_cast<std::size_t>(map->ColorCount)};
}

/// The colours in 256 entries, white where the file defines none and for the transparent one.
PlainPicture::Colours colourTable(std::span<const GifColorType> colours, int transparent) {
    PlainPicture::Colours table;
    table.fill(kTransparentWhite);
    std::transform(colours.begin(), colours.end(), table.begin(), [](const GifColorType& colour) {
        return 0xFF00'0000U | quint32{colour.Red} << 16 | quint32{colour.Green} << 8 | colour.Blue;
    });
    if (transparent != NO_TRANSPARENT_COLOR) {
        table[static_cast<std::size_t>(transparent)] = kTransparentWhite;
    }
    return table;
}

struct Pass {
    int first;
    int step;
};
constexpr std::array<Pass, 4> kInterlaced = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
constexpr std::array<Pass, 1> kProgressive = {{{0, 1}}};

bool readRows(GifFileType* gif, PlainPicture& picture) {
    const auto passes = gif->Image.Interlace ? std::span<const Pass>(kInterlaced)
                                             : std::span<const Pass>(kProgressive);
    for (const Pass& pass : passes) {
        for (int row = pass.first; row < picture.size().height(); row += pass.step) {
            if (DGifGetLine(gif, picture.row(row), picture.size().width()) == GIF_ERROR) {
                return false;
            }
        }
    }
    return true;
}

/// All indices of a line, or-ed together, eight at a time.
uchar orOf(const uchar* line, int width) {
    std::uint64_t sum = 0;
    int column = 0;
    for (; column + 8 <= width; column += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, line + column, sizeof eight);
        sum |= eight;
    }
    for (; column < width; ++column) {
        sum |= line[column];
    }
    sum |= sum >> 32;
    sum |= sum >> 16;
    return static_cast<uchar>(sum | sum >> 8);
}

/// Whether every pixel names a colour that the file defines, or the transparent one. The number of
/// colours is always a power of two: the bits of a line's indices, or-ed together, show it.
bool usesDefinedColours(const PlainPicture& picture, std::size_t defined, int transparent) {
    const int width = picture.size().width();
    const bool definesAll = defined == picture.colours().size();
    for (int row = 0; !definesAll && row < picture.size().height(); ++row) {
        const uchar* line = picture.row(row);
        const bool good =
            orOf(line, width) < defined || std::all_of(line, line + width, [&](uchar index) {
                return index < defined || index == transparent;
            });
        if (!good) {
            return false;
        }
    }
    return true;
}

PlainPicture placedOnScreen(PlainPicture picture, QPoint place, QSize screen) {
    if (picture.size() == screen) {
        return picture;
    }
    PlainPicture result(screen, PlainPicture::Pixels::rgb);
    if (result.isNull()) {
        return result;
    }
    for (int row = 0; row < screen.height(); ++row) {
        auto* const line = reinterpret_cast<quint32*>(result.row(row));
        std::fill_n(line, screen.width(), kTransparentWhite);
        const int inside = row - place.y();
        if (0 <= inside && inside < picture.size().height()) {
            const uchar* const indices = picture.row(inside);
            std::transform(
                indices, indices + picture.size().width(), line + place.x(),
                [&picture](uchar index) { return picture.colours()[index]; }
            );
        }
    }
    return result;
}

} // namespace

PlainPicture readGif(QByteArrayView bytes, qint64 mostPixels) {
    if (!bytes.startsWith("GIF8")) { // giflib takes any version
        return {};
    }
    Source source{bytes.data(), bytes.size()};
    const Gif gif(DGifOpen(&source, readFromSource, nullptr));
    int transparent = NO_TRANSPARENT_COLOR;
    if (!gif || !readToFirstImage(gif.get(), transparent)) {
        return {};
    }
    const GifImageDesc& image = gif->Image;
    const QSize screen(
        std::max(gif->SWidth, image.Left + image.Width),
        std::max(gif->SHeight, image.Top + image.Height)
    );
    const auto colours = coloursOf(*gif);
    if (image.Width <= 0 || image.Height <= 0 || colours.empty() ||
        qint64{screen.width()} * screen.height() > mostPixels) {
        return {};
    }
    PlainPicture picture({image.Width, image.Height}, PlainPicture::Pixels::indexed);
    if (picture.isNull() || !readRows(gif.get(), picture) ||
        !usesDefinedColours(picture, colours.size(), transparent)) {
        return {};
    }
    picture.colours() = colourTable(colours, transparent);
    return placedOnScreen(std::move(picture), {image.Left, image.Top}, screen);
}

} // namespace raincast
