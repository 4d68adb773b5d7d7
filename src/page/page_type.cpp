// SPDX-License-Identifier: MIT
#include "page/page_type.h"

#include <utility>

namespace raincast {

CAppPaged::PageType::PageType(QString name, int rank)
    : RankedRecord(rank), m_name(std::move(name)) {}

} // namespace raincast
