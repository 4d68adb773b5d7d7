// SPDX-License-Identifier: MIT
// Settings of any values, a line each: "sCServers radar=one.example" is a text, "dCLoop speed=3" a
// number, "bCDefaultUnits data=0001" bytes. All records take them, what they give out can be used,
// and what they save they load again.
#include "along/along_setting.h"
#include "input.h"
#include "map/mark_manager.h"
#include "map/overlay_gps_position.h"
#include "map/target_setting.h"
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "player/loop_setting.h"
#include "position/source/position_source_setting.h"
#include "radar/catalogue/sites.h"
#include "stations/recent_stations.h"
#include "units/units.h"
#include "weather/servers_setting.h"

#include <QFile>
#include <QTemporaryDir>

#include <cmath>

namespace raincast {
namespace {

using Branch = RegistryStore::Branch;

// Files take long, and there are many more values to try.
constexpr std::size_t kSavedOneIn = 16;
const QString kApplication = QStringLiteral("Raincast_1");
const QString kKeys = QStringLiteral("Software/Quorvane/Raincast_1/");

void putLine(RegistryStore& store, const QString& line) {
    const QString key = kKeys + line.section(u' ', 0, 0).mid(1);
    const QString name = line.section(u' ', 1).section(u'=', 0, 0);
    const QString value = line.section(u'=', 1);
    if (line.startsWith(u'd')) {
        store.setDword(Branch::user, key, name, value.toUInt());
    } else if (line.startsWith(u'b')) {
        store.setBinary(Branch::user, key, name, QByteArray::fromHex(value.toLatin1()));
    } else {
        store.setString(Branch::user, key, name, value);
    }
}

QByteArray savedTo(const QString& path) {
    QFile::remove(path);
    RegistryStore store(path + QStringLiteral(".none"), path);
    require(PersistantData::saveAll(store, kApplication).has_value());
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

void use() {
    const RadarServers servers = ServersSetting::current();
    require(!servers.radar.isEmpty() && !servers.basemap.isEmpty());
    require(!ServersSetting::cacheBranch().contains(u'/'));
    for (const QString& site : RecentStations::ids()) {
        require(findRadarSite(site) != nullptr);
    }
    require(std::isfinite(AlongSetting::metres()) && AlongSetting::metres() >= 0);
    const float scale = COverlayGPSPosition::vectorScale();
    require(std::isfinite(scale) && scale >= 0);
    require(!CUnits::global().distanceText(1e6).isEmpty());
    const std::size_t speed = static_cast<std::size_t>(LoopSetting::speed());
    require(speed < kLoopSpeeds.size() && LoopSetting::bar() <= LoopSetting::Bar::never);
    static_cast<void>(PositionSourceSetting::address());
}

void load(RegistryStore& store) {
    PersistantData::loadAll(store, kApplication);
    use();
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir folder;
    static CMarkManager marks;
    static TargetSetting target(marks);
    static const QString none = folder.filePath(QStringLiteral("none"));
    static const QString usual = folder.filePath(QStringLiteral("usual.json"));
    static const QByteArray usualBytes = savedTo(usual);
    RegistryStore before(none, usual);
    load(before);

    RegistryStore given(none, none);
    for (const QString& line : Input(data, size).lines()) {
        putLine(given, line);
    }
    load(given);
    target.apply();
    if (size % kSavedOneIn != 0) {
        return 0;
    }
    const QString path = folder.filePath(QStringLiteral("saved.json"));
    const QByteArray once = savedTo(path);
    RegistryStore saved(none, path);
    load(saved);
    require(savedTo(path) == once);
    return 0;
}
