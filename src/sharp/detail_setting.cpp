// SPDX-License-Identifier: MIT
#include "sharp/detail_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

namespace raincast {

namespace {

std::uint32_t chosen = 1;

} // namespace

class DetailSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CDetail") {}

private:
    void exchange(SettingsExchange& values) override { values.dword("automatic", chosen); }

    static Persistant s_record;
};

DetailSetting::Persistant DetailSetting::Persistant::s_record;

bool DetailSetting::automatic() {
    return chosen != 0;
}

void DetailSetting::setAutomatic(bool automatic) {
    chosen = automatic ? 1 : 0;
    UserChange::announce();
}

} // namespace raincast
