// SPDX-License-Identifier: MIT
#include "weather/dlg_station.h"

#include "radar/site_list.h"
#include "radar/sites.h"

namespace raincast {

namespace {

QString distanceText(std::optional<float> metres) {
    return metres ? QStringLiteral("%1 km").arg(qRound(*metres / 1000)) : QString();
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

} // namespace raincast
