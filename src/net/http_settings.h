// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>

class QString;

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

/// What the rest of the program does while a transfer waits, and where results are reported.
struct HttpHooks {
    /// Called by a waiting transfer: once before the first byte and at least every 100 ms. It must
    /// only let exposures through; a BusyGuard is active meanwhile.
    std::function<void()> waiting;
    /// Whether the program is about to end: a request that is under way returns first, and no
    /// further one begins.
    std::function<bool()> ending;
    /// Called once per request with its URL and its outcome in words: the HTTP status ("200"), the
    /// cause of its failure ("Could not resolve host: radar.example"), or both ("200, end of
    /// response with 512 bytes missing", "200, no GIF image").
    std::function<void(const QString& url, const QString& outcome)> finished;
};

/// The limits and hooks of all transfers of this process; change them while none is under way.
/// User-interface thread only.
[[nodiscard]] HttpLimits& httpLimits();
[[nodiscard]] HttpHooks& httpHooks();

} // namespace raincast
