// SPDX-License-Identifier: MIT
#include "tree/picture_makers.h"

#include <malloc.h>

#include <algorithm>

namespace raincast {

namespace {

// Painting leaves holes in the allocator's memory, which would grow for hours. To give them back
// takes a small part of the time that a picture takes.
constexpr int kPicturesBetweenTrims = 4;

} // namespace

PictureMakers::PictureMakers(int mostAtOnce) {
    m_threads.setMaxThreadCount(std::min(m_threads.maxThreadCount(), mostAtOnce));
}

void PictureMakers::make(const QByteArray& name, Make make, Waiter waiter) {
    {
        const std::lock_guard lock(m_mutex);
        std::vector<Waiter>& waiting = m_waiting[name];
        waiting.push_back(std::move(waiter));
        if (waiting.size() > 1) {
            return;
        }
    }
    m_threads.start([this, name, make = std::move(make)] { work(name, make); });
}

void PictureMakers::work(const QByteArray& name, const Make& make) {
    if (!isWanted(name)) {
        return;
    }
    const Picture picture = make();
    std::vector<Waiter> waiting;
    {
        const std::lock_guard lock(m_mutex);
        waiting = std::move(m_waiting.extract(name).mapped());
    }
    for (const Waiter& waiter : waiting) {
        waiter.tell(picture);
    }
    if (++m_made % kPicturesBetweenTrims == 0) {
        malloc_trim(0);
    }
}

// Forgets the name if not.
bool PictureMakers::isWanted(const QByteArray& name) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_waiting.find(name);
    const bool wanted =
        std::any_of(found->second.begin(), found->second.end(), [](const Waiter& waiter) {
            return waiter.isWaiting();
        });
    if (!wanted) {
        m_waiting.erase(found);
    }
    return wanted;
}

} // namespace raincast
