// SPDX-License-Identifier: MIT
#include "radar/frame_run.h"

#include <utility>

namespace raincast {

FrameRun::FrameRun(FrameSearch search, Begin begin, Take take)
    : m_search(std::move(search)), m_begin(std::move(begin)), m_take(std::move(take)),
      m_ahead(m_search) {}

void FrameRun::ended(const QString& name, Outcome outcome) {
    m_ended[name] = std::move(outcome);
    follow();
}

// Gives the search what it wants as far as that is known, and begins what it will want then.
void FrameRun::follow() {
    while (m_search.next()) {
        const auto ended = m_ended.find(*m_search.next());
        if (ended == m_ended.end()) {
            fetchAhead();
            return;
        }
        settle(ended->second);
    }
}

void FrameRun::settle(const Outcome& frame) {
    const bool counts = frame.picture && !(m_brokenOff && frame.fetched);
    m_brokenOff = m_brokenOff || frame.last;
    if (!counts) {
        m_search.failed();
        m_ahead = m_search; // a new plan
        return;
    }
    m_take(m_search, *frame.picture);
    m_search.came();
}

void FrameRun::fetchAhead() {
    while (m_ahead.next() && m_begun.size() - m_ended.size() < kMostUnderWay) {
        const QString name = *m_ahead.next();
        m_ahead.came();
        if (m_begun.insert(name).second) {
            m_begin(name);
        }
    }
}

} // namespace raincast
