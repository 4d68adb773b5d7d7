// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "provider/fetcher.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace raincast {

/// How a host has behaved.
struct HostHealth {
    std::uint64_t requests = 0; ///< sent so far
    std::uint64_t answers = 0;  ///< requests that are over
    std::uint64_t bytes = 0;    ///< of bodies that came
    int failures = 0;           ///< running; 0 after a good answer
    bool isReached = false;     ///< the last attempt made a connection
    FileTime lastGood = 0;      ///< when the last good answer came
    FileTime restsUntil = 0;    ///< asked nothing before
    QString problem;            ///< of the last failure, while there are failures
};

/// Does requests as hosts like them: four at once to each, again after 2, 4 … seconds where that
/// may help (a status of 500 and above or 429, no connection, no whole answer), never before the
/// time that Retry-After names. A host that fails three times running rests for a minute, then for
/// two, up to ten; requests to one that rests fail at once. A failure is what the transport calls
/// one, an error status (but 304, and 404 where the request says so), and whatever the request's
/// own check finds.
///
/// The time is that of Clock::real(). For one thread, but for answers of the fetcher, which may
/// come in any.
class PoliteFetcher {
public:
    /// Says why a good answer (status 200) is of no use; nothing if it is.
    using Check = std::function<std::optional<QString>(const FetchAnswer&)>;
    using Done = Fetcher::Done;

    static constexpr int kMostAtOnce = 4;
    static constexpr int kFailuresToRest = 3;

    /// `jitter` gives numbers from 0 to 1 that spread repetitions. The fetcher is borrowed, and its
    /// answers come while this object lives or not at all.
    PoliteFetcher(Fetcher& fetcher, std::function<double()> jitter);

    /// Calls `done` from within a later turn(), once.
    void get(FetchRequest request, Check check, Done done);

    /// Calls what is to be called of requests that are over and begins those whose time has come.
    /// Returns when it wants to be called again, which may be now.
    FileTime turn();

    /// By host and port, "127.0.0.1:8080".
    [[nodiscard]] const HostHealth& health(const QByteArray& host) const;

    /// Whether requests to a host fail at once.
    [[nodiscard]] bool rests(const QByteArray& host) const;

    /// Host and port of a URL.
    [[nodiscard]] static QByteArray hostOf(const QByteArray& url);

private:
    struct Job {
        FetchRequest request;
        Check check;
        Done done;
        QByteArray host;
        int round = 0; ///< of the host, when it began
        int attempts = 0;
    };
    struct Host {
        HostHealth health;
        int round = 0; ///< counts failures: what is under way together fails once
        int rests = 0; ///< running
        int running = 0;
        std::deque<std::unique_ptr<Job>> queue;
    };
    struct Arrived {
        Job* job;
        FetchAnswer answer;
    };

    void start(std::unique_ptr<Job> job);
    void takeArrived();
    void take(std::unique_ptr<Job> job, FetchAnswer answer);
    void noteSuccess(Host& host, const Job& job);
    void noteFailure(Host& host, const Job& job, const FetchAnswer& answer);
    void failQueued(Host& host);
    [[nodiscard]] bool mayStart(Host& host, FileTime now) const;

    Fetcher& m_fetcher;
    std::function<double()> m_jitter;
    std::map<QByteArray, Host> m_hosts;
    std::map<Job*, std::unique_ptr<Job>> m_running;
    std::vector<std::pair<Done, FetchAnswer>> m_over;
    std::mutex m_mutex; ///< of what follows
    std::vector<Arrived> m_arrived;
};

} // namespace raincast
