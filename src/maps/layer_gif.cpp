// SPDX-License-Identifier: MIT
#include "maps/layer_gif.h"

#include "radar/image/gif_writer.h"

#include <QImage>

#include <algorithm>
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

/// Gives each colour that it meets an index.
class Indexer {
public:
    Indexer(Indexed& result, QRgb mask) : m_result(result), m_mask(mask) {}

    /// False when there are more colours than indices.
    bool index(const QRgb* line, int row) {
        std::uint8_t* const indices = m_result.pixels.row(row);
        for (int column = 0; column < m_result.pixels.width(); ++column) {
            if (qAlpha(line[column]) < kHalfCovered) {
                indices[column] = 0;
                continue;
            }
            const QRgb colour = (line[column] & m_mask) | 0xFF00'0000;
            if (colour != m_last && !look(colour)) {
                return false;
            }
            indices[column] = m_lastIndex;
        }
        return true;
    }

private:
    bool look(QRgb colour) {
        auto& colours = m_result.colours;
        const auto [entry, isNew] =
            m_known.try_emplace(colour, static_cast<std::uint8_t>(colours.size()));
        if (isNew) {
            if (colours.size() == 256) {
                return false;
            }
            colours.push_back(colour);
        }
        m_last = colour;
        m_lastIndex = entry->second;
        return true;
    }

    Indexed& m_result;
    QRgb m_mask;
    std::unordered_map<QRgb, std::uint8_t> m_known;
    QRgb m_last = 0; ///< none: all colours are opaque
    std::uint8_t m_lastIndex = 0;
};

// A strip at a time: a whole copy of a large picture would take as much memory once more.
bool tryIndex(const QImage& picture, QRgb mask, Indexed& result) {
    constexpr int kStrip = 50;
    Indexer indexer(result, mask);
    for (int top = 0; top < picture.height(); top += kStrip) {
        const int rows = std::min(kStrip, picture.height() - top);
        const QImage strip =
            picture.copy(0, top, picture.width(), rows).convertToFormat(QImage::Format_ARGB32);
        for (int row = 0; row < rows; ++row) {
            if (!indexer.index(
                    reinterpret_cast<const QRgb*>(strip.constScanLine(row)), top + row
                )) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

std::optional<QByteArray> layerGif(const QImage& picture) {
    // Each mask leaves fewer colours; the last at most 64. None of them makes a colour white.
    for (const QRgb mask : {0x00FF'FFFFU, 0x00FC'FCFCU, 0x00F0'F0F0U, 0x00C0'C0C0U}) {
        Indexed indexed{IndexedPicture(picture.width() / kFrameWidth)};
        if (tryIndex(picture, mask, indexed)) {
            if (indexed.colours.size() == 1) {
                indexed.colours.push_back(0xFF00'0000);
            }
            return writeGif(indexed.pixels, indexed.colours);
        }
    }
    return std::nullopt;
}

} // namespace raincast
