// SPDX-License-Identifier: MIT
#include "units/units_change_listener.h"

#include <algorithm>

namespace raincast {

void CUnits::ChangeListener::tellAll() {
    // Whoever is told may end others: they are looked up again before they are called.
    const std::vector<ChangeListener*> all = s_all;
    for (ChangeListener* const listener : all) {
        if (std::find(s_all.begin(), s_all.end(), listener) != s_all.end()) {
            listener->onUnitsChanged();
        }
    }
}

} // namespace raincast
