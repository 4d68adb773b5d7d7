// SPDX-License-Identifier: MIT
#include "sharp/sharp_queue.h"

#include <utility>

namespace raincast {

using State = SharpRecord::State;

SharpQueue::SharpQueue(Downloads& downloads, const RadarServers& servers, Changed changed)
    : m_files(downloads, servers), m_changed(std::move(changed)) {}

bool SharpQueue::begin(const SharpRecords& records, bool mayFetch) {
    const bool fetches = mayFetch && m_files.mayFetch();
    bool coming = false;
    for (const auto& record : records) {
        const bool isNext =
            record->state == State::unknown || (record->state == State::notHere && fetches);
        coming = coming || isNext || record->state == State::busy;
        if (isNext && m_running < m_files.mostAtATime()) {
            record->state == State::unknown ? look(record) : fetch(record);
        }
    }
    return coming;
}

void SharpQueue::look(const std::shared_ptr<SharpRecord>& record) {
    record->state = State::busy;
    ++m_running;
    m_files.look(
        record->source, record->detail,
        [this, weak = Weak(record), detail = record->detail](SharpPicture picture) {
            const bool isWhole = picture.detail() == detail;
            ended(weak, isWhole ? State::settled : State::notHere, std::move(picture));
        }
    );
}

void SharpQueue::fetch(const std::shared_ptr<SharpRecord>& record) {
    record->state = State::busy;
    ++m_running;
    m_files.fetch(
        record->source, record->detail, record->picture.detail(),
        [this, weak = Weak(record)](SharpFiles::Outcome outcome, SharpPicture picture) {
            const bool failed = outcome == SharpFiles::Outcome::failed;
            ended(weak, failed ? State::notHere : State::settled, std::move(picture));
        }
    );
}

void SharpQueue::ended(const Weak& weak, State state, SharpPicture picture) {
    --m_running;
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
