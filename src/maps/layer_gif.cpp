// SPDX-License-Identifier: MIT
#include "maps/layer_gif.h"

#include "image/gif_writer.h"

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

// A strip at a time: a copy of the whole band would take as much memory once more.
bool indexBand(Indexer& indexer, const QImage& band, int top) {
    constexpr int kStrip = 50;
    for (int begin = 0; begin < band.height(); begin += kStrip) {
        const int rows = std::min(kStrip, band.height() - begin);
        const QImage strip =
            band.copy(0, begin, band.width(), rows).convertToFormat(QImage::Format_ARGB32);
        for (int row = 0; row < rows; ++row) {
            const auto* const line = reinterpret_cast<const QRgb*>(strip.constScanLine(row));
            if (!indexer.index(line, top + begin + row)) {
                return false;
            }
        }
    }
    return true;
}

bool tryIndex(const BandAt& bandAt, QRgb mask, Indexed& result) {
    Indexer indexer(result, mask);
    for (int top = 0; top < result.pixels.height();) {
        const QImage band = bandAt(top);
        if (band.isNull() || !indexBand(indexer, band, top)) {
            return false;
        }
        top += band.height();
    }
    return true;
}

} // namespace

std::optional<QByteArray> layerGif(int detail, const BandAt& bandAt) {
    // Each mask leaves fewer colours; the last at most 64. None of them makes a colour white.
    for (const QRgb mask : {0x00FF'FFFFU, 0x00FC'FCFCU, 0x00F0'F0F0U, 0x00C0'C0C0U}) {
        Indexed indexed{IndexedPicture(detail)};
        if (tryIndex(bandAt, mask, indexed)) {
            if (indexed.colours.size() == 1) {
                indexed.colours.push_back(0xFF00'0000);
            }
            return writeGif(indexed.pixels, indexed.colours);
        }
    }
    return std::nullopt;
}

} // namespace raincast
