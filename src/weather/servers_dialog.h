// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog.h"

namespace raincast {

/// "Servers": where radar images and map layers come from. Edits the settings when it ends with OK.
class ServersDialog : public Dialog {
public:
    ServersDialog();

    bool onInitialise() override;
    /// A text that is not a server keeps the dialog open, with a message.
    void onOk() override;
};

} // namespace raincast
