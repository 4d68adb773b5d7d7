// SPDX-License-Identifier: MIT
#include "server/request_counts.h"

#include <algorithm>

namespace raincast {

namespace {

struct Place {
    std::string_view path;
    RequestKind kind;
};

constexpr std::array kPlaces = {
    Place{"/ridge/RadarImg/", RequestKind::frame},
    Place{"/ridge/x2/RadarImg/", RequestKind::frame},
    Place{"/ridge/x4/RadarImg/", RequestKind::frame},
    Place{"/ridge/Warnings/", RequestKind::warnings},
    Place{"/ridge/x2/Warnings/", RequestKind::warnings},
    Place{"/ridge/x4/Warnings/", RequestKind::warnings},
    Place{"/ridge/Overlays/", RequestKind::layer},
    Place{"/ridge/x2/Overlays/", RequestKind::layer},
    Place{"/ridge/x4/Overlays/", RequestKind::layer},
    Place{"/weather_radar/", RequestKind::layer},
};

} // namespace

RequestKind requestKindOf(std::string_view path, bool isThere) {
    if (path.size() > 1 && path.ends_with('/')) {
        return isThere ? RequestKind::listing : RequestKind::other;
    }
    for (const Place& place : kPlaces) {
        if (path.starts_with(place.path)) {
            return place.kind;
        }
    }
    return isThere ? RequestKind::page : RequestKind::other;
}

std::string_view wordOf(RequestKind kind) {
    constexpr std::array<std::string_view, kRequestKinds> kWords = {"listing", "frame", "warnings",
                                                                    "layer",   "page",  "other"};
    return kWords[static_cast<std::size_t>(kind)];
}

void RequestCounts::note(RequestKind kind, int status, std::int64_t bodyBytes) {
    const auto at = static_cast<std::size_t>(kind);
    // One that is not in the table counts as the last.
    const auto* const found = std::find(kStatuses.begin(), kStatuses.end() - 1, status);
    ++m_answers[at][static_cast<std::size_t>(found - kStatuses.begin())];
    m_bytes[at] += static_cast<std::uint64_t>(bodyBytes);
}

std::vector<RequestCounts::Row> RequestCounts::rows() const {
    std::vector<Row> rows;
    for (std::size_t kind = 0; kind < kRequestKinds; ++kind) {
        for (std::size_t status = 0; status < kStatuses.size(); ++status) {
            if (const std::uint64_t answers = m_answers[kind][status]; answers > 0) {
                rows.push_back({static_cast<RequestKind>(kind), kStatuses[status], answers});
            }
        }
    }
    return rows;
}

std::uint64_t RequestCounts::withStatus(int status) const {
    std::uint64_t answers = 0;
    for (const Row& row : rows()) {
        answers += row.status == status ? row.answers : 0;
    }
    return answers;
}

std::uint64_t RequestCounts::bytes(RequestKind kind) const {
    return m_bytes[static_cast<std::size_t>(kind)];
}

} // namespace raincast
