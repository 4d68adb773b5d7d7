// SPDX-License-Identifier: MIT
#include "along/along_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

namespace raincast {

namespace {

constexpr double kMostMetres = 20'000'000; // nothing on the earth is farther away

double chosen = 250'000;

} // namespace

class AlongSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CAlong") {}

private:
    void exchange(SettingsExchange& values) override {
        double metres = chosen;
        values.binary("metres", metres);
        if (0 < metres && metres <= kMostMetres) {
            chosen = metres;
        }
    }

    static Persistant s_record;
};

AlongSetting::Persistant AlongSetting::Persistant::s_record;

double AlongSetting::metres() {
    return chosen;
}

void AlongSetting::setMetres(double metres) {
    if (metres != chosen) {
        chosen = metres;
        UserChange::announce();
    }
}

} // namespace raincast
