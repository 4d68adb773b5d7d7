// SPDX-License-Identifier: MIT
#include "map/item_map_view.h"

#include "core/text.h"
#include "core/user_change.h"
#include "map/fitted_view.h"
#include "map/follow_icon.h"
#include "map/map_lines.h"
#include "map/map_menu.h"
#include "map/mark_manager.h"
#include "map/text_box.h"
#include "map/view_bytes.h"
#include "page/context_menu.h"
#include "persist/record_reader.h"
#include "persist/record_writer.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace raincast {

namespace {

constexpr int kKeyPan = 32;
// Where the follow icon's top-left corner lies from the item's bottom-right one.
constexpr QPoint kFollowIconPlace(-13, -16);

struct Pan {
    int key;
    int dx;
    int dy;
};

// The picture moves away from where the user wants to look.
constexpr Pan kPans[] = {
    {Qt::Key_Left, kKeyPan, 0},
    {Qt::Key_Up, 0, kKeyPan},
    {Qt::Key_Right, -kKeyPan, 0},
    {Qt::Key_Down, 0, -kKeyPan},
};

GeoPosition placeOf(const CDataGPSPosition& fix) {
    return {fix.latitude, fix.longitude};
}

} // namespace

CItemMapView::CItemMapView(int menuId) : CItem(menuId) {}

bool CItemMapView::Read(CSerialReader& reader) {
    if (!CItem::Read(reader)) {
        return false;
    }
    CRecordReader record(reader);
    ViewBytes bytes = viewToBytes(m_view);
    record.bytes(bytes);
    record.value(m_following);
    record.end();
    m_view = viewFromBytes(bytes);
    return true;
}

bool CItemMapView::Write(CSerialWriter& writer) const {
    if (!CItem::Write(writer)) {
        return false;
    }
    CRecordWriter record(writer);
    // What covers the page's upper part at present is not there after the next start.
    record.bytes(viewToBytes(isFitted(covered()) ? fitted(covered(0, coveredBelow())) : m_view));
    record.value(m_following);
    return record.end();
}

void CItemMapView::draw(QPainter& painter) {
    // Their places are those of the image that was placed last.
    if (placed()) {
        m_overlays.draw(painter, m_view, rectangle());
    }
    if (placed() && !imageInView()) {
        drawBoxedText(painter, area(), Text::tr("Home brings the radar back"));
    }
    const QStringList shown = lines(painter.fontMetrics());
    drawMapLines(painter, area(), shown);
    if (!m_drawsAs) {
        const int height = static_cast<int>(shown.size()) * painter.fontMetrics().height();
        m_linesDrawn = QRect(area().topLeft(), QSize(area().width(), height));
        m_wayDrawn = hasWay();
    }
    if (m_following && m_lastFix.valid()) {
        const QPoint corner(rectangle().right, rectangle().bottom - coveredBelow());
        drawFollowIcon(painter, corner + kFollowIconPlace);
    }
}

void CItemMapView::setRectangle(const PageRectangle& newRectangle) {
    const ImagePixel pixel = m_view.toImage({rectangle().left, rectangle().top});
    const bool wasFitted = isFitted(covered());
    CItem::setRectangle(newRectangle);
    if (wasFitted) {
        m_view = fitted(covered());
        return;
    }
    place({newRectangle.left, newRectangle.top}, pixel);
}

bool CItemMapView::command(int id, int /*notification*/) {
    switch (id) {
    case kZoomIn:
        zoomBy(-1, centre());
        return true;
    case kZoomOut:
        zoomBy(1, centre());
        return true;
    default:
        return runMapCommand(*this, id);
    }
}

bool CItemMapView::keyDown(int key) {
    if (key == Qt::Key_Home) {
        fitImage();
        return true;
    }
    if (key == Qt::Key_Menu) {
        using By = CPageDisplay::ContextMenu::By;
        return page()->contextMenu().open(centre(), By::rightButton);
    }
    const auto pan = std::find_if(std::begin(kPans), std::end(kPans), [key](const Pan& each) {
        return each.key == key;
    });
    if (pan == std::end(kPans)) {
        return false;
    }
    panBy(pan->dx, pan->dy);
    return true;
}

bool CItemMapView::character(char16_t unit) {
    switch (unit) {
    case u'+':
    case u'=':
        zoomBy(-1, centre());
        return true;
    case u'-':
    case u'_':
        zoomBy(1, centre());
        return true;
    case u'0':
        fitImage();
        return true;
    case u'L':
    case u'l':
        follow();
        return true;
    default:
        return false;
    }
}

bool CItemMapView::stylusDown(int x, int y, Qt::KeyboardModifiers /*keys*/) {
    m_dragX = x;
    m_dragY = y;
    m_followedBeforeDrag = m_following;
    return true;
}

