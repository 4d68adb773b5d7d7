// SPDX-License-Identifier: MIT
#include "image/gif_writer.h"

#include "image/gif_colour_map.h"

#include <array>

namespace raincast {

namespace {

int append(GifFileType* gif, const GifByteType* bytes, int count) {
    static_cast<QByteArray*>(gif->UserData)->append(reinterpret_cast<const char*>(bytes), count);
    return count;
}

bool writeHead(GifFileType* gif, const IndexedPicture& picture, const ColorMapObject* map) {
    GraphicsControlBlock control{};
    control.TransparentColor = 0;
    std::array<GifByteType, 4> extension{};
    EGifGCBToExtension(&control, extension.data());
    EGifSetGifVersion(gif, true);
    const int width = picture.width();
    const int height = picture.height();
    return EGifPutScreenDesc(gif, width, height, map->BitsPerPixel, 0, map) == GIF_OK &&
           EGifPutExtension(
               gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(extension.size()), extension.data()
           ) == GIF_OK &&
           EGifPutImageDesc(gif, 0, 0, width, height, false, nullptr) == GIF_OK;
}

bool writeRows(GifFileType* gif, IndexedPicture picture) {
    // The library does not change the pixels but takes a pointer that could.
    for (int row = 0; row < picture.height(); ++row) {
        if (EGifPutLine(gif, picture.row(row), picture.width()) != GIF_OK) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<QByteArray> writeGif(const IndexedPicture& picture, std::span<const QRgb> colours) {
    QByteArray bytes;
    const GifColourMap map = gifColourMap(colours);
    GifFileType* gif = map ? EGifOpen(&bytes, append, nullptr) : nullptr;
    if (gif == nullptr) {
        return std::nullopt;
    }
    const bool written = writeHead(gif, picture, map.get()) && writeRows(gif, picture);
    const bool closed = EGifCloseFile(gif, nullptr) == GIF_OK;
    return written && closed ? std::optional(bytes) : std::nullopt;
}

} // namespace raincast
