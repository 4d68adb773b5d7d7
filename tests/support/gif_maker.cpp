// SPDX-License-Identifier: MIT
#include "support/gif_maker.h"

#include <QtEndian>

#include <gif_lib.h>

#include <stdexcept>
#include <vector>

namespace raincast {

namespace {

int appendTo(GifFileType* gif, const GifByteType* bytes, int count) {
    static_cast<QByteArray*>(gif->UserData)->append(reinterpret_cast<const char*>(bytes), count);
    return count;
}

void must(int result) {
    if (result == GIF_ERROR) {
        throw std::runtime_error("giflib could not write the test's GIF");
    }
}

ColorMapObject* makeMap(const QList<QRgb>& colours) {
    int count = 2;
    while (count < colours.size()) {
        count *= 2;
    }
    ColorMapObject* map = GifMakeMapObject(count, nullptr);
    for (qsizetype i = 0; i < colours.size(); ++i) {
        map->Colors[i] = {
            static_cast<GifByteType>(qRed(colours[i])),
            static_cast<GifByteType>(qGreen(colours[i])),
            static_cast<GifByteType>(qBlue(colours[i]))};
    }
    return map;
}

void putTransparency(GifFileType* gif, int transparent) {
    GraphicsControlBlock control{};
    control.TransparentColor = transparent;
    GifByteType bytes[4];
    const auto size = EGifGCBToExtension(&control, bytes);
    must(EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(size), bytes));
}

void putRow(GifFileType* gif, const GifToMake& wanted, int image, int width, int row) {
    std::vector<GifPixelType> line(static_cast<std::size_t>(width));
    for (int column = 0; column < width; ++column) {
        line[static_cast<std::size_t>(column)] =
            static_cast<GifPixelType>(image == 0 ? wanted.pixel(column, row) : 0);
    }
    must(EGifPutLine(gif, line.data(), width));
}

void putImage(GifFileType* gif, const GifToMake& wanted, const ColorMapObject* map, int number) {
    const QSize size = wanted.image.isValid() ? wanted.image : wanted.screen;
    must(EGifPutImageDesc(
        gif, wanted.place.x(), wanted.place.y(), size.width(), size.height(), wanted.interlaced,
        wanted.localColours ? map : nullptr
    ));
    const int firsts[] = {0, 4, 2, 1};
    const int steps[] = {8, 8, 4, 2};
    for (int pass = 0; pass < (wanted.interlaced ? 4 : 1); ++pass) {
        const int step = wanted.interlaced ? steps[pass] : 1;
        for (int row = firsts[pass]; row < size.height(); row += step) {
            putRow(gif, wanted, number, size.width(), row);
        }
    }
}

} // namespace

QByteArray makeGif(const GifToMake& wanted) {
    QByteArray bytes;
    GifFileType* gif = EGifOpen(&bytes, appendTo, nullptr);
    if (gif == nullptr) {
        throw std::runtime_error("giflib could not begin the test's GIF");
    }
    EGifSetGifVersion(gif, wanted.transparent >= 0);
    ColorMapObject* map = makeMap(wanted.colours);
    must(EGifPutScreenDesc(
        gif, wanted.screen.width(), wanted.screen.height(), 8, 0,
        wanted.localColours ? nullptr : map
    ));
    for (int number = 0; number < wanted.images; ++number) {
        if (wanted.transparent >= 0) {
            putTransparency(gif, wanted.transparent);
        }
        putImage(gif, wanted, map, number);
    }
    GifFreeMapObject(map);
    must(EGifCloseFile(gif, nullptr));
    return bytes;
}

QByteArray gifThatClaims(QSize screen) {
    constexpr qsizetype kScreenSize = 6; // where it stands: width, then height
    QByteArray bytes = makeGif({});
    qToLittleEndian(static_cast<quint16>(screen.width()), bytes.data() + kScreenSize);
    qToLittleEndian(static_cast<quint16>(screen.height()), bytes.data() + kScreenSize + 2);
    return bytes;
}

} // namespace raincast
