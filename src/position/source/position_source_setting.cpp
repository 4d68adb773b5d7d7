// SPDX-License-Identifier: MIT
#include "position/source/position_source_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"
#include "position/position_receiver.h"

namespace raincast {

namespace {

QString chosen;
std::optional<QString> forThisRun;

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

tl::expected<std::optional<PositionSourceAddress>, QString> PositionSourceSetting::address() {
    if (text().isEmpty()) {
        return std::nullopt;
    }
    return PositionSourceAddress::parse(text());
}

void PositionSourceSetting::choose(const QString& text) {
    chosen = text;
    forThisRun.reset();
    UserChange::announce();
}

void PositionSourceSetting::useForThisRun(const QString& text) {
    forThisRun = text.isEmpty() ? std::nullopt : std::optional(text);
}

bool PositionSourceSetting::isForThisRun() {
    return forThisRun.has_value();
}

void PositionSourceSetting::apply(PositionReceiver& receiver) {
    const auto wanted = address().value_or(std::nullopt);
    if (receiver.address() != wanted) {
        receiver.use(wanted);
    }
}

} // namespace raincast
