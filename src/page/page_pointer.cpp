// SPDX-License-Identifier: MIT
#include "page/page_pointer.h"

#include "page/item.h"

#include <utility>

namespace raincast {

void CPageDisplay::Pointer::moved(PagePoint place) {
    CItem* const item = m_page.layoutMode() ? nullptr : m_page.itemAt(place);
    if (item != m_item) {
        left();
        m_item = item;
    }
    m_place = place;
    if (m_item != nullptr) {
        const PageRectangle& corner = m_item->rectangle();
        m_item->pointerMoved(place.x - corner.left, place.y - corner.top);
        m_page.startTimer(kRestTimer, kRestMilliseconds);
    }
}

void CPageDisplay::Pointer::left() {
    m_page.stopTimer(kRestTimer);
    if (CItem* const item = std::exchange(m_item, nullptr)) {
        item->pointerLeft();
    }
}

void CPageDisplay::Pointer::rested() {
    m_page.stopTimer(kRestTimer);
    if (m_item != nullptr && !m_page.layoutMode()) {
        const PageRectangle& corner = m_item->rectangle();
        m_item->pointerRested(m_place.x - corner.left, m_place.y - corner.top);
    }
}

void CPageDisplay::Pointer::forget(const CItem& item) {
    if (&item == m_item) {
        m_item = nullptr;
    }
}

} // namespace raincast
