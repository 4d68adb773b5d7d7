// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string_view>
#include <vector>

namespace raincast {

/// What requests to the tree ask for.
enum class RequestKind { listing, frame, warnings, layer, page, other };
inline constexpr std::size_t kRequestKinds = 6;

/// By a path; what is none of the tree's is a page if it is there, something else if not.
[[nodiscard]] RequestKind requestKindOf(std::string_view path, bool isThere);
/// "listing", "frame", "warnings", "layer", "page", "other"
[[nodiscard]] std::string_view wordOf(RequestKind kind);

/// The answers so far. May be used from several threads at once.
class RequestCounts {
public:
    struct Row {
        RequestKind kind;
        int status;
        std::uint64_t answers;
    };

    void note(RequestKind kind, int status, std::int64_t bodyBytes);

    /// Of each kind and status that there was.
    [[nodiscard]] std::vector<Row> rows() const;
    [[nodiscard]] std::uint64_t withStatus(int status) const;
    /// Of bodies that were sent.
    [[nodiscard]] std::uint64_t bytes(RequestKind kind) const;

private:
    static constexpr std::array kStatuses = {200, 304, 404, 405, 503, 500};

    using OfStatuses = std::array<std::atomic<std::uint64_t>, kStatuses.size()>;
    std::array<OfStatuses, kRequestKinds> m_answers{};
    std::array<std::atomic<std::uint64_t>, kRequestKinds> m_bytes{};
};

} // namespace raincast
