// SPDX-License-Identifier: MIT
#pragma once

#include "window/combo_list.h"
#include "window/dialog.h"

namespace raincast {

/// "Detail": whether pictures are sharp where the screen has room, and what that costs.
class DetailDialog : public Dialog {
public:
    static constexpr int kTemplate = 200;

    DetailDialog();

protected:
    bool onInitialise() override;
    void onOk() override;

private:
    ComboList m_choices;
};

} // namespace raincast
