// SPDX-License-Identifier: MIT
#include "persist/persistant_data.h"

#include "persist/registry_store.h"

namespace raincast {

namespace {

using Branch = RegistryStore::Branch;

QString rootKey(const QString& application) {
    return QStringLiteral("Software/Quorvane/") + application;
}

} // namespace

PersistantData::PersistantData(const char* name) : m_name(name), m_next(s_head) {
    s_head = this;
}

PersistantData::~PersistantData() {
    PersistantData** link = &s_head;
    while (*link != this) {
        link = &(*link)->m_next;
    }
    *link = m_next;
}

void PersistantData::loadAll(RegistryStore& store, const QString& application) {
    for (PersistantData* record = s_head; record != nullptr; record = record->m_next) {
        record->forgetRun();
    }
    exchangeAll(SettingsExchange::Direction::load, store, application);
}

void PersistantData::putAll(RegistryStore& store, const QString& application) {
    store.addKey(Branch::machine, rootKey(application));
    store.addKey(Branch::user, rootKey(application));
    exchangeAll(SettingsExchange::Direction::save, store, application);
}

tl::expected<void, QString>
PersistantData::saveAll(RegistryStore& store, const QString& application) {
    putAll(store, application);
    return store.saveBoth();
}

// The last first, as one member may have been set twice.
void PersistantData::forgetRun() {
    for (; !m_forThisRun.empty(); m_forThisRun.pop_back()) {
        m_forThisRun.back().putBack();
    }
}

QStringList PersistantData::notSaved() const {
    QStringList names;
    for (const ForThisRun& each : m_forThisRun) {
        names.append(QString::fromLatin1(each.value));
    }
    return names;
}

void PersistantData::exchangeAll(
    SettingsExchange::Direction direction, RegistryStore& store, const QString& application
) {
    for (PersistantData* record = s_head; record != nullptr; record = record->m_next) {
        const QString key = rootKey(application) + u'/' + QString::fromLatin1(record->m_name);
        SettingsExchange values(direction, store, key, record->notSaved());
        record->exchange(values);
    }
}

} // namespace raincast
