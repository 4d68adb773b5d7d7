// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog.h"

namespace raincast {

/// "Keys": all keys of the main window, one row for each, on one sheet.
class KeysDialog : public Dialog {
public:
    static constexpr int kTemplate = 162;

    KeysDialog() : Dialog(kTemplate) {}

    bool onInitialise() override;
    void onSize(int width, int height) override;
};

} // namespace raincast
