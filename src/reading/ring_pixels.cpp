// SPDX-License-Identifier: MIT
#include "reading/ring_pixels.h"

#include "reading/map_line.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace raincast {

namespace {

constexpr int kBand = 128; // rows that are drawn at once

int reachOf(double axis, int count) {
    return static_cast<int>(std::ceil(axis * count)) + 2;
}

} // namespace

RingPixels RingPixels::of(const Rings& rings) {
    const int across = reachOf(rings.width, rings.count);
    const int down = reachOf(rings.height, rings.count);
    QImage band(2 * across + 1, kBand, QImage::Format_ARGB32_Premultiplied);
    RingPixels result;
    result.m_top = -down;
    for (int top = -down; top <= down; top += kBand) {
        band.fill(Qt::transparent);
        QPainter painter(&band);
        for (int ring = 1; ring <= rings.count; ++ring) {
            drawMapEllipse(painter, {across, -top}, ring * rings.width, ring * rings.height);
        }
        painter.end();
        for (int row = 0; row < kBand; ++row) {
            result.take(reinterpret_cast<const QRgb*>(band.constScanLine(row)), -across, across);
        }
    }
    return result;
}

// Takes a row, of columns from one to another.
void RingPixels::take(const QRgb* line, int from, int to) {
    for (int column = from; column <= to; ++column) {
        if (const QRgb colour = line[column - from]; colour != 0) {
            m_pixels.push_back({column, colour});
        }
    }
    m_ends.push_back(m_pixels.size());
}

const RingPixels& RingPixels::kept(const Rings& rings) {
    static std::pair<Rings, RingPixels> last;
    if (last.first != rings) {
        last = {rings, of(rings)};
    }
    return last.second;
}

void RingPixels::draw(QImage& target, const QRect& area, QPoint place) const {
    const QRect shown = area.intersected(target.rect()).translated(-place);
    const int rows = static_cast<int>(m_ends.size());
    const int end = std::min(shown.bottom() + 1 - m_top, rows);
    for (int row = std::max(shown.top() - m_top, 0); row < end; ++row) {
        const auto index = static_cast<std::size_t>(row);
        const Pixel* const first = m_pixels.data() + (row == 0 ? 0 : m_ends[index - 1]);
        const Pixel* const last = m_pixels.data() + m_ends[index];
        const auto isLeft = [&shown](const Pixel& pixel) { return pixel.column < shown.left(); };
        auto* const line = reinterpret_cast<QRgb*>(target.scanLine(place.y() + m_top + row));
        for (const Pixel* pixel = std::partition_point(first, last, isLeft);
             pixel != last && pixel->column <= shown.right(); ++pixel) {
            line[place.x() + pixel->column] = pixel->colour;
        }
    }
}

} // namespace raincast
