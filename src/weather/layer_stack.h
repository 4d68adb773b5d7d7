// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"
#include "radar/bitmap.h"

#include <QCache>
#include <QImage>
#include <QRegion>

#include <vector>

class QPainter;

namespace raincast {

/// Draws a radar image: ground, echoes and lines over each other, at any zoom of a view. Zoomed in,
/// every image pixel is a whole block; zoomed out, neither lines nor echoes are lost and no echo
/// changes its colour into one that no pixel had.
///
/// What is composited at the present zoom is kept, as far as it was shown, so that drawing it again
/// or elsewhere is a copy; another frame costs its visible part. Pictures are borrowed by handle
/// and noticed when they were drawn into.
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
    void draw(QPainter& painter, const QRect& area, const ViewTransform& view);

private:
    /// Opaque or partly opaque pixels of a line, first to end.
    struct Span {
        int first;
        int end;
    };

    void useScale(int shift);
    void drawBlocks(QPainter& painter, const QRect& area, QPoint place, const QRect& part, int side)
        const;
    void composite(const QRect& part);
    void compositeLine(int row, int first, int end);
    void drawEchoes(QRgb* to, int row, int first, int end) const;
    void drawLines(QRgb* to, int row, int first, int end) const;
    [[nodiscard]] QImage echoesAtScale();
    void findSpans();

    Layers m_layers;
    qint64 m_groundKey = 0;
    qint64 m_overlayKey = 0;
    qint64 m_echoesKey = 0;
    int m_shift = -1; ///< of the pictures below; none yet

    QImage m_ground;
    QImage m_lines;
    std::vector<std::vector<Span>> m_spans; ///< of m_lines, by row
    QImage m_echoes;
    std::vector<QRgb> m_echoColours;   ///< of indexed echoes; 0 is transparent
    QCache<qint64, QImage> m_shrunken; ///< frames at this scale by their images' keys

    QImage m_composite;
    QRegion m_composited; ///< the part of m_composite that holds the present layers
};

} // namespace raincast
