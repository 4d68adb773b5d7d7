// SPDX-License-Identifier: MIT
#include "provider/polite_fetcher.h"

#include "core/clock.h"
#include "provider/http_time.h"

#include <QUrl>

#include <algorithm>
#include <limits>

namespace raincast {

namespace {

constexpr FileTime kNever = std::numeric_limits<FileTime>::max();
constexpr FileTime kFirstRest = kFileTimePerMinute;
constexpr FileTime kLongestRest = 10 * kFileTimePerMinute;
constexpr FileTime kLongestRetryAfter = 60 * kFileTimePerMinute;
// Whoever asks for less than this waits.
constexpr FileTime kShortRest = 10 * kFileTimePerSecond;
// Without a connection nothing was asked of anybody: the next provider is wanted soon.
constexpr FileTime kFirstReconnect = 1 * kFileTimePerSecond;
constexpr FileTime kLongestReconnect = 25 * kFileTimePerSecond;
constexpr FileTime kFirstRepeat = 2 * kFileTimePerSecond;

constexpr int kNotModified = 304;
constexpr int kForbidden = 403;
constexpr int kNotFound = 404;
constexpr int kTooMany = 429;

bool isGoodAnswer(const FetchRequest& request, int status) {
    return (status >= 200 && status < 300) || status == kNotModified ||
           (status == kNotFound && request.mayBeAbsent);
}

QString problemOf(int status) {
    const bool mayHaveMoved = status == kForbidden || status == kNotFound;
    return QStringLiteral("status %1").arg(status) +
           (mayHaveMoved ? QStringLiteral(", as if it had moved or closed") : QString());
}

/// Whether the same request may do better in a moment.
bool isWorthRepeating(const FetchAnswer& answer) {
    return answer.failure != FetchAnswer::Failure::none || answer.status >= 500 ||
           answer.status == kTooMany;
}

/// How long a host asks to be left alone.
FileTime restOf(const QByteArray& retryAfter, FileTime now) {
    bool isNumber = false;
    const qint64 seconds = retryAfter.toLongLong(&isNumber);
    FileTime rest = 0;
    if (isNumber) {
        rest = std::clamp<qint64>(seconds, 0, 86'400) * kFileTimePerSecond;
    } else if (const FileTime until = readHttpTime(retryAfter); until != 0) {
        rest = until - now;
    }
    return std::clamp<FileTime>(rest, 0, kLongestRetryAfter);
}

} // namespace

PoliteFetcher::PoliteFetcher(Fetcher& fetcher, std::function<double()> jitter)
    : m_fetcher(fetcher), m_jitter(std::move(jitter)) {}

QByteArray PoliteFetcher::hostOf(const QByteArray& url) {
    const QUrl parsed = QUrl::fromEncoded(url);
    const int port = parsed.port();
    return parsed.host().toUtf8() + (port > 0 ? ':' + QByteArray::number(port) : QByteArray());
}

const HostHealth& PoliteFetcher::health(const QByteArray& host) const {
    static const HostHealth none;
    const auto found = m_hosts.find(host);
    return found == m_hosts.end() ? none : found->second.health;
}

bool PoliteFetcher::rests(const QByteArray& host) const {
    return health(host).restsUntil > Clock::real().now() + kShortRest;
}

void PoliteFetcher::get(FetchRequest request, Check check, Done done) {
    auto job = std::make_unique<Job>();
    job->host = hostOf(request.url);
    job->request = std::move(request);
    job->check = std::move(check);
    job->done = std::move(done);
    m_hosts[job->host].queue.push_back(std::move(job));
}

FileTime PoliteFetcher::turn() {
    takeArrived();
    const FileTime now = Clock::real().now();
    for (auto& [name, host] : m_hosts) {
        if (host.health.restsUntil > now + kLongestRetryAfter) {
            host.health.restsUntil = now; // the clock went back
        }
        if (rests(name)) {
            failQueued(host);
        }
        while (mayStart(host, now)) {
            auto job = std::move(host.queue.front());
            host.queue.pop_front();
            start(std::move(job));
        }
    }
    // They may ask for more.
    auto over = std::exchange(m_over, {});
    for (auto& [done, answer] : over) {
        done(std::move(answer));
    }
    FileTime next = over.empty() ? kNever : now;
    for (const auto& [name, host] : m_hosts) {
        if (!host.queue.empty() && host.running == 0) {
            next = std::min(next, std::max(now, host.health.restsUntil));
        }
    }
    return next;
}

// A host that failed is tried by one request alone.
bool PoliteFetcher::mayStart(Host& host, FileTime now) const {
    const int most = host.health.failures == 0 ? kMostAtOnce : 1;
    return !host.queue.empty() && host.running < most && host.health.restsUntil <= now;
}

void PoliteFetcher::start(std::unique_ptr<Job> job) {
    Host& host = m_hosts[job->host];
    ++host.running;
    ++host.health.requests;
    ++job->attempts;
    job->round = host.round;
    Job* const key = job.get();
    const FetchRequest request = job->request;
    m_running[key] = std::move(job);
    m_fetcher.get(request, [this, key](FetchAnswer answer) {
        const std::lock_guard lock(m_mutex);
        m_arrived.push_back({key, std::move(answer)});
    });
}

void PoliteFetcher::takeArrived() {
    std::vector<Arrived> arrived;
    {
        const std::lock_guard lock(m_mutex);
        arrived.swap(m_arrived);
    }
    for (Arrived& one : arrived) {
        take(std::move(m_running.extract(one.job).mapped()), std::move(one.answer));
    }
}

void PoliteFetcher::take(std::unique_ptr<Job> job, FetchAnswer answer) {
    Host& host = m_hosts[job->host];
    --host.running;
    ++host.health.answers;
    host.health.bytes += static_cast<std::uint64_t>(answer.body.size());
    host.health.isReached = answer.failure != FetchAnswer::Failure::unreachable;
    const bool hasCome = answer.failure == FetchAnswer::Failure::none;
    bool mayRepeat = isWorthRepeating(answer);
    if (hasCome && !isGoodAnswer(job->request, answer.status)) {
        answer.problem = problemOf(answer.status);
    } else if (hasCome && answer.status == 200 && job->check) {
        if (const auto fault = job->check(answer)) {
            answer.failure = FetchAnswer::Failure::broken;
            answer.problem = *fault;
            mayRepeat = false;
        }
    }
    if (answer.problem.isEmpty()) {
        noteSuccess(host, *job);
    } else {
        noteFailure(host, *job, answer);
        if (mayRepeat && job->attempts < kFailuresToRest && !rests(job->host)) {
            host.queue.push_front(std::move(job));
            return;
        }
    }
    m_over.emplace_back(std::move(job->done), std::move(answer));
}

void PoliteFetcher::noteSuccess(Host& host, const Job& job) {
    HostHealth& health = host.health;
    health.lastGood = Clock::real().now();
    if (job.round == host.round) {
        health.failures = 0;
        health.problem.clear();
        health.restsUntil = 0;
        host.rests = 0;
    }
}

void PoliteFetcher::noteFailure(Host& host, const Job& job, const FetchAnswer& answer) {
    const FileTime now = Clock::real().now();
    HostHealth& health = host.health;
    health.problem = answer.problem;
    if (job.round == host.round) {
        ++host.round;
        ++health.failures;
        const bool isReached = answer.failure != FetchAnswer::Failure::unreachable;
        FileTime rest = (isReached ? kFirstRepeat : kFirstReconnect)
                        << (std::min(health.failures - 1, 4));
        if (health.failures >= kFailuresToRest) {
            rest = std::min(
                kFirstRest << std::min(host.rests, 4), isReached ? kLongestRest : kLongestReconnect
            );
            ++host.rests;
        }
        const double spread = 1 + m_jitter() / 4;
        rest = static_cast<FileTime>(static_cast<double>(rest) * spread);
        health.restsUntil = std::max(health.restsUntil, now + rest);
    }
    health.restsUntil = std::max(health.restsUntil, now + restOf(answer.retryAfter, now));
}

void PoliteFetcher::failQueued(Host& host) {
    while (!host.queue.empty()) {
        FetchAnswer answer;
        answer.failure = host.health.isReached ? FetchAnswer::Failure::broken
                                               : FetchAnswer::Failure::unreachable;
        answer.problem = host.health.problem;
        m_over.emplace_back(std::move(host.queue.front()->done), std::move(answer));
        host.queue.pop_front();
    }
}

} // namespace raincast
