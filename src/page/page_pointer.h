// SPDX-License-Identifier: MIT
#pragma once

#include "page/page_display.h"

namespace raincast {

/// The pointer of a mouse while no button is down: tells the topmost item under it where it moves
/// and rests. In layout mode no item hears of it. Places are device pixels of the page.
class CPageDisplay::Pointer {
public:
    /// The timer of the page's window by which the pointer rests.
    static constexpr int kRestTimer = 2;
    static constexpr int kRestMilliseconds = 400;

    explicit Pointer(CPageDisplay& page) : m_page(page) {}

    void moved(PagePoint place);
    /// It left the page, or a button went down.
    void left();
    /// The timer is due.
    void rested();
    /// An item goes: it hears no more.
    void forget(const CItem& item);

private:
    CPageDisplay& m_page;
    CItem* m_item = nullptr; ///< under the pointer
    PagePoint m_place;
};

} // namespace raincast
