// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

class CItemMapView;

/// The commands of a map view's menu for marks and the user's position. Where something cannot be
/// done a message says why, unless the menu has the entry greyed.

/// Whether the view has been given marks to add to.
[[nodiscard]] bool canAddMarks(const CItemMapView& view);
/// Whether, moreover, there is a place for a mark: that of the user while the view follows them and
/// there is a fix, or else the view's centre on the image.
[[nodiscard]] bool canAddMark(const CItemMapView& view);
/// Asks for a name and adds a mark there.
void addMark(CItemMapView& view);
/// The same at the place that the view's menu was opened for.
void addMarkHere(CItemMapView& view);
/// Makes that place the target: the mark that stands there, or else a new one, with a name of its
/// own.
void setTargetHere(CItemMapView& view);

[[nodiscard]] bool hasMarks(const CItemMapView& view);
/// Shows the list of marks, nearest to the user or else to the view's centre first.
void editMarks(CItemMapView& view);

/// Asks for a position and shows it.
void goToPosition(CItemMapView& view);

/// Has the view follow the user's position, unless that is not on its image.
void followPosition(CItemMapView& view);

} // namespace raincast
