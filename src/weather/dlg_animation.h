// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_state.h"
#include "window/dialog.h"

namespace raincast {

/// "Animation": whether frames are animated, how many and how far apart, and whether the radar
/// updates itself. Edits the state, which is borrowed, when it ends with OK.
class CDlgAnimation : public Dialog {
public:
    explicit CDlgAnimation(RadarState& state);

    bool onInitialise() override;
    void onDialogCommand(int id, QWidget* control, int notification) override;
    /// Numbers out of range keep the dialog open, with a message; they count only while animation
    /// is enabled.
    void onOk() override;

private:
    void enableNumbers();
    [[nodiscard]] bool takeNumbers();

    RadarState& m_state;
};

} // namespace raincast
