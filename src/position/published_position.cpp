// SPDX-License-Identifier: MIT
#include "position/published_position.h"

#include "core/listener.h"

namespace raincast {

void PublishedPosition::publish() {
    m_published = *this;
    Listener<CDataGPSPosition>::Notify(*this);
}

void PublishedPosition::drawAsLost() {
    m_published.fixType = kFixNone;
}

} // namespace raincast
