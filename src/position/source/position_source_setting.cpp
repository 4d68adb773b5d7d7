// SPDX-License-Identifier: MIT
#include "position/source/position_source_setting.h"

#include "persist/persistant_data.h"
#include "position/position_receiver.h"

namespace raincast {

namespace {

QString chosen;
std::optional<QString> forThisRun;
PositionReceiver* reader = nullptr;

} // namespace

class CPositionSource::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CPositionSource") {}

private:
    void exchange(SettingsExchange& values) override { values.string("position_source", chosen); }

    static Persistant s_record;
};

CPositionSource::Persistant CPositionSource::Persistant::s_record;

const QString& CPositionSource::text() {
    return forThisRun ? *forThisRun : chosen;
}

std::optional<PositionSourceAddress> CPositionSource::address(QString* error) {
    if (text().isEmpty()) {
        return std::nullopt;
    }
    return PositionSourceAddress::parse(text(), error);
}

void CPositionSource::choose(const QString& text) {
    chosen = text;
    forThisRun.reset();
    apply();
}

void CPositionSource::useForThisRun(const QString& text) {
    forThisRun = text.isEmpty() ? std::nullopt : std::optional(text);
}

bool CPositionSource::isForThisRun() {
    return forThisRun.has_value();
}

void CPositionSource::setReceiver(PositionReceiver* receiver) {
    reader = receiver;
}

PositionReceiver* CPositionSource::receiver() {
    return reader;
}

void CPositionSource::apply() {
    const auto wanted = address();
    if (reader != nullptr && reader->address() != wanted) {
        reader->use(wanted);
    }
}

} // namespace raincast
