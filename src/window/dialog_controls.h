// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <vector>

class QDialog;
class QWidget;

namespace raincast {

struct DialogTemplate;

/// The widgets of a template's controls, in its order.
using DialogControls = std::vector<QWidget*>;

/// Makes a template's controls on `client`; their use sends commands to `dialog`. Each one's
/// objectName is its identifier in decimal; a label names the control that follows it.
[[nodiscard]] DialogControls
makeControls(QDialog& dialog, QWidget& client, const DialogTemplate& content);

/// The pixels of a dialog unit, both ways.
struct DialogUnits {
    double x = 0;
    double y = 0;

    [[nodiscard]] QSize toPixels(const QSize& units) const;
};

/// The units of a dialog: the font's, grown until each control has room for what it shows.
[[nodiscard]] DialogUnits
fittingUnits(const QWidget& client, const DialogTemplate& content, const DialogControls& controls);

/// Gives every control its place; extents of 0 become the control's natural size.
void placeControls(
    const DialogUnits& units, const DialogTemplate& content, const DialogControls& controls
);

} // namespace raincast
