// SPDX-License-Identifier: MIT
#include "maps/city_layer.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace raincast {

namespace {

constexpr QColor kInk(24, 28, 36);
// Light, but not white, which viewers take for transparent.
constexpr QColor kRim(244, 243, 232);

constexpr int kTextPixels = 11;
constexpr int kDot = 3;       // pixels across
constexpr int kGap = 3;       // between a dot and its name
constexpr int kClearance = 5; // between names
constexpr int kEdge = 3;      // names keep off the picture's edge
// Where viewers write a frame's time, and sample weather says that it is that.
constexpr QRect kTaken(0, 520, 100, 30);

QFont font() {
    QFont result(QStringLiteral("DejaVu Sans"));
    result.setPixelSize(kTextPixels);
    result.setStyleStrategy(QFont::NoSubpixelAntialias);
    result.setHintingPreference(QFont::PreferFullHinting);
    return result;
}

/// A name that has its place.
struct Label {
    QString text;
    QRect dot;
    QRect name;
};

/// Finds places for names, one after the other.
class LabelPlacer {
public:
    explicit LabelPlacer(const QFontMetrics& metrics) : m_metrics(metrics) {}

    void place(const City& city, QPointF point) {
        const QPoint pixel(static_cast<int>(point.x()), static_cast<int>(point.y()));
        const QRect dot(pixel.x() - kDot / 2, pixel.y() - kDot / 2, kDot, kDot);
        if (!isFree(dot)) {
            return;
        }
        for (const QRect& name : placesFor(city.name, dot)) {
            if (isFree(name)) {
                m_labels.push_back({city.name, dot, name});
                return;
            }
        }
    }

    [[nodiscard]] const std::vector<Label>& labels() const { return m_labels; }

private:
    /// Right of the dot, left of it, above, below.
    [[nodiscard]] std::vector<QRect> placesFor(const QString& text, const QRect& dot) const {
        const QSize size(m_metrics.horizontalAdvance(text), m_metrics.height());
        const int middle = dot.center().y() - size.height() / 2;
        const int start = dot.center().x() - size.width() / 2;
        return {
            {{dot.right() + kGap, middle}, size},
            {{dot.left() - kGap - size.width(), middle}, size},
            {{start, dot.top() - size.height()}, size},
            {{start, dot.bottom() + 1}, size},
        };
    }

    [[nodiscard]] bool isFree(const QRect& place) const {
        const QRect picture(0, 0, kFrameWidth, kFrameHeight);
        const QRect wide =
            place.marginsAdded({kClearance, kClearance / 2, kClearance, kClearance / 2});
        return picture.marginsRemoved({kEdge, kEdge, kEdge, kEdge}).contains(place) &&
               !place.intersects(kTaken) &&
               std::none_of(m_labels.begin(), m_labels.end(), [&](const Label& other) {
                   return wide.intersects(other.name) || wide.intersects(other.dot);
               });
    }

    const QFontMetrics& m_metrics;
    std::vector<Label> m_labels;
};

void draw(QPainter& painter, const Label& label, int ascent) {
    const QPoint base = label.name.topLeft() + QPoint(0, ascent);
    painter.fillRect(label.dot.marginsAdded({1, 1, 1, 1}), kRim);
    painter.setPen(kRim);
    for (int x = -1; x <= 1; ++x) {
        for (int y = -1; y <= 1; ++y) {
            painter.drawText(base + QPoint(x, y), label.text);
        }
    }
    painter.setPen(kInk);
    painter.drawText(base, label.text);
    painter.fillRect(label.dot, kInk);
}

} // namespace

void drawCities(LayerCanvas& canvas, const std::vector<City>& cities, int most) {
    QPainter painter(&canvas.image());
    painter.setFont(font());
    const QFontMetrics metrics = painter.fontMetrics();
    LabelPlacer placer(metrics);
    for (const City& city : cities) {
        if (placer.labels().size() == static_cast<std::size_t>(most)) {
            break;
        }
        placer.place(city, canvas.at(city.position));
    }
    for (const Label& label : placer.labels()) {
        draw(painter, label, metrics.ascent());
    }
}

} // namespace raincast
