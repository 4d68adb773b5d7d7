// SPDX-License-Identifier: MIT
#include "provider/past_bucket.h"

#include "core/clock.h"

#include <algorithm>

namespace raincast {

namespace {

constexpr FileTime kDay = 24 * 60 * kFileTimePerMinute;
// Objects may come so late that a list of their day did not have them yet.
constexpr FileTime kLatest = 20 * kFileTimePerMinute;

/// Up to when a list that is made now is complete: it has the whole day of the weather's now.
FileTime endOfList() {
    const FileTime now = Clock::current().now();
    return std::min(now - now % kDay + kDay, Clock::real().now());
}

} // namespace

void PastBucket::list(const ListQuestion& question, Found found, Listed listed) {
    const Known& known = m_known[question.name];
    if (Clock::current().now() < known.upTo) {
        tell(question, found);
        return listed(LiveOutcome::good);
    }
    // All of it, whatever the asker knows: this is the list of what is to come as well.
    ListQuestion whole{question.name, question.since};
    const bool hasWholeDays = known.upTo % kDay == 0;
    whole.since = std::max(question.since, known.upTo - (hasWholeDays ? 0 : kLatest));
    m_bucket->list(
        whole,
        [this, name = question.name](std::vector<LiveObject> objects) {
            for (LiveObject& object : objects) {
                object.modified = object.time;
                m_known[name].volumes.insert_or_assign(object.time, std::move(object));
            }
        },
        [this, question, found = std::move(found), listed = std::move(listed),
         end = endOfList()](LiveOutcome outcome) {
            if (outcome == LiveOutcome::good) {
                m_known[question.name].upTo = end;
            }
            tell(question, found);
            listed(outcome);
        }
    );
}

// What has come to be by now.
void PastBucket::tell(const ListQuestion& question, const Found& found) {
    auto& volumes = m_known[question.name].volumes;
    volumes.erase(volumes.begin(), volumes.lower_bound(question.since));
    std::vector<LiveObject> objects;
    const auto end = volumes.upper_bound(Clock::current().now());
    for (auto volume = volumes.begin(); volume != end; ++volume) {
        objects.push_back(volume->second);
    }
    found(std::move(objects));
}

void PastBucket::get(const LiveObject& object, bool isKept, Got got) {
    if (isKept) {
        return got(LiveOutcome::good, std::nullopt);
    }
    m_bucket->get(object, false, std::move(got));
}

} // namespace raincast
