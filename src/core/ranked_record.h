// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <vector>

namespace raincast {

/// Base of static records that form a list which users see: constructing one registers it, and
/// destroying one (a test's) takes it out again. The order is that of the ranks, never that of
/// static construction.
template<typename Record>
class RankedRecord {
public:
    RankedRecord(const RankedRecord&) = delete;
    RankedRecord& operator=(const RankedRecord&) = delete;

    [[nodiscard]] int rank() const { return m_rank; }

    /// Every record from the lowest rank to the highest, the one registered last first among
    /// equals.
    [[nodiscard]] static std::vector<const Record*> all() {
        std::vector<const RankedRecord*> found;
        for (const RankedRecord* record = s_head; record != nullptr; record = record->m_next) {
            found.push_back(record);
        }
        std::stable_sort(found.begin(), found.end(), [](const auto* one, const auto* other) {
            return one->m_rank < other->m_rank;
        });
        std::vector<const Record*> records;
        for (const RankedRecord* record : found) {
            records.push_back(static_cast<const Record*>(record));
        }
        return records;
    }

protected:
    explicit RankedRecord(int rank) : m_rank(rank), m_next(s_head) { s_head = this; }

    virtual ~RankedRecord() {
        for (RankedRecord** link = &s_head; *link != nullptr; link = &(*link)->m_next) {
            if (*link == this) {
                *link = m_next;
                return;
            }
        }
    }

private:
    const int m_rank;
    RankedRecord* m_next;
    static inline RankedRecord* s_head = nullptr;
};

} // namespace raincast
