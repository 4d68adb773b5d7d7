// SPDX-License-Identifier: MIT
#include "maps/city_layer.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <array>

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
// Where viewers write a frame's time, and sample weather says that it is that, in the described
// picture.
constexpr QRect kTaken(0, 520, 100, 30);

QFont font() {
    QFont result(QStringLiteral("DejaVu Sans"));
    result.setPixelSize(kTextPixels);
    result.setStyleStrategy(QFont::NoSubpixelAntialias);
    result.setHintingPreference(QFont::PreferFullHinting);
    return result;
}

/// Where a name stands of its dot.
enum class Side { right, left, above, below };
constexpr std::array kSides = {Side::right, Side::left, Side::above, Side::below};

/// A name that has its place.
struct Label {
    std::size_t city; ///< its number
    QString text;
    Side side;
    QRect dot;
    QRect name;
};

/// Finds places for names in a picture of some detail, one after the other.
class LabelPlacer {
public:
    LabelPlacer(const QFontMetrics& metrics, int detail)
        : m_metrics(metrics), m_free(QRect(0, 0, kFrameWidth * detail, kFrameHeight * detail)
                                         .marginsRemoved({kEdge, kEdge, kEdge, kEdge})),
          m_taken(kTaken.topLeft() * detail, kTaken.size() * detail) {}

    /// On the first side that has room, if there is one.
    void place(std::size_t number, const City& city, QPointF point) {
        const QRect dot = dotAt(point);
        if (!isFree(dot)) {
            return;
        }
        const QSize size = sizeOf(city.name);
        for (const Side side : kSides) {
            if (const QRect name = placeOf(size, dot, side); isFree(name)) {
                m_labels.push_back({number, city.name, side, dot, name});
                return;
            }
        }
    }

    /// On a side that was found in a coarser picture: here dots are farther from each other, so it
    /// has room.
    void placeAgain(const Label& label, QPointF point) {
        const QRect dot = dotAt(point);
        const QRect name = placeOf(sizeOf(label.text), dot, label.side);
        m_labels.push_back({label.city, label.text, label.side, dot, name});
    }

    [[nodiscard]] const std::vector<Label>& labels() const { return m_labels; }

private:
    static QRect dotAt(QPointF point) {
        const QPoint pixel(static_cast<int>(point.x()), static_cast<int>(point.y()));
        return {pixel.x() - kDot / 2, pixel.y() - kDot / 2, kDot, kDot};
    }

    [[nodiscard]] QSize sizeOf(const QString& text) const {
        return {m_metrics.horizontalAdvance(text), m_metrics.height()};
    }

    static QRect placeOf(const QSize& size, const QRect& dot, Side side) {
        const int middle = dot.center().y() - size.height() / 2;
        const int start = dot.center().x() - size.width() / 2;
        switch (side) {
        case Side::right:
            return {{dot.right() + kGap, middle}, size};
        case Side::left:
            return {{dot.left() - kGap - size.width(), middle}, size};
        case Side::above:
            return {{start, dot.top() - size.height()}, size};
        case Side::below:
            break;
        }
        return {{start, dot.bottom() + 1}, size};
    }

    [[nodiscard]] bool isFree(const QRect& place) const {
        const QRect wide =
            place.marginsAdded({kClearance, kClearance / 2, kClearance, kClearance / 2});
        return m_free.contains(place) && !place.intersects(m_taken) &&
               std::none_of(m_labels.begin(), m_labels.end(), [&](const Label& other) {
                   return wide.intersects(other.name) || wide.intersects(other.dot);
               });
    }

    const QFontMetrics& m_metrics;
    QRect m_free;
    QRect m_taken;
    std::vector<Label> m_labels;
};

/// The names of a picture of some detail: those of the coarser ones, then others that have room
/// between them. `points` are the cities' places in the described picture.
std::vector<Label> labelsOf(
    const std::vector<City>& cities, const std::vector<QPointF>& points, int detail, int most,
    const QFontMetrics& metrics
) {
    std::vector<bool> isNamed(cities.size());
    LabelPlacer placer(metrics, detail);
    if (detail > 1) {
        for (const Label& label : labelsOf(cities, points, detail / 2, most, metrics)) {
            placer.placeAgain(label, points[label.city] * detail);
            isNamed[label.city] = true;
        }
    }
    // As many for each part of the picture as there are in the described one.
    const auto room = static_cast<std::size_t>(most) * static_cast<std::size_t>(detail * detail);
    for (std::size_t i = 0; i < cities.size() && placer.labels().size() < room; ++i) {
        if (!isNamed[i]) {
            placer.place(i, cities[i], points[i] * detail);
        }
    }
    return placer.labels();
}

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

std::function<void(LayerCanvas&)>
cityDrawing(const LayerPlace& place, const std::vector<City>& cities, int most) {
    if (cities.empty()) {
        return [](LayerCanvas&) {};
    }
    const int detail = place.geometry().detail();
    std::vector<QPointF> points;
    points.reserve(cities.size());
    for (const City& city : cities) {
        points.push_back(place.at(city.position) / detail);
    }
    const QFontMetrics metrics(font());
    return [labels = labelsOf(cities, points, detail, most, metrics),
            ascent = metrics.ascent()](LayerCanvas& canvas) {
        canvas.paint([&](QPainter& painter) {
            painter.setFont(font());
            for (const Label& label : labels) {
                if (label.name.united(label.dot).intersects(canvas.part())) {
                    draw(painter, label, ascent);
                }
            }
        });
    };
}

} // namespace raincast
