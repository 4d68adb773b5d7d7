// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"
#include "core/listener_source.h"

namespace raincast {

/// A subscriber to everything that is published of one kind: deriving from Listener<T> subscribes
/// for as long as the object lives. Publisher and subscriber never know each other; they meet in
/// the one source of kind T, which exists from the first subscription to the last leaving.
///
/// Publishing is a direct call of every handler in turn: in descending priority, the earliest
/// subscriber first among equals. A handler may end its own listener or any other and may publish
/// again. A listener that joins during a notification is called in it when its turn is still to
/// come, as that of an equal or lower priority is.
///
/// The constructor subscribes before the derived object is complete: constructors must not publish
/// the kind they listen to.
template<class T>
class Listener {
public:
    /// Receives what is published. The record is the publisher's.
    virtual void onPublished(T& record) = 0;
    virtual ~Listener();

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Publishes a record to all listeners of its kind; does nothing without listeners.
    static void Notify(T& record);

    /// The UTC time of the notification that is under way: taken from the clock at the first call,
    /// the same at later calls. Outside of notifications the time has no meaning.
    [[nodiscard]] static FileTime notificationTime();

    /// True while the kind has a source.
    [[nodiscard]] static bool hasSource() { return s_source != nullptr; }

    /// Calls visit(Listener&) for every listener in the order of notifications.
    template<class Visit>
    static void forEach(Visit visit);

protected:
    explicit Listener(std::int32_t priority = 0);

    /// Leaves before the object ends. A second call does nothing.
    void unsubscribe();

private:
    static void dropIdleSource();

    // A bare pointer is set before any static object is constructed and outlives all of them.
    static inline ListenerSource* s_source = nullptr;
    Subscription m_subscription;
};

template<class T>
Listener<T>::Listener(std::int32_t priority) {
    if (s_source == nullptr) {
        s_source = new ListenerSource;
    }
    m_subscription.priority = priority;
    m_subscription.listener = this;
    s_source->link(m_subscription);
}

template<class T>
Listener<T>::~Listener() {
    unsubscribe();
}

template<class T>
void Listener<T>::unsubscribe() {
    ListenerSource::unlink(m_subscription);
    dropIdleSource();
}

template<class T>
void Listener<T>::dropIdleSource() {
    if (s_source != nullptr && s_source->idle()) {
        delete s_source;
        s_source = nullptr;
    }
}

template<class T>
void Listener<T>::Notify(T& record) {
    if (s_source != nullptr) {
        s_source->startNotification();
        forEach([&record](Listener& listener) { listener.onPublished(record); });
    }
}

template<class T>
FileTime Listener<T>::notificationTime() {
    return s_source != nullptr ? s_source->notificationTime() : Clock::real().now();
}

template<class T>
template<class Visit>
void Listener<T>::forEach(Visit visit) {
    if (s_source == nullptr) {
        return;
    }
    {
        ListenerSource::Walk walk(*s_source);
        while (void* listener = walk.next()) {
            visit(*static_cast<Listener*>(listener));
        }
    }
    // The last listener may have left during the walk, which kept the source alive.
    dropIdleSource();
}

} // namespace raincast
