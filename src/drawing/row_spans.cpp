// SPDX-License-Identifier: MIT
#include "drawing/row_spans.h"

#include <algorithm>

namespace raincast {

template<typename Pixel, typename IsDrawn>
RowSpans RowSpans::found(const QImage& picture, IsDrawn isDrawn) {
    RowSpans result;
    result.m_ends.reserve(static_cast<std::size_t>(picture.height()));
    for (int row = 0; row < picture.height(); ++row) {
        const auto* line = reinterpret_cast<const Pixel*>(picture.constScanLine(row));
        const Pixel* end = line + picture.width();
        for (const Pixel* at = std::find_if(line, end, isDrawn); at != end;) {
            const Pixel* clear = std::find_if_not(at, end, isDrawn);
            result.m_spans.push_back({static_cast<int>(at - line), static_cast<int>(clear - line)});
            at = std::find_if(clear, end, isDrawn);
        }
        result.m_ends.push_back(result.m_spans.size());
    }
    result.m_spans.shrink_to_fit();
    return result;
}

RowSpans RowSpans::ofColours(const QImage& picture, QRgb transparent) {
    return found<QRgb>(picture, [transparent](QRgb colour) { return colour != transparent; });
}

RowSpans RowSpans::ofIndices(const QImage& picture, const std::vector<QRgb>& colours) {
    return found<uchar>(picture, [&colours](uchar index) { return colours[index] != 0; });
}

RowSpans::Range RowSpans::within(int row, int first, int end) const {
    if (row < 0 || static_cast<std::size_t>(row) >= m_ends.size()) {
        return {nullptr, nullptr};
    }
    const auto index = static_cast<std::size_t>(row);
    const Span* from = m_spans.data() + (index == 0 ? 0 : m_ends[index - 1]);
    const Span* to = m_spans.data() + m_ends[index];
    const auto endsBefore = [first](const Span& span) { return span.end <= first; };
    const auto beginsBefore = [end](const Span& span) { return span.first < end; };
    from = std::partition_point(from, to, endsBefore);
    return {from, std::partition_point(from, to, beginsBefore)};
}

} // namespace raincast
