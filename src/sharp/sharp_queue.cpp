// SPDX-License-Identifier: MIT
#include "sharp/sharp_queue.h"

#include "core/clock.h"

#include <utility>

namespace raincast {

using State = SharpRecord::State;

namespace {

constexpr int kMostLooks = 3; // into the cache, at a time

} // namespace

SharpQueue::SharpQueue(
    Downloads& downloads, const RadarServers& servers, SharpServers& known, Changed changed
)
    : m_files(downloads, servers, known), m_changed(std::move(changed)) {}

bool SharpQueue::begin(const SharpRecords& records, bool mayFetch) {
    bool coming = false;
    for (const auto& record : records) {
        const bool looks = record->state == State::unknown;
        const bool fetches = mayFetch && record->state == State::notHere && this->mayFetch(*record);
        const bool hasFailed = record->failedIn == m_round;
        coming = coming || ((looks || fetches || record->state == State::busy) && !hasFailed);
        if (looks && m_looking < kMostLooks) {
            look(record);
        } else if (fetches && m_fetching < m_files.mostAtATime(record->source, record->detail)) {
            fetch(record);
        }
    }
    return coming;
}

bool SharpQueue::mayFetch(const SharpRecord& record) const {
    const bool waits = record.failedIn == m_round && !record.wait.over(Clock::real().now());
    return record.mayFetch && !waits && m_files.mayFetchFrom(record.source.server);
}

void SharpQueue::tryAgain() {
    ++m_round;
    m_files.tryAgain();
}

void SharpQueue::look(const std::shared_ptr<SharpRecord>& record) {
    record->state = State::busy;
    ++m_looking;
    m_files.look(
        record->source, record->detail,
        [this, weak = Weak(record), detail = record->detail](SharpPicture picture) {
            const bool isWhole = picture.detail() == detail;
            --m_looking;
            ended(weak, isWhole ? State::settled : State::notHere, std::move(picture));
        }
    );
}

void SharpQueue::fetch(const std::shared_ptr<SharpRecord>& record) {
    record->state = State::busy;
    ++m_fetching;
    m_files.fetch(
        record->source, record->detail, record->picture.detail(),
        [this, weak = Weak(record)](SharpFiles::Outcome outcome, SharpPicture picture) {
            --m_fetching;
            const bool failed = outcome == SharpFiles::Outcome::failed;
            if (const auto waiting = failed ? weak.lock() : nullptr) {
                waiting->wait.ended(false, Clock::real().now());
                waiting->failedIn = m_round;
            }
            ended(weak, failed ? State::notHere : State::settled, std::move(picture));
        }
    );
}

void SharpQueue::ended(const Weak& weak, State state, SharpPicture picture) {
    const bool came = bool(picture);
    if (const auto record = weak.lock()) {
        record->state = state;
        if (came) {
            record->picture = std::move(picture);
        }
    }
    m_changed(came);
}

} // namespace raincast
