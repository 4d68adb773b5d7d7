// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "window/dlg_item_type_select.h"

#include <QString>

#include <optional>

namespace raincast {

/// "Weather Station": the sites within 500 km of a position, nearest first, each with its distance
/// in the user's unit; all sites in the order of their names at latitude 0, or where none is near.
/// The site in use is selected at first.
class CDlgStation : public CDlgItemTypeSelect {
public:
    CDlgStation(GeoPosition position, const QString& currentId);

    /// The id of the chosen site.
    [[nodiscard]] std::optional<QString> chosenSite() const;
};

} // namespace raincast
