// SPDX-License-Identifier: MIT
#pragma once

#include "core/mailbox.h"
#include "net/connection.h"
#include "net/curl_library.h"
#include "net/download_order.h"
#include "net/http_response.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>

namespace raincast {

/// Fetches over HTTP in one thread of its own, in the order of asking, over at most six kept-alive
/// connections to a server. Nobody waits: responses come from the event loop of the thread that
/// made it, which is the only one that may use it. What several ask for at the same time is fetched
/// once. Connections are kept for as long as somebody wants to use them again.
///
/// The program owns one and hands it down; its users must end before it. Its end cancels what
/// runs and takes no longer than a moment, whatever the network does.
class Downloads {
    class Thread;

public:
    static constexpr int kMostConnections = 6; ///< to one server

    using Done = std::function<void(HttpResponse)>;
    /// Called for each request with its URL and its outcome in words: the HTTP status ("200"), the
    /// cause of its failure ("Could not resolve host: radar.example"), or both ("200, end of
    /// response with 512 bytes missing", "200, no GIF image").
    using Report = std::function<void(const QString& url, const QString& outcome)>;

    /// One download while it is under way. Its end cancels it: nothing comes then.
    class Download {
    public:
        ~Download();
        Download(const Download&) = delete;
        Download& operator=(const Download&) = delete;

    private:
        friend class Downloads;
        Download(Downloads& downloads, std::uint64_t number)
            : m_downloads(downloads), m_number(number) {}
        Downloads& m_downloads;
        std::uint64_t m_number;
    };

    /// `connection` brings up the data connection; it is borrowed. `curl` gives libcurl, when the
    /// first download begins; without libcurl every request fails at once.
    explicit Downloads(
        ConnectionManager& connection = ConnectionManager::ofTheSystem(),
        const CurlLibrary* (*curl)() = CurlLibrary::get
    );
    ~Downloads();
    Downloads(const Downloads&) = delete;
    Downloads& operator=(const Downloads&) = delete;

    /// Begins a download; `done` is called once, unless the download is ended before. It may end
    /// it.
    [[nodiscard]] std::unique_ptr<Download> get(DownloadOrder order, Done done);

    /// Keeps idle connections until this and all others of its kind have gone. A connection that
    /// was kept for longer than one action of the user may be dead, on a laptop that slept or
    /// changed its network.
    [[nodiscard]] std::shared_ptr<void> keepConnections();

    [[nodiscard]] ConnectionManager& connection() const { return m_connection; }

    /// Has every request reported, those too that are not made.
    void reportTo(Report report) { m_report = std::move(report); }
    void report(const QByteArray& url, const QString& outcome) const;

    /// Remembers places (HOST/PATH, or HOST:PORT/PATH) whose server says that nothing is there.
    void noteAbsent(const QString& place) { m_absent.insert(place); }
    [[nodiscard]] bool isAbsent(const QString& place) const { return m_absent.contains(place); }

private:
    void cancel(std::uint64_t number);
    void arrived(std::uint64_t number, const HttpResponse& response);

    ConnectionManager& m_connection;
    Report m_report;
    std::set<QString> m_absent;
    std::uint64_t m_last = 0;
    std::weak_ptr<void> m_keeping;
    std::map<std::uint64_t, Done> m_waiting;
    Mailbox m_mailbox;
    std::unique_ptr<Thread> m_thread;
};

} // namespace raincast
