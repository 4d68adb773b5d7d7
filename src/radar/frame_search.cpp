// SPDX-License-Identifier: MIT
#include "radar/frame_search.h"

#include "radar/catalogue/frame_name.h"

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

constexpr int kMostTries = 100;
// The search steps a minute back before each try; beginning this much after the newest frame, the
// first try is that frame's minute, half a minute away from the neighbouring ones.
constexpr FileTime kSearchLead = 90 * kFileTimePerSecond;

FileTime minuteOf(FileTime time) {
    return time / kFileTimePerMinute;
}

} // namespace

FrameListing::FrameListing(
    std::set<QString> names, const QString& siteId, const QString& product, FileTime now
)
    : m_names(std::move(names)) {
    removeFramesAhead(m_names, now);
    m_newest = newestFrameTime(m_names);
    for (const QString& name : m_names) {
        const auto time = frameTime(name);
        if (time && name == frameFileName(siteId, *time, product)) {
            m_minutes.push_back(minuteOf(*time));
        }
    }
    std::sort(m_minutes.begin(), m_minutes.end());
}

bool FrameListing::has(FileTime time) const {
    return std::binary_search(m_minutes.begin(), m_minutes.end(), minuteOf(time));
}

FrameSearch::FrameSearch(FramesWanted wanted, std::shared_ptr<const FrameListing> listing)
    : m_wanted(std::move(wanted)), m_listing(std::move(listing)),
      m_time(m_listing->newest().value_or(0) + kSearchLead) {
    findNext();
}

void FrameSearch::came() {
    ++m_found;
    m_tries = 0;
    m_next.reset();
    if (m_found < m_wanted.frames) {
        m_time -= (m_wanted.interval - 1) * kFileTimePerMinute;
        findNext();
    }
}

void FrameSearch::findNext() {
    m_next.reset();
    while (m_tries < kMostTries && !m_next) {
        ++m_tries;
        m_time -= kFileTimePerMinute;
        if (m_listing->has(m_time)) {
            m_next = frameFileName(m_wanted.siteId, m_time, m_wanted.product);
        }
    }
}

} // namespace raincast
