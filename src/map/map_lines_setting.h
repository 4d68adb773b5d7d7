// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// Which lines the user wants at the top of maps. Their choice is kept in the settings record
/// "CMapLines" as "show_position" and "show_navigation"; both are on at first.
class MapLinesSetting {
public:
    enum Line : std::uint8_t { position, navigation };

    [[nodiscard]] static bool shown(Line line);
    static void show(Line line, bool wanted);

private:
    class Persistant;
};

} // namespace raincast
