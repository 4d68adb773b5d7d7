// SPDX-License-Identifier: MIT
#pragma once

#include "app/raincast_app.h"
#include "map/mark_manager.h"

namespace raincast {

struct OwnMarks {
    CMarkManager marks;
};

/// An application to try page files on: it is in no window, and has marks of its own.
class CTrialApp : private OwnMarks, public CRaincastApp {
public:
    CTrialApp() : CRaincastApp(OwnMarks::marks) {}
};

} // namespace raincast
