// SPDX-License-Identifier: MIT
#include "units/units_change_listener.h"

#include <algorithm>

namespace raincast {

void CUnits::ChangeListener::tellAll() {
    // A listener may end others: look each one up again before calling it.
    const std::vector<ChangeListener*> all = s_all;
    for (ChangeListener* const listener : all) {
        if (std::find(s_all.begin(), s_all.end(), listener) != s_all.end()) {
            listener->onUnitsChanged();
        }
    }
}

} // namespace raincast
