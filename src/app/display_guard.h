// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Has Qt draw without a display where none can be opened, unless the user named a platform. To be
/// called before the application object is made.
void drawOffscreenWithoutDisplay();

/// To live while the application object is made: where no display can be opened, Qt would abort the
/// process with a page of text. With this the process ends with exit status 1 and one sentence that
/// says how to go on.
class DisplayGuard {
public:
    DisplayGuard();
    ~DisplayGuard();
    DisplayGuard(const DisplayGuard&) = delete;
    DisplayGuard& operator=(const DisplayGuard&) = delete;
};

} // namespace raincast
