// SPDX-License-Identifier: MIT
#include "tree/warnings_painter.h"

#include "radar/image/bitmap.h"
#include "radar/image/gif_writer.h"
#include "radar/image/sample_mark.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>

namespace raincast {

namespace {

enum : std::uint8_t { ground, casing, yellow, red, ink, rim };
constexpr std::array<QRgb, 6> kColours = {
    kTransparentWhite, 0xFF202020, 0xFFFFFF00, 0xFFFF0000, 0xFF303030, 0xFFE8E8E8,
};

QPolygonF outline(const ImageGeometry& image, const WarningPolygon& warning) {
    QPolygonF polygon;
    for (const WarningPolygon::Corner& corner : warning.corners) {
        // A pixel's centre is half a pixel into it.
        polygon << QPointF(
            image.columnOfLongitude(corner.longitude) + .5,
            image.rowOfLatitude(corner.latitude) + .5
        );
    }
    return polygon;
}

/// A line with a dark edge, which stands out from every echo below it.
void stroke(QPainter& painter, const QPolygonF& polygon, std::uint8_t colour) {
    constexpr int kWidth = 2;
    painter.setPen(QPen(QColor::fromRgb(kColours[casing]), kWidth + 2));
    painter.drawPolygon(polygon);
    painter.setPen(QPen(QColor::fromRgb(kColours[colour]), kWidth));
    painter.drawPolygon(polygon);
}

void draw(
    QPainter& painter, const ImageGeometry& image, const std::vector<WarningPolygon>& warnings,
    WarningPolygon::Kind kind, std::uint8_t colour
) {
    for (const WarningPolygon& warning : warnings) {
        if (warning.kind == kind) {
            stroke(painter, outline(image, warning), colour);
        }
    }
}

IndexedPicture indexed(const QImage& canvas) {
    IndexedPicture picture;
    picture.reserve(std::size_t{kFrameWidth} * kFrameHeight);
    for (int row = 0; row < kFrameHeight; ++row) {
        const auto* pixels = reinterpret_cast<const QRgb*>(canvas.constScanLine(row));
        std::transform(pixels, pixels + kFrameWidth, std::back_inserter(picture), [](QRgb pixel) {
            const auto* found = std::find(kColours.begin(), kColours.end(), pixel);
            return static_cast<std::uint8_t>((found - kColours.begin()) % kColours.size());
        });
    }
    return picture;
}

} // namespace

std::optional<QByteArray> renderWarnings(
    const ImageGeometry& image, const std::vector<WarningPolygon>& warnings, bool sample
) {
    QImage canvas(kFrameWidth, kFrameHeight, QImage::Format_RGB32);
    canvas.fill(kTransparentWhite);
    {
        QPainter painter(&canvas);
        using Kind = WarningPolygon::Kind;
        draw(painter, image, warnings, Kind::severeThunderstorm, yellow);
        draw(painter, image, warnings, Kind::tornado, red);
    }
    IndexedPicture picture = indexed(canvas);
    if (sample) {
        markAsSample(picture, ink, rim);
    }
    return writeGif(picture, kColours);
}

} // namespace raincast
