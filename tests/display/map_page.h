// SPDX-License-Identifier: MIT
// A page with a map view on it.
#pragma once

#include "display/item_map_view.h"
#include "display/map_lines_setting.h"
#include "display/map_menu.h"
#include "gps/mark_manager.h"
#include "page_window.h"
#include "support/files.h"
#include "units/units.h"

#include <QTemporaryDir>

namespace raincast::test {

/// A menu with the map view's entries.
inline constexpr int kMapTestMenu = 9108;

/// A view on an image of 600 by 550 pixels of a hundredth of a degree, north up, whose pixel (0, 0)
/// lies at 41 N, 105 W.
class TestView : public CItemMapView {
public:
    TestView() : CItemMapView(kMapTestMenu) {}

    using CItemMapView::geoReferenceChanged;
    using CItemMapView::setView;
    using CItemMapView::showPixel;

    void placeOnEarth() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("image.gfw"));
        writeFile(file, "0.01\n0\n0\n-0.01\n-105.0\n41.0\n");
        ASSERT_TRUE(geoReference().loadWorldFile(file.toStdString(), 600, 550));
        geoReferenceChanged();
    }
    void takeOffEarth() {
        geoReference().invalidate();
        geoReferenceChanged();
    }
};

/// The middle of an image pixel.
inline GeoPosition positionOf(int column, int row) {
    return {41 - (row + 0.5) / 100, -105 + (column + 0.5) / 100};
}

/// A position at the middle of an image pixel.
inline void publish(int column, int row, int fixType = kFixGps, float speed = 0) {
    CDataGPSPosition position;
    position.latitude = positionOf(column, row).latitude;
    position.longitude = positionOf(column, row).longitude;
    position.fixType = fixType;
    position.speed = speed;
    Listener<CDataGPSPosition>::Notify(position);
}

/// What all maps share, as in a new installation again once this goes: no marks, the usual units
/// and lines.
struct SharedMapState {
    CMarkManager& marks = CMarkManager::instance();

    SharedMapState() = default;
    SharedMapState(const SharedMapState&) = delete;
    SharedMapState& operator=(const SharedMapState&) = delete;
    ~SharedMapState() {
        marks.clear();
        use(CUnits::kMiles);
        CMapLines::show(CMapLines::position, true);
        CMapLines::show(CMapLines::navigation, true);
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

/// A page with a map view.
class MapTest : public PageTest, protected SharedMapState {
protected:
    MapTest() {
        auto item = std::make_unique<TestView>();
        view = item.get();
        page->addItem(std::move(item));
        view->setRectangle({20, 30, 120, 110}); // its middle is (70, 70)
    }

    TestView* view;
};

} // namespace raincast::test
