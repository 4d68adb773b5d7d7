// SPDX-License-Identifier: MIT
#pragma once

#include "persist/persistant_data.h"

#include <QString>

namespace raincast {

/// The program's names, and the settings of the program as a whole.
class CGlobals {
public:
    class Persistant;

    /// The window's title and class; together with the page file's path they name an instance.
    [[nodiscard]] static QString title();
    [[nodiscard]] static QString windowClass();
    /// The program's key in the registry.
    [[nodiscard]] static QString application();
};

/// The settings record "CGlobals". A viewer has one of its own.
class CGlobals::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CGlobals") {}

    /// Sets the page file for this run; the one of the settings stays there.
    void useForThisRun(const QString& pageFile);

    QString configFile; ///< "config_file": the full path of the page file; empty until there is one
    QString declinedBackup; ///< "declined_backup": see PageBackup::decidedAgainst

protected:
    void exchange(SettingsExchange& values) override;
};

} // namespace raincast
