// SPDX-License-Identifier: MIT
#pragma once

#include "page/global_settings_type.h"

namespace raincast {

class PositionReceiver;

/// "GPS Source..." in the "Settings" menu. The viewer owns it, since the dialog needs the receiver.
class PositionSourceSettingsType : public CAppPaged::GlobalSettingsType {
public:
    /// Borrows the receiver.
    explicit PositionSourceSettingsType(PositionReceiver& receiver);

    void open(QWidget* window) const override;

private:
    PositionReceiver& m_receiver;
};

} // namespace raincast
