// SPDX-License-Identifier: MIT
#include "gps/position_source_setting.h"

#include "persist/persistant_data.h"

namespace raincast {

namespace {

QString chosen;
std::optional<QString> forThisRun;

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
}

void CPositionSource::useForThisRun(const QString& text) {
    forThisRun = text;
}

} // namespace raincast
