// SPDX-License-Identifier: MIT
#pragma once

#include "replay/past_storms.h"
#include "window/combo_list.h"
#include "window/dialog.h"

namespace raincast {

/// "Past Storm": when a replay begins and how fast it runs. Some storms are ready to be picked.
class PastStormDialog : public Dialog {
public:
    static constexpr int kTemplate = 190;

    /// Edits the choice when it ends with OK; the choice is borrowed.
    explicit PastStormDialog(PastStormChoice& choice);

    bool onInitialise() override;
    void onDialogCommand(int id, QWidget* control, int notification) override;
    /// A time or a speed that cannot be keeps the dialog open, with a message.
    void onOk() override;

private:
    void showBegin(const Replay& replay);

    PastStormChoice& m_choice;
    ComboList m_storms;
};

} // namespace raincast
