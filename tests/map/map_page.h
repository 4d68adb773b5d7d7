// SPDX-License-Identifier: MIT
// A page with a map view on it.
#pragma once

#include "map/item_map_view.h"
#include "map/map_lines_setting.h"
#include "map/map_menu.h"
#include "map/mark_manager.h"
#include "map/placed_image.h"
#include "page/page_window.h"
#include "units/units.h"

namespace raincast::test {

/// A menu with the map view's entries.
inline constexpr int kMapTestMenu = 9108;

/// A view on placedImage(), once it is placed.
class TestView : public CItemMapView {
public:
    TestView() : CItemMapView(kMapTestMenu) {}

    using CItemMapView::geoReferenceChanged;
    using CItemMapView::setView;
    using CItemMapView::showPixel;

    void placeOnEarth() {
        geoReference() = placedImage();
        geoReferenceChanged();
    }
    /// As a load does, which tells nobody when its world file cannot be had.
    void takeOffEarth() { geoReference().invalidate(); }
};

/// A position at the middle of an image pixel.
inline void publish(int column, int row, int fixType = kFixGps, float speed = 0) {
    CDataGPSPosition position;
    position.latitude = positionOf(column, row).latitude;
    position.longitude = positionOf(column, row).longitude;
    position.fixType = fixType;
    position.speed = speed;
    Listener<CDataGPSPosition>::Notify(position);
}

/// What the maps of a test share: marks, and settings, which are as in a new installation again
/// once this goes.
struct SharedMapState {
    CMarkManager marks;

    SharedMapState() = default;
    SharedMapState(const SharedMapState&) = delete;
    SharedMapState& operator=(const SharedMapState&) = delete;
    ~SharedMapState() {
        use(CUnits::kMiles);
        MapLinesSetting::show(MapLinesSetting::position, true);
        MapLinesSetting::show(MapLinesSetting::navigation, true);
    }

    static void use(CUnits::DistanceUnit unit) {
        CUnits units;
        units.units = unit;
        CUnits::setGlobal(units);
    }
    /// A mark at the middle of an image pixel.
    const COverlayMark& addMark(int column, int row, const QString& name) {
        return marks.add(positionOf(column, row), name);
    }
    [[nodiscard]] std::vector<std::string> markNames() const {
        std::vector<std::string> names;
        for (const COverlayMark& mark : marks.marks()) {
            names.push_back(mark.name.toStdString());
        }
        return names;
    }
};

/// A page with a map view. The marks are there before it and until it is gone.
class MapTest : protected SharedMapState, public PageTest {
protected:
    MapTest() {
        auto item = std::make_unique<TestView>();
        view = item.get();
        view->useMarks(marks);
        page->addItem(std::move(item));
        view->setRectangle({20, 30, 120, 110}); // its middle is (70, 70)
    }

    TestView* view;
};

} // namespace raincast::test
