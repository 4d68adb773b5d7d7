// SPDX-License-Identifier: MIT
#pragma once

#include "radar/warning_texts.h"
#include "window/dialog.h"

#include <vector>

class QListWidget;

namespace raincast {

/// "Warnings": a list of warnings, each with its colour, event, end and headline; "Read" shows the
/// whole text of the selected one.
class WarningsDialog : public Dialog {
public:
    static constexpr int kTemplate = 170;

    /// At least one, in the order of the list.
    explicit WarningsDialog(std::vector<WarningText> warnings);

    bool onInitialise() override;
    void onSize(int width, int height) override;
    void onDialogCommand(int id, QWidget* control, int notification) override;
    /// "Read": the list stays open.
    void onOk() override;

private:
    [[nodiscard]] QListWidget& list() const;

    std::vector<WarningText> m_warnings;
};

} // namespace raincast
