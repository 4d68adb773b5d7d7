// SPDX-License-Identifier: MIT
#include "drawing/shrink.h"

#include "radar/bitmap.h"

#include <algorithm>
#include <array>
#include <vector>

namespace raincast {

namespace {

int blocks(int pixels, int shift) {
    return (pixels + (1 << shift) - 1) >> shift;
}

/// The pixels of one block of a picture.
QRect blockAt(const QImage& picture, int column, int row, int shift) {
    const int side = 1 << shift;
    return QRect(column * side, row * side, side, side).intersected(picture.rect());
}

/// Calls `work(colour)` for each pixel of a block of a 32-bit picture.
template<typename Work>
void forEachPixel(const QImage& picture, const QRect& block, Work work) {
    for (int row = block.top(); row <= block.bottom(); ++row) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(row));
        std::for_each(line + block.left(), line + block.right() + 1, work);
    }
}

/// Sums of colours, for their average.
struct Average {
    unsigned count = 0;
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;

    void add(QRgb colour) {
        ++count;
        red += static_cast<unsigned>(qRed(colour));
        green += static_cast<unsigned>(qGreen(colour));
        blue += static_cast<unsigned>(qBlue(colour));
    }
    [[nodiscard]] QRgb colour() const {
        const auto mean = [this](unsigned sum) {
            return static_cast<int>((sum + count / 2) / count);
        };
        return qRgb(mean(red), mean(green), mean(blue));
    }
};

/// Makes a 32-bit picture of blocks, each pixel given by `colourOf(block)`.
template<typename ColourOf>
QImage blockwise(const QImage& picture, int shift, QImage::Format format, ColourOf colourOf) {
    QImage result(blocks(picture.width(), shift), blocks(picture.height(), shift), format);
    for (int row = 0; row < result.height(); ++row) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(row));
        for (int column = 0; column < result.width(); ++column) {
            line[column] = colourOf(blockAt(picture, column, row, shift));
        }
    }
    return result;
}

/// The most frequent of the colours that were added, of several the one added first.
class Vote {
public:
    void add(QRgb colour) {
        auto found = std::find_if(m_counts.begin(), m_counts.end(), [colour](const Count& count) {
            return count.colour == colour;
        });
        if (found == m_counts.end()) {
            found = m_counts.insert(found, {colour, 0});
        }
        ++found->number;
    }
    /// Transparent when nothing was added.
    [[nodiscard]] QRgb winner() const {
        const auto most =
            std::max_element(m_counts.begin(), m_counts.end(), [](const Count& a, const Count& b) {
                return a.number < b.number;
            });
        return most == m_counts.end() ? 0 : most->colour;
    }
    void clear() { m_counts.clear(); }

private:
    struct Count {
        QRgb colour;
        int number;
    };
    std::vector<Count> m_counts;
};

/// The same for palette indices, of which there are few enough for a table.
class IndexVote {
public:
    void add(uchar index) {
        if (m_counts[index]++ == 0) {
            m_met.push_back(index);
        }
    }
    /// `otherwise` when nothing was added. Forgets what was added.
    [[nodiscard]] uchar takeWinner(uchar otherwise) {
        uchar best = otherwise;
        int most = 0;
        for (const uchar index : m_met) {
            if (m_counts[index] > most) {
                most = m_counts[index];
                best = index;
            }
            m_counts[index] = 0;
        }
        m_met.clear();
        return best;
    }

private:
    std::array<int, 256> m_counts{};
    std::vector<uchar> m_met; ///< in order
};

/// Which palette indices are seen.
using SeenIndices = std::array<bool, 256>;

SeenIndices seenIndices(const QList<QRgb>& table) {
    SeenIndices seen{};
    std::transform(table.begin(), table.end(), seen.begin(), [](QRgb colour) {
        return colour != kTransparentWhite;
    });
    return seen;
}

/// The index that stands for a block.
uchar indexOfBlock(
    const QImage& picture, const QRect& block, const SeenIndices& seen, IndexVote& vote
) {
    for (int row = block.top(); row <= block.bottom(); ++row) {
        const uchar* line = picture.constScanLine(row);
        for (int column = block.left(); column <= block.right(); ++column) {
            if (seen[line[column]]) {
                vote.add(line[column]);
            }
        }
    }
    // Without an echo all of the block is transparent: any of its pixels stands for it.
    return vote.takeWinner(picture.constScanLine(block.top())[block.left()]);
}

QImage shrinkIndexed(const QImage& picture, int shift) {
    const SeenIndices seen = seenIndices(picture.colorTable());
    QImage result(
        blocks(picture.width(), shift), blocks(picture.height(), shift), QImage::Format_Indexed8
    );
    result.setColorTable(picture.colorTable());
    IndexVote vote;
    for (int row = 0; row < result.height(); ++row) {
        uchar* to = result.scanLine(row);
        for (int column = 0; column < result.width(); ++column) {
            to[column] = indexOfBlock(picture, blockAt(picture, column, row, shift), seen, vote);
        }
    }
    return result;
}

/// The same picture with its white transparent.
QImage withoutWhite(const QImage& rgb) {
    QImage result(rgb.size(), QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < rgb.height(); ++row) {
        const auto* const from = reinterpret_cast<const QRgb*>(rgb.constScanLine(row));
        std::transform(
            from, from + rgb.width(), reinterpret_cast<QRgb*>(result.scanLine(row)),
            [](QRgb colour) { return colour == kTransparentWhite ? 0 : colour | 0xFF000000; }
        );
    }
    return result;
}

} // namespace

QImage shrinkGround(const QImage& picture, int shift) {
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
    if (shift == 0) {
        return rgb;
    }
    return blockwise(rgb, shift, QImage::Format_RGB32, [&rgb](const QRect& block) {
        Average average;
        forEachPixel(rgb, block, [&average](QRgb colour) { average.add(colour); });
        return average.colour();
    });
}

QImage shrinkLines(const QImage& picture, int shift) {
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
    if (shift == 0) {
        return withoutWhite(rgb);
    }
    const unsigned crossing = 1U << shift;
    return blockwise(rgb, shift, QImage::Format_ARGB32_Premultiplied, [&](const QRect& block) {
        Average average;
        forEachPixel(rgb, block, [&average](QRgb colour) {
            if (colour != kTransparentWhite) {
                average.add(colour);
            }
        });
        if (average.count == 0) {
            return QRgb{0};
        }
        const unsigned covered = std::min(average.count, crossing);
        const QRgb colour = average.colour();
        return qPremultiply(qRgba(
            qRed(colour), qGreen(colour), qBlue(colour), static_cast<int>(255 * covered / crossing)
        ));
    });
}

QImage shrinkEchoes(const QImage& picture, int shift) {
    if (picture.format() == QImage::Format_Indexed8) {
        return shift == 0 ? picture : shrinkIndexed(picture, shift);
    }
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
    Vote vote;
    return blockwise(rgb, shift, QImage::Format_ARGB32_Premultiplied, [&](const QRect& block) {
        vote.clear();
        forEachPixel(rgb, block, [&vote](QRgb colour) {
            if (colour != kTransparentWhite) {
                vote.add(colour);
            }
        });
        return vote.winner();
    });
}

QImage enlarge(const QImage& picture, int times) {
    return times == 1 ? picture : picture.scaled(picture.size() * times);
}

} // namespace raincast
