// SPDX-License-Identifier: MIT
#include "app/position_source_settings_type.h"

#include "app/position_source_dialog.h"
#include "core/text.h"

namespace raincast {

PositionSourceSettingsType::PositionSourceSettingsType(PositionReceiver& receiver)
    : GlobalSettingsType(
          QStringLiteral("CPositionSource"), Text::marked("GPS Source"), kRankGpsSource
      ),
      m_receiver(receiver) {}

void PositionSourceSettingsType::open(QWidget* window) const {
    PositionSourceDialog(m_receiver).run(window);
}

} // namespace raincast
