// SPDX-License-Identifier: MIT
#pragma once

#include "app/raincast_app.h"
#include "map/mark_manager.h"

namespace raincast {

struct OwnMarks {
    CMarkManager marks;
};

/// An application to try page files on: without a window, and with marks of its own.
class TrialApp : private OwnMarks, public CRaincastApp {
public:
    TrialApp() : CRaincastApp(OwnMarks::marks) {}
};

} // namespace raincast
