// SPDX-License-Identifier: MIT
#pragma once

#include "core/listener.h"
#include "geo/geo_reference.h"
#include "geo/view_transform.h"
#include "map/map_overlays.h"
#include "map/navigation_data.h"
#include "map/overlay_object.h"
#include "page/item.h"
#include "position/data_gps_position.h"
#include "units/units_change_listener.h"

#include <QRect>
#include <QSize>
#include <QStringList>

#include <optional>

class QFontMetrics;

namespace raincast {

class CMarkManager;

/// An item that shows part of a geo-referenced image: it zooms, pans, follows the user's position
/// and draws the overlays. The image itself is the subclass's, which also fills the geo-reference.
class CItemMapView : public CPageDisplay::CItem,
                     private Listener<CDataGPSPosition>,
                     private Listener<COverlayObject>,
                     private Listener<NavigationData>,
                     private CUnits::ChangeListener {
public:
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;

    /// The overlays, while the image is placed; the lines at the top; while following, the follow
    /// icon.
    void draw(QPainter& painter) override;
    /// Keeps the image pixel at the top-left corner where it is; an image that is fitted into the
    /// old rectangle is fitted into the new one.
    void setRectangle(const PageRectangle& rectangle) override;
    /// Zooms in and out, and what else the map's menu offers (map/map_menu.h).
    bool command(int id, int notification) override;
    /// The arrow keys pan, Home fits, Menu opens the menu of the place in the middle.
    bool keyDown(int key) override;
    /// "+" and "-" zoom (or "=" and "_"), "L" follows, "0" fits.
    bool character(char16_t unit) override;
    bool stylusDown(int x, int y, Qt::KeyboardModifiers keys) override;
    void stylusMove(int x, int y) override;
    void stylusLost() override;
    /// Zooms in there.
    bool doublePress(int x, int y) override;
    /// About the place; while following, about the middle, where the position is to stay.
    bool zoom(int steps, int x, int y) override;
    std::span<const MenuRow> contextMenu(int x, int y) override;
    void menuPopUp(QMenu& menu) override;

    /// The user's marks, which the commands add to and edit, and the way to their target: borrowed,
    /// and used for as long as the view lives. Until then there are none to add to.
    void useMarks(CMarkManager& marks) { m_marks = &marks; }
    [[nodiscard]] CMarkManager* marks() const { return m_marks; }

    [[nodiscard]] const ViewTransform& view() const { return m_view; }
    /// Whether the user's position is kept in the middle. Any pan, drag or failed centring ends it.
    [[nodiscard]] bool following() const { return m_following; }
    /// Follows, and shows the last position at once if it has a fix.
    void follow();
    void stopFollowing();
    /// The last position that was published, with or without a fix.
    [[nodiscard]] const CDataGPSPosition& lastFix() const { return m_lastFix; }

    /// How the item looks at present, to be drawn so later.
    struct Look {
        ItemPlacement placement;
        ViewTransform view;
    };
    [[nodiscard]] Look look() const { return {placement(), m_view}; }
    /// Draws what the item shows as it looked then.
    void drawAs(const Look& look, QPainter& painter);
    /// Whether that is being done: what is drawn is not for the screen.
    [[nodiscard]] bool drawsAs() const { return m_drawsAs; }

    /// Whether the image has its place on the earth: without one there are no positions.
    [[nodiscard]] bool placed() const { return m_geoReference.valid(); }
    /// The position in the middle of the pixel under a point of the page; none outside of the
    /// image.
    [[nodiscard]] std::optional<GeoPosition> positionAt(PagePoint point) const;
    /// The point of the page that shows a position; none for one that is not on the image.
    [[nodiscard]] std::optional<PagePoint> pageAt(GeoPosition position) const;
    [[nodiscard]] std::optional<GeoPosition> centreOnImage() const { return positionAt(centre()); }
    /// The position that the menu of a place was opened for last.
    [[nodiscard]] const std::optional<GeoPosition>& menuPlace() const { return m_menuPlace; }
    /// Puts a position in the middle because the user wants to look there: following ends. False,
    /// and nothing changes, as with centreOn().
    bool goTo(GeoPosition position);

    /// Puts a position in the middle; false, and nothing moves, when the image is not placed or the
    /// position is outside of it.
    bool centreOn(GeoPosition position);
    /// The position in the middle; (0, 0) while the image is not placed.
    [[nodiscard]] GeoPosition centrePosition() const;
    /// The image pixel in the middle.
    [[nodiscard]] ImagePixel centrePixel() const;

    /// Fits the image into the item (map/fitted_view.h), as the user asks: following ends. The
    /// image stays fitted when the item's size changes, until the view is another one.
    void fitImage();

protected:
    explicit CItemMapView(int menuId);

    /// Puts an image pixel in the middle and then, if it can be, the last position while
    /// following, else the fallback. False when that failed; following has ended then.
    bool setView(ImagePixel pixel, GeoPosition fallback);
    /// Puts an image pixel in the middle.
    void showPixel(ImagePixel pixel);
    /// Fits the image into what is seen of the item, if its size is known.
    void showWholeImage();
    /// Whether the view is that of fitImage().
    [[nodiscard]] bool showsWholeImage() const { return isFitted(covered()); }

    [[nodiscard]] GeoReference& geoReference() { return m_geoReference; }
    [[nodiscard]] const GeoReference& geoReference() const { return m_geoReference; }
    /// The size of the image that is shown or will be; empty if it is not known.
    [[nodiscard]] virtual QSize imageSize() const;

    /// To be called when the geo-reference was changed: the overlays take their new places.
    void geoReferenceChanged();

    /// Whether it is the first map view of its page, which takes the commands.
    [[nodiscard]] bool firstOnPage() const;
    /// The height of what lies over the rectangle's lower edge, in device pixels.
    [[nodiscard]] virtual int coveredBelow() const { return 0; }
    /// To be called when coveredBelow() has become another height: what was fitted above it is
    /// fitted again.
    void coveredBelowChanged(int before);
    /// The item's rectangle without what is covered at its edges.
    [[nodiscard]] QRect area() const;
    /// Whether more of what is drawn depends on the user's position than the map view draws itself.
    [[nodiscard]] virtual bool readsPosition() const { return false; }
    /// The height of the lines that stand at the area's top at present.
    [[nodiscard]] int linesHeight(const QFontMetrics& metrics) const;

private:
    void onPublished(CDataGPSPosition& position) override;
    void onPublished(COverlayObject& object) override;
    void onPublished(NavigationData& navigation) override;
    void onUnitsChanged() override;
    void coveredTopChanged(int before) override;

    [[nodiscard]] QStringList lines(const QFontMetrics& metrics) const;
    [[nodiscard]] bool hasWay() const;
    void linesChanged();
    void zoomBy(int step, PagePoint fixed);
    [[nodiscard]] bool imageInView() const;
    /// Heights at the rectangle's edges.
    struct Covered {
        int above = 0;
        int below = 0;
    };
    [[nodiscard]] Covered covered() const { return covered(pageCoveredTop(), coveredBelow()); }
    [[nodiscard]] Covered covered(int pageTop, int below) const;
    [[nodiscard]] int pageCoveredTop() const;
    [[nodiscard]] ViewTransform fitted(const Covered& covered) const;
    [[nodiscard]] bool isFitted(const Covered& covered) const;
    void coveredChanged(const Covered& before);
    void panBy(int dx, int dy);
    void place(PagePoint point, ImagePixel pixel);
    [[nodiscard]] PagePoint centre() const { return rectangle().centre(); }

    CMarkManager* m_marks = nullptr;
    GeoReference m_geoReference;
    ViewTransform m_view;
    bool m_following = false;
    bool m_drawsAs = false;
    CDataGPSPosition m_lastFix;
    QRect m_linesDrawn;      ///< where
    bool m_wayDrawn = false; ///< as one of them
    MapOverlays m_overlays;
    int m_dragX = 0;
    int m_dragY = 0;
    bool m_followedBeforeDrag = false;
    std::optional<GeoPosition> m_menuPlace;
};

} // namespace raincast
