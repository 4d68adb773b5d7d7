// SPDX-License-Identifier: MIT
#include "image/gif_colour_map.h"

#include <algorithm>
#include <array>
#include <bit>

namespace raincast {

GifColourMap gifColourMap(std::span<const QRgb> colours) {
    std::array<GifColorType, 256> entries{};
    std::transform(colours.begin(), colours.end(), entries.begin(), [](QRgb colour) {
        const auto part = [](int value) { return static_cast<GifByteType>(value); };
        return GifColorType{part(qRed(colour)), part(qGreen(colour)), part(qBlue(colour))};
    });
    return GifColourMap(
        GifMakeMapObject(static_cast<int>(std::bit_ceil(colours.size())), entries.data())
    );
}

} // namespace raincast
