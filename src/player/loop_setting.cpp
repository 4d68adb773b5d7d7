// SPDX-License-Identifier: MIT
#include "player/loop_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

namespace raincast {

namespace {

struct Choice {
    std::uint32_t speed = static_cast<std::uint32_t>(LoopSpeed::normal);
    std::uint32_t utc = 0;
    std::uint32_t bar = static_cast<std::uint32_t>(LoopSetting::Bar::whereRoomIs);
};
Choice choice;

void choose(std::uint32_t& member, std::uint32_t value) {
    member = value;
    UserChange::announce();
}

} // namespace

class LoopSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CLoop") {}

private:
    void exchange(SettingsExchange& values) override {
        values.dword("speed", choice.speed);
        values.dword("utc", choice.utc);
        values.dword("bar", choice.bar);
    }

    static Persistant s_record;
};

LoopSetting::Persistant LoopSetting::Persistant::s_record;

LoopSpeed LoopSetting::speed() {
    return choice.speed < kLoopSpeeds.size() ? static_cast<LoopSpeed>(choice.speed)
                                             : LoopSpeed::normal;
}

void LoopSetting::setSpeed(LoopSpeed speed) {
    choose(choice.speed, static_cast<std::uint32_t>(speed));
}

bool LoopSetting::utc() {
    return choice.utc != 0;
}

void LoopSetting::setUtc(bool utc) {
    choose(choice.utc, utc ? 1 : 0);
}

LoopSetting::Bar LoopSetting::bar() {
    return choice.bar <= static_cast<std::uint32_t>(Bar::never) ? static_cast<Bar>(choice.bar)
                                                                : Bar::whereRoomIs;
}

void LoopSetting::setBar(Bar bar) {
    choose(choice.bar, static_cast<std::uint32_t>(bar));
}

} // namespace raincast
