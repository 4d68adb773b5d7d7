// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <cstdint>
#include <limits>

namespace raincast {

class ListenerSource;

/// One subscriber's place in the list of a source. Lives inside the subscriber.
struct Subscription {
    Subscription* previous = nullptr;
    Subscription* next = nullptr;
    std::int32_t priority = 0;
    void* listener = nullptr;         ///< the subscriber, as its own kind of Listener<T>
    ListenerSource* source = nullptr; ///< null while not linked
};

/// The subscribers of one kind of record, ordered by priority: what Listener<T> is made of, without
/// its type. Borrows the subscriptions.
///
/// Subscribers may join and leave at any time, also inside a notification, also the one that is
/// being notified: walks that are under way step over a subscriber that leaves.
class ListenerSource {
public:
    /// Visits the subscribers in descending priority, the earliest first among equals. Walks of one
    /// source may be nested, as a notification inside a notification does.
    class Walk {
    public:
        explicit Walk(ListenerSource& source);
        ~Walk();
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;

        /// The next subscriber's `listener`; null after the last.
        [[nodiscard]] void* next();

    private:
        friend class ListenerSource;
        ListenerSource& m_source;
        Subscription* m_current;
        Walk* m_outer;
    };

    ListenerSource();
    ListenerSource(const ListenerSource&) = delete;
    ListenerSource& operator=(const ListenerSource&) = delete;

    void link(Subscription& subscription);

    /// Does nothing when the subscription is not linked.
    static void unlink(Subscription& subscription);

    /// True when nobody subscribes and no walk is under way: the source can go.
    [[nodiscard]] bool idle() const;

    /// Forgets the notification time. Called at the start of every notification.
    void startNotification() { m_notificationTime = 0; }

    /// The time of the present notification: the clock's at the first call, the same ever after.
    [[nodiscard]] FileTime notificationTime();

private:
    Subscription m_sentinel{&m_sentinel, &m_sentinel, std::numeric_limits<std::int32_t>::max()};
    Walk* m_innermost = nullptr;
    FileTime m_notificationTime = 0;
};

} // namespace raincast
