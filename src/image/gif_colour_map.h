// SPDX-License-Identifier: MIT
#pragma once

#include <QRgb>

#include <gif_lib.h>

#include <memory>
#include <span>

namespace raincast {

struct FreeGifColourMap {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using GifColourMap = std::unique_ptr<ColorMapObject, FreeGifColourMap>;

/// The colour table of a GIF to be written, of 1 to 256 colours. It has a power of two entries;
/// those left over are black and not used. Null when there is no memory for it.
[[nodiscard]] GifColourMap gifColourMap(std::span<const QRgb> colours);

} // namespace raincast
