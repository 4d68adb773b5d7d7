// SPDX-License-Identifier: MIT
#include "map/map_lines_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

namespace raincast {

namespace {

std::uint32_t choice[] = {1, 1}; // by MapLinesSetting::Line

} // namespace

class MapLinesSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CMapLines") {}

private:
    void exchange(SettingsExchange& values) override {
        values.dword("show_position", choice[position]);
        values.dword("show_navigation", choice[navigation]);
    }

    static Persistant s_record;
};

MapLinesSetting::Persistant MapLinesSetting::Persistant::s_record;

bool MapLinesSetting::shown(Line line) {
    return choice[line] != 0;
}

void MapLinesSetting::show(Line line, bool wanted) {
    choice[line] = wanted ? 1 : 0;
    UserChange::announce();
}

} // namespace raincast
