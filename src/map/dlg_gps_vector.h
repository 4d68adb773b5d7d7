// SPDX-License-Identifier: MIT
#pragma once

#include "map/overlay_gps_position.h"
#include "window/dialog.h"

namespace raincast {

/// "GPS Vector": the minutes of travel that the position's arrow shows, as a whole number.
class COverlayGPSPosition::CDlgSetup : public Dialog {
public:
    static constexpr int kTemplate = 43;
    static constexpr int kMinutes = 1060;

    CDlgSetup() : Dialog(kTemplate) {}

    bool onInitialise() override;
    /// A number below 0 keeps the dialog open, with a beep. A text that starts with no number
    /// counts as 0, and a fraction is dropped.
    void onOk() override;
};

} // namespace raincast
