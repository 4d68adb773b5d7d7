// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"
#include "radar/image/bitmap.h"
#include "weather/row_spans.h"

#include <QCache>
#include <QImage>
#include <QRect>

#include <memory>
#include <vector>

class QPainter;

namespace raincast {

/// Draws a radar image: ground, echoes and lines over each other, at any zoom of a view. Zoomed in,
/// every image pixel is a whole block; zoomed out, neither lines nor echoes are lost and no echo
/// changes its colour into one that no pixel had.
///
/// At the present zoom, ground and lines are kept composited, and of each frame where its echoes
/// are: drawing costs a copy of what is visible and its echoes, whether the view or the frame is
/// another one. Pictures are borrowed by handle and noticed when they were drawn into.
class LayerStack {
public:
    /// The pictures to draw, each null where there is none, and the image's size in pixels; layers
    /// that are smaller leave the rest of it as if they were transparent there.
    struct Layers {
        QSize size;
        Bitmap ground;  ///< opaque
        Bitmap echoes;  ///< a frame; white is transparent
        Bitmap overlay; ///< lines; white is transparent
    };

    void setLayers(const Layers& layers);

    /// Draws what falls into `area` (page pixels) of the image as `view` places it. Without a
    /// ground the image is black under the lines; without lines as well, only the echoes are drawn.
    /// The painter's pixels are the page's: it has no transformation.
    void draw(QPainter& painter, const QRect& area, const ViewTransform& view);

    /// The part of `area` that an image of that size covers. With a ground or lines, all of it is
    /// drawn opaque: whatever is there before is not seen.
    [[nodiscard]] static QRect imageArea(const QRect& area, const ViewTransform& view, QSize image);

private:
    /// A frame at the present scale.
    struct Echoes {
        QImage shrunken;           ///< null unless zoomed out: the frame itself is drawn then
        std::vector<QRgb> colours; ///< of an indexed picture; 0 is transparent
        RowSpans spans;            ///< what is opaque
    };
    using EchoesPointer = std::shared_ptr<const Echoes>;

    void useScale(int shift);
    [[nodiscard]] bool isOpaque() const { return m_layers.ground || m_layers.overlay; }
    [[nodiscard]] QImage makeBase(const QImage& ground) const;
    [[nodiscard]] EchoesPointer echoesAtScale();
    void
    drawInto(QImage& target, const QRect& shown, QPoint place, const QRect& part, int side) const;
    void composeRow(QRgb* to, int row, int first, int end) const;
    void drawSpan(QRgb* to, int row, const RowSpans::Span& span) const;

    Layers m_layers;
    qint64 m_groundKey = 0;
    qint64 m_overlayKey = 0;
    int m_shift = -1; ///< of the pictures below; none yet

    QImage m_base;  ///< all but the echoes; null without ground and lines
    QImage m_lines; ///< to be drawn over echoes, transparent where 0
    RowSpans m_lineSpans;
    QCache<qint64, EchoesPointer> m_framesAtScale; ///< by their images' keys
    EchoesPointer m_echoes;                        ///< while drawing: the layers' own
};

} // namespace raincast
