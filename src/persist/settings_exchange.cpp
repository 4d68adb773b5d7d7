// SPDX-License-Identifier: MIT
#include "persist/settings_exchange.h"

#include "persist/registry_store.h"

#include <QByteArray>

#include <algorithm>

namespace raincast {

using Branch = RegistryStore::Branch;

// Calls read(branch, name) for both branches, or write(branch, name) for the one that the flag
// names. A value that the machine branch refuses goes to the user's when the store is saved.
template<typename Read, typename Write>
void SettingsExchange::exchange(const char* name, bool machineWide, Read read, Write write) {
    const QString valueName = QString::fromLatin1(name);
    if (loading()) {
        read(Branch::machine, valueName);
        read(Branch::user, valueName);
    } else if (!m_notSaved.contains(valueName)) {
        write(machineWide ? Branch::machine : Branch::user, valueName);
    }
}

void SettingsExchange::dword(const char* name, std::uint32_t& member, bool machineWide) {
    exchange(
        name, machineWide,
        [&](Branch branch, const QString& valueName) {
            member = m_store.dword(branch, m_key, valueName).value_or(member);
        },
        [&](Branch branch, const QString& valueName) {
            m_store.setDword(branch, m_key, valueName, member);
        }
    );
}

void SettingsExchange::binary(const char* name, std::span<std::uint8_t> block, bool machineWide) {
    exchange(
        name, machineWide,
        [&](Branch branch, const QString& valueName) {
            const QByteArray stored =
                m_store.binary(branch, m_key, valueName).value_or(QByteArray());
            const auto taken = std::min<std::size_t>(stored.size(), block.size());
            std::copy_n(stored.begin(), taken, block.begin());
        },
        [&](Branch branch, const QString& valueName) {
            const QByteArray bytes(
                reinterpret_cast<const char*>(block.data()), static_cast<qsizetype>(block.size())
            );
            m_store.setBinary(branch, m_key, valueName, bytes);
        }
    );
}

void SettingsExchange::string(const char* name, QString& member, bool machineWide) {
    exchange(
        name, machineWide,
        [&](Branch branch, const QString& valueName) {
            member = m_store.string(branch, m_key, valueName).value_or(member);
        },
        [&](Branch branch, const QString& valueName) {
            m_store.setString(branch, m_key, valueName, member);
        }
    );
}

} // namespace raincast
