// SPDX-License-Identifier: MIT
#include "drawing/layer_stack.h"

#include "drawing/shrink.h"
#include "image/composite.h"
#include "page/plain_target.h"

#include <QPainter>

#include <algorithm>
#include <bit>
#include <utility>

namespace raincast {

namespace {

constexpr QRgb kBlack = 0xFF000000;
// Of the most frames of an animation, unless it rains everywhere in sharp ones.
constexpr qsizetype kMostBytesAtScale = qsizetype{24} << 20;

qint64 keyOf(const DetailedBitmap& picture) {
    return picture ? picture->cacheKey() : 0;
}

/// The n of 2^n.
int stepsOf(int detail) {
    return std::countr_zero(static_cast<unsigned>(detail));
}

QRgb* lineOf(QImage& picture, int row) {
    return reinterpret_cast<QRgb*>(picture.scanLine(row));
}

const QRgb* lineOf(const QImage& picture, int row) {
    return reinterpret_cast<const QRgb*>(picture.constScanLine(row));
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

void blend(const QRgb* lines, QRgb* to, int first, int end) {
    for (int column = first; column < end; ++column) {
        const bool opaque = qAlpha(lines[column]) == 255;
        to[column] = opaque ? lines[column] : blended(lines[column], to[column]);
    }
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

/// How many page pixels wide an image pixel is.
int sideOf(const ViewTransform& view) {
    return 1 << std::max(-view.zoom(), 0);
}

QSize sizeAtScale(QSize size, int shift) {
    const int side = 1 << shift;
    return {(size.width() + side - 1) / side, (size.height() + side - 1) / side};
}

/// The pixels of the image, shrunken by `shift` to `size`, that the page pixels of `area` show.
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

/// Where the first pixel of a part of the shrunken image lies on the page.
QPoint placeOf(const QRect& part, const ViewTransform& view, int shift) {
    const PagePoint place = view.toPage({part.left() << shift, part.top() << shift});
    return {place.x, place.y};
}

/// The part of the page that a part of the shrunken image takes up.
QRect pageArea(const QRect& part, QPoint place, int side) {
    return {place, part.size() * side};
}

/// Makes each pixel a run of `Side` pixels. The compiler knows the length and writes a run at once.
template<int Side>
void widen(const std::vector<QRgb>& pixels, QRgb* to) {
    for (const QRgb pixel : pixels) {
        std::fill_n(to, Side, pixel);
        to += Side;
    }
}

} // namespace

void LayerStack::setLayers(const Layers& layers) {
    if (layers.size != m_layers.size || keyOf(layers.ground) != m_groundKey ||
        keyOf(layers.warnings) != m_warningsKey || keyOf(layers.overlay) != m_overlayKey) {
        m_scale.reset();
    }
    m_groundKey = keyOf(layers.ground);
    m_warningsKey = keyOf(layers.warnings);
    m_overlayKey = keyOf(layers.overlay);
    m_layers = layers;
}

void LayerStack::releaseFine() {
    if (finestDetail() == 1) {
        return;
    }
    setLayers({});
    useScale({});
    m_echoes.reset();
}

QRect LayerStack::imageArea(const QRect& area, const ViewTransform& view, QSize image) {
    const int shift = std::max(view.zoom(), 0);
    const QRect part = shownPart(area, view, shift, sizeAtScale(image, shift));
    return part.isEmpty() ? QRect()
                          : pageArea(part, placeOf(part, view, shift), sideOf(view)) & area;
}

void LayerStack::draw(QPainter& painter, const QRect& area, const ViewTransform& view) {
    QRect visible = area.intersected(painter.viewport());
    if (painter.hasClipping()) {
        visible &= painter.clipBoundingRect().toAlignedRect();
    }
    if (m_layers.size.isEmpty() || visible.isEmpty()) {
        return;
    }
    const int detail = finestDetail();
    const ViewTransform fine = view.finer(stepsOf(detail));
    const int shift = std::max(fine.zoom(), 0);
    const QRect part = shownPart(visible, fine, shift, sizeAtScale(fineSize(detail), shift));
    if (part.isEmpty()) {
        return;
    }
    setLayers(Layers(m_layers)); // one may have been drawn into
    useScale({detail, shift});
    m_echoes = m_layers.echoes ? echoesAtScale() : nullptr;
    m_coarser = shift > 0 ? 0 : stepsOf(detail / m_layers.echoes.detail);
    const QPoint place = placeOf(part, fine, shift);
    const QRect shown = pageArea(part, place, sideOf(fine)).intersected(visible);
    QImage* target = isOpaque() ? plainTarget(painter, shown) : nullptr;
    if (target != nullptr) {
        drawInto(*target, shown, place, part, sideOf(fine));
        return;
    }
    QImage picture(shown.size(), QImage::Format_ARGB32_Premultiplied);
    drawInto(picture, picture.rect(), place - shown.topLeft(), part, sideOf(fine));
    painter.drawImage(shown.topLeft(), picture);
}

int LayerStack::finestDetail() const {
    int finest = m_layers.leastDetail;
    for (const auto* const layer :
         {&m_layers.ground, &m_layers.echoes, &m_layers.overlay, &m_layers.warnings}) {
        finest = std::max(finest, *layer ? layer->detail : 1);
    }
    return finest;
}

// A picture of the layers at the present detail. Of one that is too large only the image's part is
// made larger.
QImage LayerStack::atDetail(const DetailedBitmap& picture) const {
    const int times = m_scale->detail / picture.detail;
    if (times == 1) {
        return *picture;
    }
    const QSize size = fineSize(picture.detail).boundedTo(picture->size());
    return enlarge(picture->copy(QRect(QPoint(0, 0), size)), times);
}

// Brings the pictures that all frames share to a scale.
void LayerStack::useScale(const Scale& scale) {
    if (scale == m_scale) {
        return;
    }
    m_scale = scale;
    m_lines = makeLines();
    m_lineSpans = RowSpans::ofColours(m_lines, 0);
    m_base =
        makeBase(m_layers.ground ? shrinkGround(atDetail(m_layers.ground), scale.shift) : QImage());
    m_framesAtScale.clear();
    m_framesAtScale.setMaxCost(kMostBytesAtScale);
}

// Lines over the warnings.
QImage LayerStack::makeLines() const {
    const int shift = m_scale->shift;
    if (!m_layers.warnings) {
        return m_layers.overlay ? shrinkLines(atDetail(m_layers.overlay), shift) : QImage();
    }
    const QSize size = fineSize(m_scale->detail);
    Bitmap lines;
    for (const auto* const layer : {&m_layers.warnings, &m_layers.overlay}) {
        if (*layer) {
            CompositeOnto(lines, atDetail(*layer), size.width(), size.height());
        }
    }
    return lines ? shrinkLines(*lines, shift) : QImage();
}

// Lines over the ground, or over black; without those, warnings over nothing.
QImage LayerStack::makeBase(const QImage& ground) const {
    if (!isOpaque() && m_lines.isNull()) {
        return {};
    }
    const auto format = isOpaque() ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
    QImage base(sizeAtScale(fineSize(m_scale->detail), m_scale->shift), format);
    base.fill(isOpaque() ? kBlack : 0);
    for (int row = 0; row < base.height(); ++row) {
        QRgb* to = lineOf(base, row);
        if (row < ground.height()) {
            std::copy_n(lineOf(ground, row), std::min(ground.width(), base.width()), to);
        }
        for (const RowSpans::Span& span : m_lineSpans.within(row, 0, base.width())) {
            blend(lineOf(m_lines, row), to, span.first, std::min(span.end, base.width()));
        }
    }
    return base;
}

LayerStack::EchoesPointer LayerStack::echoesAtScale() {
    const qint64 key = m_layers.echoesKey != 0 ? m_layers.echoesKey : keyOf(m_layers.echoes);
    if (const EchoesPointer* kept = m_framesAtScale.object(key)) {
        return *kept;
    }
    Echoes echoes;
    const int shift = m_scale->shift;
    if (shift > 0) {
        echoes.shrunken = shrinkEchoes(atDetail(m_layers.echoes), shift);
    }
    const QImage& picture = shift > 0 ? echoes.shrunken : *m_layers.echoes;
    if (picture.format() == QImage::Format_Indexed8) {
        echoes.colours = drawnColours(picture);
        echoes.spans = RowSpans::ofIndices(picture, echoes.colours);
    } else {
        echoes.spans = RowSpans::ofColours(picture, shift > 0 ? 0 : kTransparentWhite);
    }
    auto shared = std::make_shared<const Echoes>(std::move(echoes));
    const qsizetype bytes = shared->shrunken.sizeInBytes() + shared->spans.bytes();
    m_framesAtScale.insert(key, new EchoesPointer(shared), bytes);
    return shared;
}

// Draws a part of the image, each pixel as a block of `side` pixels, the first one at `place` in
// the target. Draws nothing outside of `shown`.
void LayerStack::drawInto(
    QImage& target, const QRect& shown, QPoint place, const QRect& part, int side
) const {
    std::vector<QRgb> pixels(static_cast<std::size_t>(part.width()));
    std::vector<QRgb> blocks(pixels.size() * static_cast<std::size_t>(side));
    const QRgb* from = blocks.data() + (shown.left() - place.x());
    for (int row = part.top(); row <= part.bottom(); ++row) {
        const int top = place.y() + (row - part.top()) * side;
        if (side == 1) {
            composeRow(lineOf(target, top) + shown.left(), row, part.left(), part.right() + 1);
            continue;
        }
        composeRow(pixels.data(), row, part.left(), part.right() + 1);
        side == 2 ? widen<2>(pixels, blocks.data()) : widen<4>(pixels, blocks.data());
        const int end = std::min(top + side, shown.bottom() + 1);
        for (int y = std::max(top, shown.top()); y < end; ++y) {
            std::copy_n(from, shown.width(), lineOf(target, y) + shown.left());
        }
    }
}

// Puts together the pixels of a row from `first` to `end` - 1.
void LayerStack::composeRow(QRgb* to, int row, int first, int end) const {
    if (m_base.isNull()) {
        std::fill_n(to, end - first, QRgb{0});
    } else {
        std::copy_n(lineOf(m_base, row) + first, end - first, to);
    }
    if (m_echoes) {
        drawEchoes(to - first, row, first, end);
    }
}

// Draws the echoes of a row and the lines over them; `to` is the place of column 0.
void LayerStack::drawEchoes(QRgb* to, int row, int first, int end) const {
    const auto spans =
        m_echoes->spans.within(row >> m_coarser, first >> m_coarser, ((end - 1) >> m_coarser) + 1);
    for (const auto& [spanFirst, spanEnd] : spans) {
        const RowSpans::Span shown{
            std::max(spanFirst << m_coarser, first), std::min(spanEnd << m_coarser, end)};
        drawSpan(to, row, shown);
        drawLines(to, row, shown);
    }
}

void LayerStack::drawSpan(QRgb* to, int row, const RowSpans::Span& span) const {
    const bool zoomedOut = !m_echoes->shrunken.isNull();
    const QImage& picture = zoomedOut ? m_echoes->shrunken : *m_layers.echoes;
    const bool isIndexed = picture.format() == QImage::Format_Indexed8;
    const QRgb* const colours = m_echoes->colours.data();
    const uchar* const indices = picture.constScanLine(row >> m_coarser);
    const QRgb* const pixels = lineOf(picture, row >> m_coarser);
    if (m_coarser > 0) {
        for (int column = span.first; column < span.end; ++column) {
            const int from = column >> m_coarser;
            to[column] = isIndexed ? colours[indices[from]] : pixels[from];
        }
    } else if (isIndexed) {
        std::transform(
            indices + span.first, indices + span.end, to + span.first,
            [colours](uchar index) { return colours[index]; }
        );
    } else {
        std::copy(pixels + span.first, pixels + span.end, to + span.first);
    }
}

void LayerStack::drawLines(QRgb* to, int row, const RowSpans::Span& span) const {
    for (const RowSpans::Span& line : m_lineSpans.within(row, span.first, span.end)) {
        blend(
            lineOf(m_lines, row), to, std::max(line.first, span.first), std::min(line.end, span.end)
        );
    }
}

} // namespace raincast
