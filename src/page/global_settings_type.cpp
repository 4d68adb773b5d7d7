// SPDX-License-Identifier: MIT
#include "page/global_settings_type.h"

#include <utility>

namespace raincast {

CAppPaged::GlobalSettingsType::GlobalSettingsType(QString name, QString caption, int rank)
    : RankedRecord(rank), m_name(std::move(name)), m_caption(std::move(caption)) {}

} // namespace raincast
