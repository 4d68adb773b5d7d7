// SPDX-License-Identifier: MIT
#pragma once

#include "persist/settings_exchange.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

namespace raincast {

class RegistryStore;

/// Base of a class's settings record (its nested class `Persistant`): settings that belong to the
/// installation rather than to a page. Records are static objects; constructing one registers it
/// for the life of the program under the name of the class that owns it. All are loaded together
/// before the first window and saved together after the last.
///
/// The values of record "CGlobals" of application "Raincast_1" stand under the key
/// "Software/Quorvane/Raincast_1/CGlobals" of the registry.
class PersistantData {
public:
    PersistantData(const PersistantData&) = delete;
    PersistantData& operator=(const PersistantData&) = delete;

    /// Loads every record, the one constructed last first. What cannot be read keeps the value that
    /// its owner gave it. Only reads the store.
    static void loadAll(RegistryStore& store, const QString& application);

    /// Saves every record, creating the application's key in both branches. It fails when the
    /// user's branch cannot be written (RegistryStore::save); that the machine's cannot is no
    /// failure, what was meant for it is then the user's.
    static tl::expected<void, QString> saveAll(RegistryStore& store, const QString& application);

    /// Says that a value of this record was set for this run only, by an option of the command
    /// line: from now on saving leaves the stored value as it is.
    void setForThisRun(const char* value);

protected:
    /// The name is borrowed for the life of the program.
    explicit PersistantData(const char* name);
    virtual ~PersistantData() = default;

    /// Calls one operation of the exchange for each value, in a fixed order.
    virtual void exchange(SettingsExchange& values) = 0;

private:
    static void exchangeAll(
        SettingsExchange::Direction direction, RegistryStore& store, const QString& application
    );

    static inline PersistantData* s_head = nullptr;

    const char* const m_name;
    PersistantData* const m_next;
    QStringList m_notSaved;
};

} // namespace raincast
