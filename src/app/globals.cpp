// SPDX-License-Identifier: MIT
#include "app/globals.h"

namespace raincast {

QString CGlobals::title() {
    return QStringLiteral("Raincast");
}

QString CGlobals::windowClass() {
    return QStringLiteral("TARNWICKE");
}

QString CGlobals::application() {
    return QStringLiteral("Raincast_1");
}

void CGlobals::Persistant::useForThisRun(const QString& pageFile) {
    setForThisRun("config_file", configFile, pageFile);
}

void CGlobals::Persistant::exchange(SettingsExchange& values) {
    values.string("config_file", configFile);
    values.string("declined_backup", declinedBackup);
}

} // namespace raincast
