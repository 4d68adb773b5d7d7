// SPDX-License-Identifier: MIT
#include "tree/warnings_painter.h"

#include "image/gif_writer.h"
#include "image/sample_mark.h"
#include "maps/layer_canvas.h"
#include "palette/warning_kinds.h"
#include "radar/bitmap.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>

namespace raincast {

namespace {

enum : std::uint8_t { ground, casing, ink, rim, firstKind };
constexpr std::size_t kColourCount = firstKind + kAllWarningKinds.size();

const std::array<QRgb, kColourCount>& colours() {
    static const auto made = [] {
        std::array<QRgb, kColourCount> result{
            kTransparentWhite, 0xFF202020, 0xFF303030, 0xFFE8E8E8};
        std::transform(
            kAllWarningKinds.begin(), kAllWarningKinds.end(), result.begin() + firstKind, colourOf
        );
        return result;
    }();
    return made;
}

// Far beyond the picture all places are as good: what may be drawn is bounded.
constexpr double kFarthest = 20'000;

QPolygonF outline(const ImageGeometry& image, const WeatherWarning::Ring& ring) {
    QPolygonF polygon;
    for (const WeatherWarning::Corner& corner : ring) {
        // A pixel's centre is half a pixel into it.
        polygon << QPointF(
            std::clamp(image.columnOfLongitude(corner.longitude) + .5, -kFarthest, kFarthest),
            std::clamp(image.rowOfLatitude(corner.latitude) + .5, -kFarthest, kFarthest)
        );
    }
    return polygon;
}

/// A line with a dark edge, which stands out from every echo below it.
void stroke(QPainter& painter, const QPolygonF& polygon, QRgb colour) {
    constexpr int kWidth = 2;
    painter.setPen(QPen(QColor::fromRgb(colours()[casing]), kWidth + 2));
    painter.drawPolygon(polygon);
    painter.setPen(QPen(QColor::fromRgb(colour), kWidth));
    painter.drawPolygon(polygon);
}

void draw(QPainter& painter, const ImageGeometry& image, const WeatherWarning& warning) {
    for (const WeatherWarning::Polygon& polygon : warning.polygons) {
        for (const WeatherWarning::Ring& ring : polygon) {
            stroke(painter, outline(image, ring), colourOf(warning.kind));
        }
    }
}

void drawAll(QPainter& painter, const ImageGeometry& image, const WeatherWarnings& warnings) {
    for (const WarningKind kind : kAllWarningKinds) {
        for (const WeatherWarning& warning : warnings.warnings) {
            if (warning.kind == kind) {
                draw(painter, image, warning);
            }
        }
    }
}

void index(const QImage& band, int top, IndexedPicture& picture) {
    for (int row = 0; row < band.height() && top + row < picture.height(); ++row) {
        const auto* pixels = reinterpret_cast<const QRgb*>(band.constScanLine(row));
        std::transform(pixels, pixels + band.width(), picture.row(top + row), [](QRgb pixel) {
            const auto* found = std::find(colours().begin(), colours().end(), pixel);
            return static_cast<std::uint8_t>((found - colours().begin()) % kColourCount);
        });
    }
}

} // namespace

std::optional<QByteArray>
renderWarnings(const ImageGeometry& image, const WeatherWarnings& warnings) {
    IndexedPicture picture(image.detail());
    QImage band(image.width(), rowsOfBand(image), QImage::Format_RGB32);
    if (band.isNull()) {
        return std::nullopt; // no memory
    }
    for (int top = 0; top < image.height(); top += band.height()) {
        band.fill(kTransparentWhite);
        {
            QPainter painter(&band);
            painter.translate(0, -top);
            drawAll(painter, image, warnings);
        }
        index(band, top, picture);
    }
    if (warnings.isSample) {
        markAsSample(picture, ink, rim);
    }
    return writeGif(picture, colours());
}

} // namespace raincast
