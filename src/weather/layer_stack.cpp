// SPDX-License-Identifier: MIT
#include "weather/layer_stack.h"

#include "weather/shrink.h"

#include <QPainter>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace raincast {

namespace {

constexpr QRgb kBlack = 0xFF000000;
// More than the most frames of an animation.
constexpr int kMostShrunken = 32;

qint64 keyOf(const Bitmap& bitmap) {
    return bitmap ? bitmap->cacheKey() : 0;
}

/// `over`, premultiplied, over an opaque or transparent pixel.
QRgb blended(QRgb over, QRgb under) {
    const unsigned rest = 255 - static_cast<unsigned>(qAlpha(over));
    const auto channel = [=](int shift) {
        const unsigned below = (under >> shift) & 0xFFU;
        return ((((over >> shift) & 0xFFU) + (below * rest + 127) / 255) & 0xFFU) << shift;
    };
    return channel(24) | channel(16) | channel(8) | channel(0);
}

/// The colours of an indexed picture as they are drawn: white is transparent.
std::vector<QRgb> drawnColours(const QImage& picture) {
    std::vector<QRgb> colours(256, 0);
    const QList<QRgb> table = picture.colorTable();
    for (qsizetype i = 0; i < std::min<qsizetype>(table.size(), 256); ++i) {
        colours[static_cast<std::size_t>(i)] = table[i] == kTransparentWhite ? 0 : table[i];
    }
    return colours;
}

/// The pixels of the image, shrunken by `shift`, that the page pixels of `area` show.
QRect shownPart(const QRect& area, const ViewTransform& view, int shift, QSize size) {
    const ImagePixel first = view.toImage({area.left(), area.top()});
    const ImagePixel last = view.toImage({area.right(), area.bottom()});
    // QRect's own intersection overflows for a view that is far away.
    return {
        QPoint(std::max(first.column >> shift, 0), std::max(first.row >> shift, 0)),
        QPoint(
            std::min(last.column >> shift, size.width() - 1),
            std::min(last.row >> shift, size.height() - 1)
        )};
}

} // namespace

void LayerStack::setLayers(const Layers& layers) {
    const bool sameLayers = layers.size == m_layers.size && keyOf(layers.ground) == m_groundKey &&
                            keyOf(layers.overlay) == m_overlayKey;
    const bool sameEchoes = keyOf(layers.echoes) == m_echoesKey;
    m_layers = layers;
    m_groundKey = keyOf(layers.ground);
    m_overlayKey = keyOf(layers.overlay);
    m_echoesKey = keyOf(layers.echoes);
    if (!sameLayers) {
        m_shift = -1;
    }
    if (!sameLayers || !sameEchoes) {
        m_echoes = {};
        m_composited = {};
    }
}

void LayerStack::draw(QPainter& painter, const QRect& area, const ViewTransform& view) {
    if (m_layers.size.isEmpty() || area.isEmpty()) {
        return;
    }
    const int shift = std::max(view.zoom(), 0);
    useScale(shift);
    const QRect part = shownPart(area, view, shift, m_composite.size());
    if (part.isEmpty()) {
        return;
    }
    if (m_echoes.isNull() && m_layers.echoes) {
        m_echoes = echoesAtScale();
        m_echoColours = drawnColours(m_echoes);
    }
    for (const QRect& missing : QRegion(part).subtracted(m_composited)) {
        composite(missing);
    }
    m_composited += part;

    const PagePoint place = view.toPage({part.left() << shift, part.top() << shift});
    const QPoint topLeft(place.x, place.y);
    if (view.zoom() >= 0) {
        painter.drawImage(topLeft, m_composite, part);
    } else {
        drawBlocks(painter, area, topLeft, part, 1 << -view.zoom());
    }
}

/// Draws each pixel of a part of the composite as a block, a row of blocks at a time, so that what
/// is written is still at hand when it is copied.
void LayerStack::drawBlocks(
    QPainter& painter, const QRect& area, QPoint place, const QRect& part, int side
) const {
    QImage strip(part.width() * side, side, m_composite.format());
    for (int row = part.top(); row <= part.bottom(); ++row) {
        const auto* from =
            reinterpret_cast<const QRgb*>(m_composite.constScanLine(row)) + part.left();
        auto* to = reinterpret_cast<QRgb*>(strip.scanLine(0));
        for (int column = 0; column < part.width(); ++column) {
            std::fill_n(to + column * side, side, from[column]);
        }
        for (int copy = 1; copy < side; ++copy) {
            std::copy_n(to, strip.width(), reinterpret_cast<QRgb*>(strip.scanLine(copy)));
        }
        const QPoint corner = place + QPoint(0, (row - part.top()) * side);
        const QRect shown = strip.rect().translated(corner).intersected(area);
        painter.drawImage(shown.topLeft(), strip, shown.translated(-corner));
    }
}

