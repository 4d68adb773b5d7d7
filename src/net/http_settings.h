// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>

namespace raincast {

/// The limits of time and size of a transfer.
struct HttpLimits {
    /// To find and reach the server, its name, proxy and TLS handshake included.
    std::chrono::milliseconds connectTimeout{30'000};
    /// A response that brings fewer than stallBytesPerSecond of its body, on average over
    /// stallTime, ends there; so does one whose headers take that long.
    std::chrono::milliseconds stallTime{30'000};
    int stallBytesPerSecond = 64;
    /// From the moment the server is reached to the end of its response. A response that has not
    /// ended by then ends there, as a stalled one does.
    std::chrono::milliseconds totalTime{600'000};
    /// Reading a listing ends here. A year of a radar's scans is about this long.
    qint64 listingBytes = qint64{8} << 20;
    /// A file that is larger is refused. Published images have up to 100 kB.
    qint64 fileBytes = qint64{4} << 20;
    /// For all files of one action of the user together; files beyond that are refused.
    qint64 actionBytes = qint64{64} << 20;
};

/// The limits of the transfers of this process that begin from now on. User-interface thread only.
[[nodiscard]] HttpLimits& httpLimits();

} // namespace raincast