// Zoomed in, the image moves by whole image pixels; the rest counts in the next move.
void CItemMapView::stylusMove(int x, int y) {
    const int block = 1 << std::max(-m_view.zoom(), 0);
    const int dx = (x - m_dragX) & -block;
    const int dy = (y - m_dragY) & -block;
    m_dragX += dx;
    m_dragY += dy;
    panBy(dx, dy);
}

void CItemMapView::stylusLost() {
    if (m_followedBeforeDrag && !m_following) {
        follow();
    }
}

bool CItemMapView::doublePress(int x, int y) {
    return zoom(1, x, y);
}

bool CItemMapView::zoom(int steps, int x, int y) {
    const PagePoint place{rectangle().left + x, rectangle().top + y};
    for (int step = 0; step < std::abs(steps); ++step) {
        zoomBy(steps > 0 ? -1 : 1, m_following ? centre() : place);
    }
    return true;
}

std::span<const MenuRow> CItemMapView::contextMenu(int x, int y) {
    m_menuPlace = positionAt({rectangle().left + x, rectangle().top + y});
    return m_menuPlace ? std::span<const MenuRow>(kMapPlaceRows) : std::span<const MenuRow>();
}

// Of several maps on a page it is the first that takes the commands.
void CItemMapView::menuPopUp(QMenu& menu) {
    if (firstOnPage()) {
        prepareMapMenu(*this, menu);
    }
}

bool CItemMapView::firstOnPage() const {
    const auto& items = page()->items();
    const auto first = std::find_if(items.begin(), items.end(), [](const auto& item) {
        return dynamic_cast<const CItemMapView*>(item.get()) != nullptr;
    });
    return first != items.end() && first->get() == this;
}

void CItemMapView::follow() {
    m_following = true;
    UserChange::announce();
    if (m_lastFix.valid()) {
        m_following = centreOn(placeOf(m_lastFix));
    }
    invalidate();
}

void CItemMapView::stopFollowing() {
    m_following = false;
    UserChange::announce();
    invalidate();
}

std::optional<GeoPosition> CItemMapView::positionAt(PagePoint point) const {
    const ImagePixel pixel = m_view.toImage(point);
    const bool onImage = pixel.column >= 0 && pixel.column < m_geoReference.width() &&
                         pixel.row >= 0 && pixel.row < m_geoReference.height();
    if (!placed() || !onImage) {
        return std::nullopt;
    }
    // In the pixel's middle: its corner might come back as its neighbour.
    return m_geoReference.pixelToGeo({pixel.column + 0.5, pixel.row + 0.5});
}

std::optional<PagePoint> CItemMapView::pageAt(GeoPosition position) const {
    const auto placed = m_geoReference.geoToPixelInside(position);
    return m_geoReference.valid() && placed.ok ? std::optional(m_view.toPage(placed.pixel))
                                               : std::nullopt;
}

bool CItemMapView::goTo(GeoPosition position) {
    const bool shown = centreOn(position);
    if (shown && m_following) {
        m_following = false;
        invalidate();
    }
    UserChange::announce();
    return shown;
}

bool CItemMapView::centreOn(GeoPosition position) {
    const auto placed = m_geoReference.geoToPixelInside(position);
    if (!m_geoReference.valid() || !placed.ok) {
        invalidate();
        return false;
    }
    const ViewTransform before = m_view;
    m_view.placeOrigin(centre(), placed.pixel);
    if (m_view != before) {
        invalidate();
    }
    return true;
}

GeoPosition CItemMapView::centrePosition() const {
    if (!m_geoReference.valid()) {
        return {};
    }
    const ImagePixel pixel = centrePixel();
    return m_geoReference.pixelToGeo(
        {static_cast<double>(pixel.column), static_cast<double>(pixel.row)}
    );
}

ImagePixel CItemMapView::centrePixel() const {
    return m_view.toImage(centre());
}

bool CItemMapView::setView(ImagePixel pixel, GeoPosition fallback) {
    showPixel(pixel);
    const bool byFix = m_following && m_lastFix.valid();
    const bool centred = centreOn(byFix ? placeOf(m_lastFix) : fallback);
    m_following = m_following && centred;
    return centred;
}

void CItemMapView::showPixel(ImagePixel pixel) {
    place(centre(), pixel);
}

void CItemMapView::fitImage() {
    m_following = false;
    showWholeImage();
    UserChange::announce();
}

void CItemMapView::showWholeImage() {
    if (!imageSize().isEmpty()) {
        m_view = fitted(covered());
        invalidate();
    }
}

