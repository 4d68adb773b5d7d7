// SPDX-License-Identifier: MIT
#include "stations/recent_stations.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"
#include "radar/catalogue/sites.h"

namespace raincast {

namespace {

QString stored; ///< ids, with a space between two

} // namespace

class RecentStations::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CStations") {}

private:
    void exchange(SettingsExchange& values) override { values.string("recent", stored); }

    static Persistant s_record;
};

RecentStations::Persistant RecentStations::Persistant::s_record;

// What stands in the settings is no more than a wish.
QStringList RecentStations::ids() {
    QStringList known;
    for (const QString& id : stored.split(u' ', Qt::SkipEmptyParts)) {
        if (findRadarSite(id) != nullptr && !known.contains(id) && known.size() < kMost) {
            known.append(id);
        }
    }
    return known;
}

void RecentStations::note(const QString& id) {
    QStringList recent = ids();
    recent.removeAll(id);
    recent.prepend(id);
    stored = recent.mid(0, kMost).join(u' ');
    UserChange::announce();
}

void RecentStations::forget() {
    stored.clear();
}

} // namespace raincast
