// SPDX-License-Identifier: MIT
#include "map/map_menu.h"

#include "map/item_map_view.h"
#include "map/map_lines_setting.h"
#include "map/map_marks.h"
#include "units/units.h"
#include "window/command_set.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include <algorithm>
#include <iterator>

namespace raincast {

namespace {

using View = CItemMapView;

// A command of the map view, and when it can be carried out.
struct MapCommand {
    int id;
    void (*run)(View& view);
    bool (*enabled)(const View& view);
    bool (*checked)(const View& view); ///< null for one that is never checked
};

bool always(const View& /*view*/) {
    return true;
}

bool hasMenuPlace(const View& view) {
    return view.menuPlace().has_value();
}

void copyPosition(View& view) {
    QGuiApplication::clipboard()->setText(CUnits::global().formatPosition(*view.menuPlace()));
}

void centreHere(View& view) {
    static_cast<void>(view.goTo(*view.menuPlace()));
}

template<MapLinesSetting::Line line>
void toggleLine(View& view) {
    MapLinesSetting::show(line, !MapLinesSetting::shown(line));
    view.invalidate();
}

template<MapLinesSetting::Line line>
bool lineIsShown(const View& /*view*/) {
    return MapLinesSetting::shown(line);
}

void toggleFollowing(View& view) {
    if (view.following()) {
        view.stopFollowing();
    } else {
        followPosition(view);
    }
}

constexpr MapCommand kCommands[] = {
    {kAddMark, addMark, canAddMark, nullptr},
    {kAddMarkHere, addMarkHere, canAddMarks, nullptr},
    {kSetTargetHere, setTargetHere, canAddMarks, nullptr},
    {kCopyPosition, copyPosition, hasMenuPlace, nullptr},
    {kCentreHere, centreHere, hasMenuPlace, nullptr},
    {kMarks, editMarks, hasMarks, nullptr},
    {kFollowPosition, toggleFollowing,
     [](const View& view) { return view.placed() || view.following(); },
     [](const View& view) { return view.following(); }},
    {kGoToPosition, goToPosition, [](const View& view) { return view.placed(); }, nullptr},
    {kFitImage, [](View& view) { view.fitImage(); }, always, nullptr},
    {kShowPosition, toggleLine<MapLinesSetting::position>, always,
     lineIsShown<MapLinesSetting::position>},
    {kShowNavigation, toggleLine<MapLinesSetting::navigation>, always,
     lineIsShown<MapLinesSetting::navigation>},
};

} // namespace

bool runMapCommand(CItemMapView& view, int command) {
    const auto* const found =
        std::find_if(std::begin(kCommands), std::end(kCommands), [command](const MapCommand& each) {
            return each.id == command;
        });
    if (found == std::end(kCommands)) {
        return false;
    }
    if (found->enabled(view)) {
        found->run(view);
    }
    return true;
}

void prepareMapMenu(const CItemMapView& view, QMenu& menu) {
    for (const MapCommand& command : kCommands) {
        enableCommand(menu, command.id, command.enabled(view));
        if (command.checked != nullptr) {
            checkCommand(menu, command.id, command.checked(view));
        }
    }
}

} // namespace raincast
