// SPDX-License-Identifier: MIT
#include "weather/dlg_station.h"

#include "radar/catalogue/site_list.h"
#include "radar/catalogue/sites.h"
#include "units/units.h"

namespace raincast {

namespace {

QString distanceText(std::optional<float> metres) {
    return metres ? CUnits::global().distanceText(*metres) : QString();
}

} // namespace

CDlgStation::CDlgStation(GeoPosition position, const QString& currentId)
    : CDlgItemTypeSelect(QStringLiteral("Weather Station")) {
    const SiteList list = listSites(position.latitude, position.longitude, currentId);
    for (std::size_t i = 0; i < list.rows.size(); ++i) {
        const SiteList::Row& row = list.rows[i];
        add(row.site->nameText().toString(), row.site->idText().toString(), list.selected == i,
            distanceText(row.distanceMetres));
    }
}

std::optional<QString> CDlgStation::chosenSite() const {
    const QString id = selectedDatum().toString();
    return id.isEmpty() ? std::nullopt : std::optional(id);
}

} // namespace raincast
