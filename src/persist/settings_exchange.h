// SPDX-License-Identifier: MIT
#pragma once

#include "persist/little_endian.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <span>
#include <utility>

namespace raincast {

class RegistryStore;

/// The values of one settings record on their way between members and the registry. Its record
/// calls one operation for each value, in a fixed order; whether that loads or saves is the
/// exchange's to know, so that the two can never disagree.
///
/// Loading reads the machine branch, then the user branch, so that the user's value wins; a value
/// that is missing or of another type leaves the member as it is. Saving writes to the user branch,
/// or, with the machine-wide flag, to the machine branch, and to the user branch only if that
/// cannot be written.
class SettingsExchange {
public:
    enum class Direction { load, save };

    /// For the record whose values stand under a key; the values named in `notSaved` are loaded
    /// only. The store is borrowed.
    SettingsExchange(
        Direction direction, RegistryStore& store, QString key, QStringList notSaved = {}
    )
        : m_direction(direction), m_store(store), m_key(std::move(key)),
          m_notSaved(std::move(notSaved)) {}

    [[nodiscard]] bool loading() const { return m_direction == Direction::load; }

    /// A number of 32 bits. A stored one that needs more leaves the member as it is.
    void dword(const char* name, std::uint32_t& member, bool machineWide = false);

    /// A block of a fixed size. A shorter stored value changes the block's first bytes only, of a
    /// longer one the first bytes are taken.
    void binary(const char* name, std::span<std::uint8_t> block, bool machineWide = false);

    /// A raw value as a block of its little-endian bytes.
    template<RawValue T>
    void binary(const char* name, T& member, bool machineWide = false) {
        auto block = toLittleEndian(member);
        binary(name, std::span<std::uint8_t>(block), machineWide);
        if (loading()) {
            member = loadLittleEndian<T>(block.data());
        }
    }

    void string(const char* name, QString& member, bool machineWide = false);

private:
    template<typename Read, typename Write>
    void exchange(const char* name, bool machineWide, Read read, Write write);

    Direction m_direction;
    RegistryStore& m_store;
    QString m_key;
    QStringList m_notSaved;
};

} // namespace raincast
