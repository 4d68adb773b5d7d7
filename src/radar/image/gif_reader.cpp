// SPDX-License-Identifier: MIT
#include "radar/image/gif_reader.h"

#include "radar/image/bitmap.h"

#include <QPainter>

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace raincast {

namespace {

constexpr std::size_t kTableSize = 256;

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
QList<QRgb> colourTable(std::span<const GifColorType> colours, int transparent) {
    QList<QRgb> table(kTableSize, kTransparentWhite);
    std::transform(colours.begin(), colours.end(), table.begin(), [](const GifColorType& colour) {
        return qRgb(colour.Red, colour.Green, colour.Blue);
    });
    if (transparent != NO_TRANSPARENT_COLOR) {
        table[transparent] = kTransparentWhite;
    }
    return table;
}

struct Pass {
    int first;
    int step;
};
constexpr std::array<Pass, 4> kInterlaced = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
constexpr std::array<Pass, 1> kProgressive = {{{0, 1}}};

bool readRows(GifFileType* gif, QImage& picture) {
    const auto passes = gif->Image.Interlace ? std::span<const Pass>(kInterlaced)
                                             : std::span<const Pass>(kProgressive);
    for (const Pass& pass : passes) {
        for (int row = pass.first; row < picture.height(); row += pass.step) {
            if (DGifGetLine(gif, picture.scanLine(row), picture.width()) == GIF_ERROR) {
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
bool usesDefinedColours(const QImage& picture, std::size_t defined, int transparent) {
    for (int row = 0; defined < kTableSize && row < picture.height(); ++row) {
        const uchar* line = picture.constScanLine(row);
        const bool good = orOf(line, picture.width()) < defined ||
                          std::all_of(line, line + picture.width(), [&](uchar index) {
                              return index < defined || index == transparent;
                          });
        if (!good) {
            return false;
        }
    }
    return true;
}

QImage placedOnScreen(const QImage& picture, QPoint place, QSize screen) {
    if (picture.size() == screen) {
        return picture;
    }
    QImage result(screen, QImage::Format_RGB32);
    if (!result.isNull()) {
        result.fill(kTransparentWhite);
        QPainter(&result).drawImage(place, picture);
    }
    return result;
}

} // namespace

QImage readGif(const QByteArray& bytes, qint64 mostPixels) {
    Source source{bytes.constData(), bytes.size()};
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
    QImage picture(image.Width, image.Height, QImage::Format_Indexed8);
    if (picture.isNull() || !readRows(gif.get(), picture) ||
        !usesDefinedColours(picture, colours.size(), transparent)) {
        return {};
    }
    picture.setColorTable(colourTable(colours, transparent));
    return placedOnScreen(picture, {image.Left, image.Top}, screen);
}

} // namespace raincast
