// SPDX-License-Identifier: MIT
#pragma once

#include "radar/warning_texts.h"
#include "window/dialog.h"

namespace raincast {

/// "Warning": all of a warning's text, to be read and copied.
class WarningTextDialog : public Dialog {
public:
    static constexpr int kTemplate = 171;

    explicit WarningTextDialog(WarningText warning);

    bool onInitialise() override;
    void onSize(int width, int height) override;

private:
    WarningText m_warning;
};

} // namespace raincast
