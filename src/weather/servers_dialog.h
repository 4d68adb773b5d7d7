// SPDX-License-Identifier: MIT
#pragma once

#include "weather/servers_setting.h"
#include "window/combo_list.h"
#include "window/dialog.h"

namespace raincast {

/// "Servers": where weather comes from, and of another server its hosts for radar images and map
/// layers. Edits the settings when it ends with OK.
class ServersDialog : public Dialog {
public:
    ServersDialog();

    bool onInitialise() override;
    void onDialogCommand(int id, QWidget* control, int notification) override;
    /// A text that is not a server keeps the dialog open, with a message.
    void onOk() override;

private:
    [[nodiscard]] WeatherSource chosen() const;
    void enableHosts();

    ComboList m_sources;
};

} // namespace raincast
