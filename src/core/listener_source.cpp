// SPDX-License-Identifier: MIT
#include "core/listener_source.h"

#include "core/clock.h"

namespace raincast {

ListenerSource::Walk::Walk(ListenerSource& source)
    : m_source(source), m_current(&source.m_sentinel), m_outer(source.m_innermost) {
    source.m_innermost = this;
}

ListenerSource::Walk::~Walk() {
    m_source.m_innermost = m_outer;
}

void* ListenerSource::Walk::next() {
    // The list is in ascending priority, the latest first among equals: it is walked from the back.
    m_current = m_current->previous;
    return m_current->listener;
}

ListenerSource::ListenerSource() = default;

void ListenerSource::link(Subscription& subscription) {
    // The sentinel holds the greatest priority, so the search always ends.
    Subscription* after = m_sentinel.next;
    while (after->priority < subscription.priority) {
        after = after->next;
    }
    subscription.previous = after->previous;
    subscription.next = after;
    subscription.source = this;
    after->previous->next = &subscription;
    after->previous = &subscription;
}

void ListenerSource::unlink(Subscription& subscription) {
    if (subscription.source == nullptr) {
        return;
    }
    // A walk that stands on the leaving subscriber steps back to the one it visited before.
    for (Walk* walk = subscription.source->m_innermost; walk != nullptr; walk = walk->m_outer) {
        if (walk->m_current == &subscription) {
            walk->m_current = subscription.next;
        }
    }
    subscription.previous->next = subscription.next;
    subscription.next->previous = subscription.previous;
    subscription.previous = nullptr;
    subscription.next = nullptr;
    subscription.source = nullptr;
}

bool ListenerSource::idle() const {
    return m_sentinel.next == &m_sentinel && m_innermost == nullptr;
}

FileTime ListenerSource::notificationTime() {
    if (m_notificationTime == 0) {
        m_notificationTime = Clock::real().now();
    }
    return m_notificationTime;
}

} // namespace raincast
