// SPDX-License-Identifier: MIT
#pragma once

#include "server/request_counts.h"
#include "server/status_page.h"
#include "tree/image_tree.h"
#include "tree/publisher.h"

namespace raincast {

/// What a running server has counted beside its status.
struct ServerMeasures {
    const RequestCounts* requests = nullptr; ///< null if it does not listen
    ImageTree::Counts tree;
    std::optional<SourceCounts> products{};
    std::optional<Publisher::Counts> published{}; ///< nothing if it does not publish
};

/// The state of a server in Prometheus' text form. How many lines there are does not depend on what
/// clients ask for.
[[nodiscard]] QByteArray
metricsPage(const ServerStatus& status, const ServerMeasures& measures, FileTime now);

} // namespace raincast
