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

class PositionSourceSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CPositionSource") {}

private:
    void exchange(SettingsExchange& values) override { values.string("position_source", chosen); }

    static Persistant s_record;
};

PositionSourceSetting::Persistant PositionSourceSetting::Persistant::s_record;

const QString& PositionSourceSetting::text() {
    return forThisRun ? *forThisRun : chosen;
}

std::optional<PositionSourceAddress> PositionSourceSetting::address(QString* error) {
    if (text().isEmpty()) {
        return std::nullopt;
    }
    return PositionSourceAddress::parse(text(), error);
}

void PositionSourceSetting::choose(const QString& text) {
    chosen = text;
    forThisRun.reset();
    apply();
}

void PositionSourceSetting::useForThisRun(const QString& text) {
    forThisRun = text.isEmpty() ? std::nullopt : std::optional(text);
}

bool PositionSourceSetting::isForThisRun() {
    return forThisRun.has_value();
}

void PositionSourceSetting::setReceiver(PositionReceiver* receiver) {
    reader = receiver;
}

PositionReceiver* PositionSourceSetting::receiver() {
    return reader;
}

void PositionSourceSetting::apply() {
    const auto wanted = address();
    if (reader != nullptr && reader->address() != wanted) {
        reader->use(wanted);
    }
}

} // namespace raincast