/// Brings the pictures that all frames share to a scale.
void LayerStack::useScale(int shift) {
    if (shift == m_shift) {
        return;
    }
    m_shift = shift;
    m_ground = m_layers.ground ? shrinkGround(*m_layers.ground, shift) : QImage();
    m_lines = m_layers.overlay ? shrinkLines(*m_layers.overlay, shift) : QImage();
    findSpans();
    m_echoes = {};
    m_shrunken.clear();
    m_shrunken.setMaxCost(kMostShrunken);
    const int side = 1 << shift;
    const QSize size(
        (m_layers.size.width() + side - 1) / side, (m_layers.size.height() + side - 1) / side
    );
    const bool opaque = m_layers.ground || m_layers.overlay;
    m_composite = QImage(size, opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    m_composited = {};
}

void LayerStack::findSpans() {
    m_spans.assign(static_cast<std::size_t>(m_lines.height()), {});
    for (int row = 0; row < m_lines.height(); ++row) {
        const auto* line = reinterpret_cast<const QRgb*>(m_lines.constScanLine(row));
        const auto* end = line + m_lines.width();
        for (const auto* at = line; at < end;) {
            at = std::find_if(at, end, [](QRgb colour) { return colour != 0; });
            const auto* clear = std::find(at, end, QRgb{0});
            if (at < clear) {
                m_spans[static_cast<std::size_t>(row)].push_back(
                    {static_cast<int>(at - line), static_cast<int>(clear - line)}
                );
            }
            at = clear;
        }
    }
}

QImage LayerStack::echoesAtScale() {
    if (m_shift == 0) {
        return shrinkEchoes(*m_layers.echoes, 0);
    }
    if (const QImage* kept = m_shrunken.object(m_echoesKey)) {
        return *kept;
    }
    QImage shrunken = shrinkEchoes(*m_layers.echoes, m_shift);
    m_shrunken.insert(m_echoesKey, new QImage(shrunken));
    return shrunken;
}

void LayerStack::composite(const QRect& part) {
    for (int row = part.top(); row <= part.bottom(); ++row) {
        compositeLine(row, part.left(), part.right() + 1);
    }
}

void LayerStack::compositeLine(int row, int first, int end) {
    auto* to = reinterpret_cast<QRgb*>(m_composite.scanLine(row));
    const bool opaque = m_composite.format() == QImage::Format_RGB32;
    int ground = first;
    if (row < m_ground.height()) {
        const auto* from = reinterpret_cast<const QRgb*>(m_ground.constScanLine(row));
        ground = std::clamp(m_ground.width(), first, end);
        std::copy(from + first, from + ground, to + first);
    }
    std::fill(to + ground, to + end, opaque ? kBlack : QRgb{0});
    drawEchoes(to, row, first, end);
    drawLines(to, row, first, end);
}

void LayerStack::drawEchoes(QRgb* to, int row, int first, int end) const {
    if (row >= m_echoes.height()) {
        return;
    }
    end = std::min(end, m_echoes.width());
    if (m_echoes.format() != QImage::Format_Indexed8) {
        const auto* from = reinterpret_cast<const QRgb*>(m_echoes.constScanLine(row));
        for (int column = first; column < end; ++column) {
            to[column] = from[column] != 0 ? from[column] : to[column];
        }
        return;
    }
    const uchar* from = m_echoes.constScanLine(row);
    for (int column = first; column < end;) {
        // Most of an image is one transparent colour: pass over eight of it at a time.
        std::uint64_t eight = 0;
        if (column + 8 <= end && m_echoColours[from[column]] == 0) {
            std::memcpy(&eight, from + column, sizeof eight);
            if (eight == from[column] * 0x0101'0101'0101'0101U) {
                column += 8;
                continue;
            }
        }
        const QRgb colour = m_echoColours[from[column]];
        to[column] = colour != 0 ? colour : to[column];
        ++column;
    }
}

void LayerStack::drawLines(QRgb* to, int row, int first, int end) const {
    if (row >= m_lines.height()) {
        return;
    }
    const auto* from = reinterpret_cast<const QRgb*>(m_lines.constScanLine(row));
    for (const Span& span : m_spans[static_cast<std::size_t>(row)]) {
        for (int column = std::max(span.first, first); column < std::min(span.end, end); ++column) {
            to[column] = blended(from[column], to[column]);
        }
    }
}

} // namespace raincast
