// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <cstddef>
#include <vector>

namespace raincast {

/// The opaque pixels of a picture as runs, row by row: transparent pixels then cost nothing when
/// the picture is drawn over another.
class RowSpans {
public:
    /// Columns first to end - 1.
    struct Span {
        int first;
        int end;
    };
    struct Range {
        const Span* from;
        const Span* to;

        [[nodiscard]] const Span* begin() const { return from; }
        [[nodiscard]] const Span* end() const { return to; }
    };

    /// Of no picture: without a row.
    RowSpans() = default;
    /// Of a picture of 32 bits.
    [[nodiscard]] static RowSpans ofColours(const QImage& picture, QRgb transparent);
    /// Of an indexed picture; `colours` has 256 entries, those of transparent indices are 0.
    [[nodiscard]] static RowSpans
    ofIndices(const QImage& picture, const std::vector<QRgb>& colours);

    /// The spans of a row that reach into columns first to end - 1, from left to right; no two
    /// touch. Empty for a row that the picture does not have.
    [[nodiscard]] Range within(int row, int first, int end) const;

    /// How much memory they take.
    [[nodiscard]] qsizetype bytes() const {
        const auto spans = static_cast<qsizetype>(m_spans.capacity());
        const auto rows = static_cast<qsizetype>(m_ends.capacity());
        return spans * qsizetype{sizeof(Span)} + rows * qsizetype{sizeof(std::size_t)};
    }

private:
    template<typename Pixel, typename IsDrawn>
    static RowSpans found(const QImage& picture, IsDrawn isDrawn);

    std::vector<Span> m_spans;
    std::vector<std::size_t> m_ends; ///< of each row's spans in m_spans
};

} // namespace raincast
