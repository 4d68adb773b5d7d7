// SPDX-License-Identifier: MIT
#pragma once

#include "drawing/row_spans.h"
#include "geo/view_transform.h"
#include "radar/bitmap.h"

#include <QCache>
#include <QImage>
#include <QRect>

#include <memory>
#include <optional>
#include <vector>

class QPainter;

namespace raincast {

/// Draws a radar image: ground, echoes, warnings and lines over each other, at any zoom of a view.
/// Zoomed in, every image pixel is a whole block; zoomed out, neither lines nor echoes are lost and
/// no echo changes its colour into one that no pixel had.
///
/// Zoomed in, a layer may be finer than the image, each by itself: the others are drawn in larger
/// blocks then.
///
/// For the present zoom it keeps ground and lines as one picture, and for each frame the places of
/// its echoes: drawing then costs a copy of the visible part and its echoes, also when the view
/// moves or the frame changes. It borrows pictures by handle, and notices when they were drawn
/// into.
class LayerStack {
public:
    /// The pictures to draw, each of them may be null, and the image's size in pixels. A smaller
    /// layer is transparent in the rest of the image.
    struct Layers {
        QSize size;
        DetailedBitmap ground;     ///< opaque
        DetailedBitmap echoes;     ///< a frame; white is transparent
        DetailedBitmap overlay;    ///< lines; white is transparent
        DetailedBitmap warnings{}; ///< outlines between echoes and lines; white is transparent
        /// To draw at least as fine as this: a loop of which some frames are finer than others then
        /// keeps its ground.
        int leastDetail = 1;
        /// Tells the echoes from all others, where their picture is made anew each time it is
        /// drawn; 0: the picture's own key does.
        qint64 echoesKey = 0;
    };

    void setLayers(const Layers& layers);

    /// Forgets the layers and all that was made of them, if some were finer than the image.
    void releaseFine();

    /// Draws the part of the image that `view` places in `area` (page pixels). Without a ground the
    /// image is black under the lines; without lines as well, only echoes and warnings are drawn.
    /// The painter has no transformation: its pixels are the page's.
    void draw(QPainter& painter, const QRect& area, const ViewTransform& view);

    /// The part of `area` that an image of this size covers. With a ground or lines, draw() fills
    /// all of it with opaque pixels.
    [[nodiscard]] static QRect imageArea(const QRect& area, const ViewTransform& view, QSize image);

private:
    /// A frame at the present scale.
    struct Echoes {
        QImage shrunken;           ///< null unless zoomed out: the frame itself is drawn then
        std::vector<QRgb> colours; ///< of an indexed picture; 0 is transparent
        RowSpans spans;            ///< its opaque pixels
    };
    using EchoesPointer = std::shared_ptr<const Echoes>;

    /// Of the finest layer, the image's pixels being 1, and how far that is shrunken.
    struct Scale {
        int detail = 1;
        int shift = 0;

        friend bool operator==(const Scale&, const Scale&) = default;
    };

    [[nodiscard]] int finestDetail() const;
    [[nodiscard]] QSize fineSize(int detail) const { return m_layers.size * detail; }
    [[nodiscard]] QImage atDetail(const DetailedBitmap& picture) const;
    void useScale(const Scale& scale);
    [[nodiscard]] bool isOpaque() const { return m_layers.ground || m_layers.overlay; }
    [[nodiscard]] QImage makeLines() const;
    [[nodiscard]] QImage makeBase(const QImage& ground) const;
    [[nodiscard]] EchoesPointer echoesAtScale();
    void
    drawInto(QImage& target, const QRect& shown, QPoint place, const QRect& part, int side) const;
    void composeRow(QRgb* to, int row, int first, int end) const;
    void drawEchoes(QRgb* to, int row, int first, int end) const;
    void drawSpan(QRgb* to, int row, const RowSpans::Span& span) const;
    void drawLines(QRgb* to, int row, const RowSpans::Span& span) const;

    Layers m_layers;
    qint64 m_groundKey = 0;
    qint64 m_warningsKey = 0;
    qint64 m_overlayKey = 0;
    std::optional<Scale> m_scale; ///< of the pictures below

    QImage m_base;  ///< all but the echoes; null when there is nothing else
    QImage m_lines; ///< warnings and lines, to be drawn over echoes, transparent where 0
    RowSpans m_lineSpans;
    QCache<qint64, EchoesPointer> m_framesAtScale; ///< by their keys; costs are in bytes
    EchoesPointer m_echoes;                        ///< while drawing: the layers' own
    int m_coarser = 0; ///< while drawing: echoes have 2^m_coarser times fewer pixels each way
};

} // namespace raincast
