// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRgb>

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace raincast {

/// The colours of pictures, and how many pixels have each.
class GifColours {
public:
    /// Adds those of a picture of Format_RGB32.
    void add(const QImage& picture);

private:
    friend class GifPalette;
    std::unordered_map<QRgb, std::uint32_t> m_counts;
};

/// The colours of an animated GIF, 256 at most, and which of them stands for a colour of its
/// pictures. Pictures of up to 256 colours keep them all. Of more, the most frequent ones stay as
/// they are, such as a radar's levels and the texts; the others, those of a shaded ground, share
/// what is left.
class GifPalette {
public:
    /// For pictures of those colours.
    explicit GifPalette(const GifColours& colours);

    /// 2 to 256.
    [[nodiscard]] const std::vector<QRgb>& colours() const { return m_colours; }
    /// The index of the colour that stands for one of the pictures'.
    [[nodiscard]] std::uint8_t indexOf(QRgb colour);

private:
    using Counts = std::unordered_map<QRgb, std::uint32_t>;

    void keepFrequent(Counts& counts);
    void shareRest(const Counts& counts);
    [[nodiscard]] std::uint8_t nearest(QRgb colour) const;

    std::vector<QRgb> m_colours;
    std::unordered_map<QRgb, std::uint8_t> m_known;
};

} // namespace raincast
