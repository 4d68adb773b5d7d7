// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Has Qt draw without a display where none can be opened, unless the user named a platform. Call
/// it before the application object is made.
void drawOffscreenWithoutDisplay();

/// Keep one alive while the application object is made. Where no display can be opened, Qt would
/// abort the process with a page of text; with this guard the process ends with exit status 1 and
/// one sentence that says how to go on.
class DisplayGuard {
public:
    DisplayGuard();
    ~DisplayGuard();
    DisplayGuard(const DisplayGuard&) = delete;
    DisplayGuard& operator=(const DisplayGuard&) = delete;
};

} // namespace raincast
