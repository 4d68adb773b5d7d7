// SPDX-License-Identifier: MIT
#include "maps/layer_gif.h"

#include "radar/image/gif_writer.h"

#include <QImage>

#include <unordered_map>

namespace raincast {

namespace {

constexpr int kHalfCovered = 128;

/// The colours of a picture and the index of each pixel. `mask` has the bits of a colour that
/// count.
struct Indexed {
    IndexedPicture pixels;
    std::vector<QRgb> colours{qRgba(255, 255, 255, 0)};
};

bool tryIndex(const QImage& picture, QRgb mask, Indexed& result) {
    std::unordered_map<QRgb, std::uint8_t> known;
    for (int row = 0; row < picture.height(); ++row) {
        const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(row));
        std::uint8_t* const indices = result.pixels.row(row);
        for (int column = 0; column < picture.width(); ++column) {
            std::uint8_t index = 0;
            if (qAlpha(line[column]) >= kHalfCovered) {
                const QRgb colour = (line[column] & mask) | 0xFF00'0000;
                const auto [entry, isNew] =
                    known.try_emplace(colour, static_cast<std::uint8_t>(result.colours.size()));
                if (isNew) {
                    if (result.colours.size() == 256) {
                        return false;
                    }
                    result.colours.push_back(colour);
                }
                index = entry->second;
            }
            indices[column] = index;
        }
    }
    return true;
}

} // namespace

std::optional<QByteArray> layerGif(const QImage& picture) {
    const QImage plain = picture.convertToFormat(QImage::Format_ARGB32);
    // Each mask leaves fewer colours; the last at most 64. None of them makes a colour white.
    for (const QRgb mask : {0x00FF'FFFFU, 0x00FC'FCFCU, 0x00F0'F0F0U, 0x00C0'C0C0U}) {
        Indexed indexed{IndexedPicture(plain.width() / kFrameWidth)};
        if (tryIndex(plain, mask, indexed)) {
            if (indexed.colours.size() == 1) {
                indexed.colours.push_back(0xFF00'0000);
            }
            return writeGif(indexed.pixels, indexed.colours);
        }
    }
    return std::nullopt;
}

} // namespace raincast
