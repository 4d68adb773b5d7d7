// SPDX-License-Identifier: MIT
#include "map/map_overlays.h"

#include "geo/geo_reference.h"
#include "map/taken_cells.h"
#include "page/item_placement.h"
#include "window/device_pixels.h"

#include <QMargins>
#include <QPainter>

#include <algorithm>
#include <iterator>

namespace raincast {

namespace {

constexpr int kVisibleMargin = 50;
// As far from a point as icons and arrowheads reach, in page pixels.
constexpr QMargins kDrawnAround(30, 30, 30, 30);
// Beyond any page.
constexpr std::int32_t kFarOff = 1 << 20;
// So many are drawn faster than a picture of the whole area is.
constexpr std::size_t kFewMarks = 50;
// Pins whose tips are nearer cannot be told from each other.
constexpr int kPinCell = 4;
// Names keep a little apart.
constexpr int kNameCell = 3;

} // namespace

MapOverlays::Entry& MapOverlays::entryOf(COverlayObject& object) {
    const auto place = m_places.constFind(&object);
    if (place != m_places.cend()) {
        return m_entries[place.value()];
    }
    m_places.insert(&object, m_entries.size());
    return m_entries.emplace_back(Entry{&object});
}

void MapOverlays::layout(COverlayObject& object, const GeoReference& geoReference) {
    if (!geoReference.valid()) {
        forget(object);
        return;
    }
    Entry& entry = entryOf(object);
    object.Layout(m_layout, geoReference);
    entry.layer = object.layer();
    entry.points.resize(static_cast<qsizetype>(m_layout.size()));
    std::copy(m_layout.begin(), m_layout.end(), entry.points.begin());
    changed(entry);
}

void MapOverlays::layoutAll(const GeoReference& geoReference) {
    m_entries.clear();
    m_places.clear();
    m_seen.reset();
    const auto& objects = COverlayObject::all();
    m_entries.reserve(objects.size());
    m_places.reserve(static_cast<qsizetype>(objects.size()));
    for (COverlayObject* const object : objects) {
        layout(*object, geoReference);
    }
}

void MapOverlays::changed(const Entry& entry) {
    m_seen.reset();
    if (entry.layer == COverlayObject::Layer::mark) {
        m_sight.reset();
    }
}

void MapOverlays::forget(COverlayObject& object) {
    const auto place = m_places.constFind(&object);
    if (place == m_places.cend()) {
        return;
    }
    Entry& entry = m_entries[place.value()];
    changed(entry);
    entry = {};
    m_places.erase(place);
    // Now and then: thousands may go, one after the other.
    if (static_cast<std::size_t>(m_places.size()) < m_entries.size() / 2) {
        dropForgotten();
    }
}

void MapOverlays::dropForgotten() {
    const auto isForgotten = [](const Entry& entry) { return entry.object == nullptr; };
    std::erase_if(m_entries, isForgotten);
    for (std::size_t place = 0; place < m_entries.size(); ++place) {
        m_places[m_entries[place].object] = place;
    }
    m_seen.reset();
}

std::optional<QRect>
MapOverlays::extent(const COverlayObject& object, const ViewTransform& view) const {
    const auto place = m_places.constFind(&object);
    if (place == m_places.cend()) {
        return QRect();
    }
    const Entry& entry = m_entries[place.value()];
    if (entry.layer == COverlayObject::Layer::mark) {
        return std::nullopt;
    }
    QRect box;
    for (const ImagePixel& pixel : entry.points) {
        const PagePoint point = view.toPage(pixel);
        const QPoint corner(
            std::clamp(point.x, -kFarOff, kFarOff), std::clamp(point.y, -kFarOff, kFarOff)
        );
        box |= QRect(corner, corner).marginsAdded(kDrawnAround);
    }
    return box;
}

void MapOverlays::draw(QPainter& painter, const ViewTransform& view, const PageRectangle& area) {
    const Box seen = Box::seenIn(area, view);
    if (m_seen != seen) {
        findInView(seen);
    }
    drawMarks(painter, {view, area.toRect(), painter.device()->logicalDpiY(), painter.font()});
    for (const std::size_t place : m_others) {
        const Entry& entry = m_entries[place];
        entry.object->Draw(painter, view, onPage(entry, view));
    }
}

void MapOverlays::findInView(const Box& seen) {
    m_marks.clear();
    m_others.clear();
    for (std::size_t place = 0; place < m_entries.size(); ++place) {
        if (seen.meets(m_entries[place])) {
            const bool isMark = m_entries[place].layer == COverlayObject::Layer::mark;
            (isMark ? m_marks : m_others).push_back(place);
        }
    }
    std::stable_sort(m_others.begin(), m_others.end(), [this](std::size_t one, std::size_t other) {
        return m_entries[one].layer < m_entries[other].layer;
    });
    m_seen = seen;
}

void MapOverlays::drawMarks(QPainter& painter, const Sight& sight) {
    if (m_marks.size() <= kFewMarks) {
        m_picture = {};
        m_sight.reset();
        drawMarksAnew(painter, sight);
        return;
    }
    if (m_sight != sight) {
        m_picture = pictureOfMarks(sight);
        m_sight = sight;
    }
    painter.drawImage(sight.area.topLeft(), m_picture);
}

QImage MapOverlays::pictureOfMarks(const Sight& sight) {
    QImage picture(sight.area.size(), QImage::Format_ARGB32_Premultiplied);
    setDensity(picture, sight.dotsPerInch);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setFont(sight.font);
    painter.translate(-sight.area.topLeft());
    drawMarksAnew(painter, sight);
    return picture;
}

// The youngest choose first where they lie; they are drawn last, names above all pins.
void MapOverlays::drawMarksAnew(QPainter& painter, const Sight& sight) {
    if (m_marks.empty()) {
        return;
    }
    TakenCells pins(
        sight.area.adjusted(-kVisibleMargin, -kVisibleMargin, kVisibleMargin, kVisibleMargin),
        kPinCell
    );
    TakenCells names(sight.area, kNameCell);
    std::vector<const Entry*> shown;
    std::vector<std::pair<QPoint, QImage>> written;
    for (auto place = m_marks.rbegin(); place != m_marks.rend(); ++place) {
        const Entry& entry = m_entries[*place];
        const std::vector<PagePoint>& points = onPage(entry, sight.view);
        if (!pins.take({points[0].x, points[0].y, 1, 1})) {
            continue;
        }
        shown.push_back(&entry);
        const auto label = entry.object->label(sight.view, points);
        const auto rough = [&] {
            return mapLabelBox(label->leftMiddle, roughLabelSize(painter, label->text));
        };
        const bool isCrowd = m_marks.size() > kFewMarks;
        if (!label || (isCrowd && !names.isFree(rough()))) {
            continue; // most of a crowd end here, without a picture
        }
        const QImage picture = mapLabelPicture(painter, label->text);
        const QRect box = mapLabelBox(label->leftMiddle, picture.size());
        if (names.take(box)) {
            written.emplace_back(box.topLeft(), picture);
        }
    }
    std::for_each(shown.rbegin(), shown.rend(), [&](const Entry* entry) {
        entry->object->Draw(painter, sight.view, onPage(*entry, sight.view));
    });
    for (const auto& [corner, picture] : written) {
        painter.drawImage(corner, picture);
    }
}

const std::vector<PagePoint>& MapOverlays::onPage(const Entry& entry, const ViewTransform& view) {
    m_onPage.clear();
    std::transform(
        entry.points.begin(), entry.points.end(), std::back_inserter(m_onPage),
        [&view](const ImagePixel& pixel) { return view.toPage(pixel); }
    );
    return m_onPage;
}

bool MapOverlays::Box::meets(const Entry& entry) const {
    if (entry.points.isEmpty()) {
        return false;
    }
    ImagePixel least = entry.points[0];
    ImagePixel most = least;
    for (const ImagePixel& point : entry.points) {
        least = {std::min(least.column, point.column), std::min(least.row, point.row)};
        most = {std::max(most.column, point.column), std::max(most.row, point.row)};
    }
    return least.column <= right && left <= most.column && least.row <= bottom && top <= most.row;
}

MapOverlays::Box MapOverlays::Box::seenIn(const PageRectangle& area, const ViewTransform& view) {
    const ImagePixel first = view.toImage({area.left, area.top});
    const ImagePixel last = view.toImage({area.right, area.bottom});
    return {
        std::int64_t{first.column} - kVisibleMargin, std::int64_t{first.row} - kVisibleMargin,
        std::int64_t{last.column} + kVisibleMargin, std::int64_t{last.row} + kVisibleMargin};
}

} // namespace raincast
