// SPDX-License-Identifier: MIT
#include "map/map_marks.h"

#include "core/text.h"
#include "map/go_to_dialog.h"
#include "map/item_map_view.h"
#include "map/mark_manager.h"
#include "map/mark_names.h"
#include "map/marks_dialog.h"
#include "window/dlg_rename.h"
#include "window/message_box.h"

#include <algorithm>
#include <cstdlib>

namespace raincast {

namespace {

std::optional<GeoPosition> fixOf(const CItemMapView& view) {
    const CDataGPSPosition& fix = view.lastFix();
    return fix.valid() ? std::optional(GeoPosition{fix.latitude, fix.longitude}) : std::nullopt;
}

std::optional<GeoPosition> placeForMark(const CItemMapView& view) {
    const auto fix = view.following() ? fixOf(view) : std::nullopt;
    return fix ? fix : view.centreOnImage();
}

void addMarkAt(CItemMapView& view, std::optional<GeoPosition> place) {
    CMarkManager& marks = *view.marks();
    const QString proposed = proposedMarkName(marks.marks());
    CDlgRename dialog(proposed, Text::tr("Add Mark"));
    if (place && dialog.run(view.page()->widget()) == Dialog::kOk) {
        const QString name = dialog.name().trimmed();
        marks.add(*place, name.isEmpty() ? proposed : name);
    }
}

/// The mark that is nearest to a place on the page, among those that a finger would mean by it;
/// null without one.
const COverlayMark* markAt(const CItemMapView& view, GeoPosition place) {
    constexpr int kReach = 12;
    const auto here = view.pageAt(place);
    const COverlayMark* nearest = nullptr;
    int least = kReach + 1;
    for (const COverlayMark& mark : view.marks()->marks()) {
        const auto there = view.pageAt(mark.position());
        if (here && there) {
            const int away = std::max(std::abs(there->x - here->x), std::abs(there->y - here->y));
            nearest = away < least ? &mark : nearest;
            least = std::min(least, away);
        }
    }
    return nearest;
}

} // namespace

bool canAddMarks(const CItemMapView& view) {
    return view.marks() != nullptr;
}

bool canAddMark(const CItemMapView& view) {
    return canAddMarks(view) && placeForMark(view).has_value();
}

void addMark(CItemMapView& view) {
    addMarkAt(view, placeForMark(view));
}

void addMarkHere(CItemMapView& view) {
    addMarkAt(view, view.menuPlace());
}

void setTargetHere(CItemMapView& view) {
    if (!view.menuPlace()) {
        return;
    }
    CMarkManager& marks = *view.marks();
    const COverlayMark* const there = markAt(view, *view.menuPlace());
    marks.setTarget(
        there != nullptr ? *there : marks.add(*view.menuPlace(), proposedMarkName(marks.marks()))
    );
}

bool hasMarks(const CItemMapView& view) {
    return view.marks() != nullptr && !view.marks()->marks().empty();
}

void editMarks(CItemMapView& view) {
    const auto fix = fixOf(view);
    MarksDialog::GoTo goTo;
    if (view.placed()) {
        goTo = [&view](GeoPosition place) { return view.goTo(place); };
    }
    CAppPaged* const application = view.page()->application();
    Undo* const undo = application != nullptr ? application->undo() : nullptr;
    MarksDialog(*view.marks(), undo, fix ? fix : view.centreOnImage(), goTo)
        .run(view.page()->widget());
}

void goToPosition(CItemMapView& view) {
    GoToDialog(view.centrePosition(), [&view](GeoPosition place) {
        return view.goTo(place);
    }).run(view.page()->widget());
}

void followPosition(CItemMapView& view) {
    view.follow();
    if (!view.following()) {
        messageBox(
            view.page()->widget(), Text::tr("Your position is not on the map."),
            Text::tr("Follow Position")
        );
    }
}

} // namespace raincast
