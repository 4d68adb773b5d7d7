// SPDX-License-Identifier: MIT
#include "page/page_stylus.h"

#include "core/user_change.h"
#include "page/context_menu.h"
#include "page/item.h"
#include "page/layout_geometry.h"
#include "window/screen_metrics.h"

#include <cstdlib>
#include <utility>

namespace raincast {

namespace {

constexpr int kGrip = 12;
// A finger never rests: what moves less than this, twice that on a high-resolution screen, is held
// still.
constexpr int kTremble = 6;

} // namespace

PageStylus::PageStylus(CPageDisplay& page)
    : m_page(page), m_gripSize(ScreenMetrics::current().highResolution() ? 2 * kGrip : kGrip) {}

void PageStylus::reset() {
    m_drag = Drag::none;
    endHold();
}

void PageStylus::down(PagePoint place, Qt::KeyboardModifiers keys, Press press) {
    m_last = place;
    m_drag = Drag::none;
    startHold(place);
    const auto& items = m_page.items();
    for (auto below = items.rbegin(); below != items.rend(); ++below) {
        CPageDisplay::CItem& item = **below;
        if (!item.rectangle().contains(place)) {
            continue;
        }
        if (&item != m_page.selected()) {
            m_page.invalidate();
            m_page.select(&item);
        }
        const auto& corner = item.rectangle();
        if (m_page.layoutMode()) {
            m_drag = layoutDrag(place);
            return;
        }
        if (press == Press::second &&
            item.doublePress(place.x - corner.left, place.y - corner.top)) {
            endHold();
            return;
        }
        if (item.stylusDown(place.x - corner.left, place.y - corner.top, keys)) {
            m_drag = Drag::captured;
            return;
        }
    }
    m_page.invalidate();
    m_page.select(nullptr);
}

void PageStylus::startHold(PagePoint place) {
    m_pressed = place;
    if (!m_page.layoutMode()) {
        m_holds = 0;
        m_page.startTimer(kHoldTimer, kHoldMilliseconds);
    }
}

void PageStylus::endHold() {
    m_holds.reset();
    m_page.stopTimer(kHoldTimer);
}

// Short steps instead of one: after a transfer, whose end the timer may see before a lifting that
// waited as long does, the stylus must be held on for a menu to open.
void PageStylus::hold() {
    if (!m_holds || ++*m_holds < kHolds) {
        return;
    }
    endHold();
    if (m_page.contextMenu().open(m_last, CPageDisplay::ContextMenu::By::heldPress)) {
        lose();
    }
}

void PageStylus::lose() {
    endHold();
    const bool captured = std::exchange(m_drag, Drag::none) == Drag::captured;
    if (CPageDisplay::CItem* const item = captured ? m_page.selected() : nullptr) {
        item->stylusLost();
    }
}

void PageStylus::openMenu(PagePoint place) {
    if (!m_page.layoutMode() && m_drag == Drag::none) {
        m_page.contextMenu().open(place, CPageDisplay::ContextMenu::By::rightButton);
    }
}

PageStylus::Drag PageStylus::layoutDrag(PagePoint place) const {
    const bool onGrip = gripOf(m_page.selected()->rectangle(), m_gripSize).contains(place);
    return onGrip ? Drag::resizes : Drag::moves;
}

void PageStylus::move(PagePoint place) {
    const int dx = place.x - m_last.x;
    const int dy = place.y - m_last.y;
    m_last = place;
    const int tremble = kTremble * m_gripSize / kGrip;
    if (std::abs(place.x - m_pressed.x) > tremble || std::abs(place.y - m_pressed.y) > tremble) {
        endHold();
    }
    CPageDisplay::CItem* const item = m_page.selected();
    if (item == nullptr) {
        return;
    }
    const PageRectangle present = item->rectangle();
    const QSize page = m_page.deviceSize();
    switch (m_drag) {
    case Drag::none:
        break;
    case Drag::moves:
        item->setRectangle(movedBy(present, dx, dy, page));
        UserChange::announce();
        break;
    case Drag::resizes:
        item->setRectangle(resizedBy(present, dx, dy, page, m_gripSize));
        UserChange::announce();
        break;
    case Drag::captured:
        item->stylusMove(place.x - present.left, place.y - present.top);
        break;
    }
}

void PageStylus::up(PagePoint place) {
    endHold();
    CPageDisplay::CItem* const item = m_page.selected();
    if (m_drag == Drag::captured && item != nullptr) {
        item->stylusUp(place.x - item->rectangle().left, place.y - item->rectangle().top);
    }
    m_drag = Drag::none;
}

} // namespace raincast
