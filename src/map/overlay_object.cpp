// SPDX-License-Identifier: MIT
#include "map/overlay_object.h"

#include "core/listener.h"

#include <algorithm>
#include <iterator>

namespace raincast {

namespace {

// Objects may be static: the list exists before the first and stays when the last is gone.
std::vector<COverlayObject*>& living() {
    static auto* const objects = new std::vector<COverlayObject*>;
    return *objects;
}

} // namespace

COverlayObject::COverlayObject() {
    living().push_back(this);
}

COverlayObject::~COverlayObject() {
    // Of thousands that go, the youngest usually goes first.
    auto& objects = living();
    const auto behind = std::find(objects.rbegin(), objects.rend(), this);
    objects.erase(std::prev(behind.base()));
    m_change = Change::removed;
    Listener<COverlayObject>::Notify(*this);
}

std::optional<MapLabel>
COverlayObject::label(const ViewTransform& /*view*/, const std::vector<PagePoint>& /*outline*/)
    const {
    return std::nullopt;
}

void COverlayObject::announceChanged() {
    m_change = Change::changed;
    Listener<COverlayObject>::Notify(*this);
}

const std::vector<COverlayObject*>& COverlayObject::all() {
    return living();
}

} // namespace raincast
