// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <cstddef>
#include <memory>
#include <utility>

class QImage; // of a library that not every program has

namespace raincast {

/// A picture that several owners show and that may still change: drawing through one handle shows
/// through all of them (a frame's warnings, for example, also in the copy on the screen). Null
/// stands for "not loaded". The image behind a handle is never null; its format is Format_Indexed8
/// (a colour table of 256 entries) or Format_RGB32.
using Bitmap = std::shared_ptr<QImage>;

/// A picture of an image, with `detail` times as many pixels each way as the image has.
struct DetailedBitmap {
    // Most pictures are no finer than their image.
    DetailedBitmap(Bitmap picture = nullptr, int pixels = 1) // NOLINT(google-explicit-constructor)
        : bitmap(std::move(picture)), detail(pixels) {}
    DetailedBitmap(std::nullptr_t) {} // NOLINT(google-explicit-constructor): none

    [[nodiscard]] explicit operator bool() const { return bitmap != nullptr; }
    [[nodiscard]] QImage& operator*() const { return *bitmap; }
    [[nodiscard]] QImage* operator->() const { return bitmap.get(); }

    Bitmap bitmap;  ///< may be null
    int detail = 1; ///< 1, 2 or 4
};

/// The colour key of every picture of the radar stack: exactly this colour is transparent when one
/// picture is drawn over another. 253,253,253, the strongest echo, is not.
inline constexpr quint32 kTransparentWhite = 0xFFFF'FFFF;

/// The size in pixels of every published radar image and map layer.
inline constexpr int kRadarImageWidth = 600;
inline constexpr int kRadarImageHeight = 550;

/// The largest picture that can be loaded, in pixels; loading a larger one fails before it takes
/// memory.
inline constexpr qint64 kMostImagePixels = 64'000'000;

/// The same for frames, warnings and map layers. Published ones have 330,000 pixels; an animation
/// holds two dozen, and a few bytes can claim many.
inline constexpr qint64 kMostRadarPixels = 4'000'000;

} // namespace raincast
