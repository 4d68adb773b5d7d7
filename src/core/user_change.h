// SPDX-License-Identifier: MIT
#pragma once

#include "core/listener.h"

namespace raincast {

/// The user changed something that is kept from run to run: pages, items and their views, marks,
/// settings. What the program changes by itself (it follows the position, animates, finds new
/// frames) is no such change.
///
/// Whatever carries out a change for the user announces it, at once and before it waits for
/// anything. Saving listens (app/background_save.h).
struct UserChange {
    static void announce() {
        UserChange change;
        Listener<UserChange>::Notify(change);
    }
};

} // namespace raincast
