// SPDX-License-Identifier: MIT
#pragma once

#include "persist/settings_exchange.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <tl/expected.hpp>
#include <type_traits>
#include <utility>
#include <vector>

namespace raincast {

class RegistryStore;

/// Base of a class's settings record (its nested class `Persistant`): settings that belong to the
/// installation rather than to a page. Constructing a record registers it, for as long as it lives,
/// under the name of the class that owns it; most are static objects. All are loaded together
/// before the first window and saved together, after the last and as often as one was changed.
///
/// The values of record "CGlobals" of application "Raincast_1" stand under the key
/// "Software/Quorvane/Raincast_1/CGlobals" of the registry.
class PersistantData {
public:
    PersistantData(const PersistantData&) = delete;
    PersistantData& operator=(const PersistantData&) = delete;

    /// Begins a run: what the run before set for itself only is as it was before that, and every
    /// record is loaded, the one constructed last first. What cannot be read keeps the value that
    /// its owner gave it. Only reads the store.
    static void loadAll(RegistryStore& store, const QString& application);

    /// Puts every record into the store, where it waits for RegistryStore::saveBoth(), and with it
    /// the application's key in both branches.
    static void putAll(RegistryStore& store, const QString& application);

    /// Saves every record: puts it into the store and saves both branches.
    static tl::expected<void, QString> saveAll(RegistryStore& store, const QString& application);

    /// Sets the member of a value of this record for this run only, as an option of the command
    /// line asks for: until the next loadAll() saving leaves the stored value as it is, whatever
    /// becomes of the member. The name is borrowed for the life of the program.
    template<typename T>
    void setForThisRun(const char* value, T& member, std::type_identity_t<T> forThisRun) {
        m_forThisRun.push_back(
            {value,
             [&member, before = std::exchange(member, std::move(forThisRun))] { member = before; }}
        );
    }

protected:
    /// The name is borrowed for the life of the program.
    explicit PersistantData(const char* name);
    virtual ~PersistantData();

    /// Calls one operation of the exchange for each value, in a fixed order.
    virtual void exchange(SettingsExchange& values) = 0;

private:
    /// A value's name, and what gives its member the value that it had before this run.
    struct ForThisRun {
        const char* value;
        std::function<void()> putBack;
    };

    void forgetRun();
    [[nodiscard]] QStringList notSaved() const;
    static void exchangeAll(
        SettingsExchange::Direction direction, RegistryStore& store, const QString& application
    );

    static inline PersistantData* s_head = nullptr;

    const char* const m_name;
    PersistantData* m_next;
    std::vector<ForThisRun> m_forThisRun;
};

} // namespace raincast