ViewTransform CItemMapView::fitted(const Covered& covered) const {
    PageRectangle seen = rectangle();
    seen.bottom -= covered.below;
    return fittedView(seen, imageSize(), covered.above);
}

bool CItemMapView::isFitted(const Covered& covered) const {
    return !imageSize().isEmpty() && m_view == fitted(covered);
}

void CItemMapView::coveredChanged(const Covered& before) {
    if (isFitted(before)) {
        showWholeImage();
    }
    invalidate();
}

void CItemMapView::coveredBelowChanged(int before) {
    coveredChanged(covered(pageCoveredTop(), before));
}

void CItemMapView::coveredTopChanged(int before) {
    coveredChanged(covered(before, coveredBelow()));
}

void CItemMapView::drawAs(const Look& look, QPainter& painter) {
    const Look present = this->look();
    usePlacement(look.placement);
    m_view = look.view;
    m_drawsAs = true;
    draw(painter);
    m_drawsAs = false;
    usePlacement(present.placement);
    m_view = present.view;
}

QSize CItemMapView::imageSize() const {
    return placed() ? QSize(m_geoReference.width(), m_geoReference.height()) : QSize();
}

bool CItemMapView::imageInView() const {
    const PagePoint first = m_view.toPage({0, 0});
    const PagePoint last = m_view.toPage({imageSize().width(), imageSize().height()});
    return first.x < rectangle().right && last.x > rectangle().left &&
           first.y < rectangle().bottom && last.y > rectangle().top;
}

void CItemMapView::geoReferenceChanged() {
    m_overlays.layoutAll(m_geoReference);
    invalidate();
}

QRect CItemMapView::area() const {
    const auto [above, below] = covered();
    return rectangle().toRect().adjusted(0, above, 0, -below);
}

int CItemMapView::pageCoveredTop() const {
    return page() != nullptr ? page()->coveredTop() : 0;
}

// The first is the page's, from its upper edge; the second is the item's own.
CItemMapView::Covered CItemMapView::covered(int pageTop, int below) const {
    const QRect whole = rectangle().toRect();
    const int height = std::max(whole.height(), 0);
    const int under = std::clamp(below, 0, height);
    return {std::clamp(pageTop - whole.top(), 0, height - under), under};
}

QStringList CItemMapView::lines(const QFontMetrics& metrics) const {
    const NavigationData* const way = m_marks != nullptr ? m_marks->navigation() : nullptr;
    return mapLines(m_lastFix, way, metrics, area().width() - 2 * kMapLinesMargin);
}

int CItemMapView::linesHeight(const QFontMetrics& metrics) const {
    return static_cast<int>(lines(metrics).size()) * metrics.height();
}

void CItemMapView::onPublished(CDataGPSPosition& position) {
    const bool comesOrGoes = position.valid() != m_lastFix.valid();
    m_lastFix = position;
    // A receiver may be sooner than the picture. Its next position is the first to be followed.
    if (m_following && position.valid() && placed()) {
        m_following = centreOn(placeOf(position));
    }
    if (comesOrGoes || readsPosition()) {
        invalidate(); // the lines and the icon come and go with the fix
    } else {
        linesChanged();
    }
}

bool CItemMapView::hasWay() const {
    return m_marks != nullptr && m_marks->navigation() != nullptr;
}

// A receiver speaks ten times a second: all but the lines stays as it is painted.
void CItemMapView::linesChanged() {
    if (hasWay() == m_wayDrawn) {
        invalidate(m_linesDrawn);
    } else {
        invalidate();
    }
}

void CItemMapView::onPublished(COverlayObject& object) {
    const auto before = m_overlays.extent(object, m_view);
    if (object.change() == COverlayObject::Change::removed) {
        m_overlays.forget(object);
    } else {
        m_overlays.layout(object, m_geoReference);
    }
    const auto after = m_overlays.extent(object, m_view);
    if (before && after) {
        invalidate(*before | *after);
    } else {
        invalidate();
    }
}

void CItemMapView::onPublished(NavigationData& /*navigation*/) {
    linesChanged();
}

void CItemMapView::onUnitsChanged() {
    invalidate();
}

void CItemMapView::zoomBy(int step, PagePoint fixed) {
    if (m_view.zoomBy(step, fixed)) {
        UserChange::announce();
        invalidate();
    }
}

// Moves the picture by page pixels, as a person does: following ends.
void CItemMapView::panBy(int dx, int dy) {
    m_following = false;
    place({dx, dy}, m_view.origin());
    UserChange::announce();
}

void CItemMapView::place(PagePoint point, ImagePixel pixel) {
    m_view.placeOrigin(point, pixel);
    invalidate();
}

} // namespace raincast
