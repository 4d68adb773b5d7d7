// SPDX-License-Identifier: MIT
#pragma once

#include "units/units.h"
#include "window/combo_list.h"
#include "window/dialog.h"

namespace raincast {

/// "Units": the distance unit, which the speed unit follows, and the position format. Edits the
/// global units when it ends with OK.
class CUnits::CDlgUnits : public Dialog {
public:
    static constexpr int kTemplate = 140;
    static constexpr int kUnits = 1140;
    static constexpr int kPositionFormats = 1141;

    CDlgUnits() : Dialog(kTemplate) {}

    bool onInitialise() override;
    void onOk() override;

private:
    ComboList m_units;
    ComboList m_formats;
};

} // namespace raincast
