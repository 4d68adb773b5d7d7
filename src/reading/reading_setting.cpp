// SPDX-License-Identifier: MIT
#include "reading/reading_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

namespace raincast {

namespace {

ReadingSetting::Kept choice;

} // namespace

class ReadingSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CReading") {}

private:
    void exchange(SettingsExchange& values) override {
        values.dword("scale", choice.scale);
        values.dword("rings", choice.rings);
        if (values.loading()) {
            choice.scale = choice.scale <= kScaleHidden ? choice.scale : kScaleWhereRoom;
            choice.rings = choice.rings <= kRingsRoundPosition ? choice.rings : kNoRings;
        }
    }

    static Persistant s_record;
};

ReadingSetting::Persistant ReadingSetting::Persistant::s_record;

bool ReadingSetting::scaleShown(int width) {
    return choice.scale == kScaleWhereRoom ? width >= kWidthForScale : choice.scale == kScaleShown;
}

void ReadingSetting::showScale(bool wanted) {
    choice.scale = wanted ? kScaleShown : kScaleHidden;
    UserChange::announce();
}

ReadingSetting::Rings ReadingSetting::rings() {
    return static_cast<Rings>(choice.rings);
}

void ReadingSetting::showRings(Rings wanted) {
    choice.rings = wanted;
    UserChange::announce();
}

ReadingSetting::Kept ReadingSetting::keep() {
    return choice;
}

void ReadingSetting::restore(const Kept& kept) {
    choice = kept;
}

} // namespace raincast
