// SPDX-License-Identifier: MIT
#include "live/live_warnings.h"

#include "core/clock.h"
#include "core/utc_date_time.h"
#include "live/live_plan.h"
#include "palette/warning_kinds.h"

#include <algorithm>
#include <limits>

namespace raincast {

namespace {

constexpr qint64 kMostBytes = qint64{16} * 1024 * 1024;
constexpr FileTime kInterval = kFileTimePerMinute;
constexpr FileTime kLeastOfWorld = 15 * kFileTimePerSecond;

FileTime now() {
    return Clock::current().now();
}

QByteArray textOf(FileTime time) {
    return utcDateTime(time).toString(Qt::ISODate).toLatin1();
}

/// Which kinds are wanted, as one parameter.
QByteArray query() {
    QByteArray events;
    for (const WarningKind kind : kAllWarningKinds) {
        events += (events.isEmpty() ? "" : ",") + nameOf(kind).toUtf8().toPercentEncoding();
    }
    return "?status=actual&event=" + events;
}

template<typename Read>
PoliteFetcher::Check checkOf(Read read) {
    return [read](const FetchAnswer& answer) -> std::optional<QString> {
        const auto alerts = read(answer.body);
        return alerts ? std::nullopt : std::optional(alerts.error());
    };
}

bool isGood(const FetchAnswer& answer) {
    return answer.failure == FetchAnswer::Failure::none &&
           (answer.status == 200 || answer.status == 304);
}

} // namespace

LiveWarnings::LiveWarnings(
    PoliteFetcher& fetcher, QByteArray base, QByteArray other, const std::optional<Replay>& replay
)
    : m_fetcher(fetcher), m_base(replay ? QByteArray() : std::move(base)),
      m_other(std::move(other)), m_isPast(replay.has_value()),
      m_interval(std::max(kInterval, replay ? replay->speed * kLeastOfWorld : 0)) {}

bool LiveWarnings::isWanted() const {
    return m_wantedAt != 0 && now() < m_wantedAt + kWantedFor && m_wantedAt < now() + kWantedFor;
}

FileTime LiveWarnings::due() const {
    return isWanted() && !m_isAsking ? m_due : std::numeric_limits<FileTime>::max();
}

bool LiveWarnings::pursue() {
    const bool isDue = hasCome(m_due, 2 * m_interval, now());
    if (!m_isAsking && isDue && isWanted()) {
        m_isAsking = true;
        m_due = now() + m_interval;
        askFirst();
    }
    return m_isAsking;
}

void LiveWarnings::askFirst() {
    if (m_base.isEmpty() || m_fetcher.rests(PoliteFetcher::hostOf(m_base))) {
        return askOther();
    }
    FetchRequest request{m_base + "/alerts/active", kMostBytes};
    if (!m_asksForAll) {
        request.url += query();
    }
    request.etag = m_etag;
    request.lastModified = m_lastModified;
    request.accept = "application/geo+json";
    m_fetcher.get(request, checkOf(readAlerts), [this](const FetchAnswer& answer) {
        takeFirst(answer);
    });
}

void LiveWarnings::takeFirst(const FetchAnswer& answer) {
    if (answer.status == 400 && !m_asksForAll) {
        m_asksForAll = true;
        return askFirst();
    }
    if (!isGood(answer)) {
        return askOther();
    }
    if (answer.status == 200) {
        m_etag = answer.etag;
        m_lastModified = answer.lastModified;
        if (const auto alerts = readAlerts(answer.body)) {
            m_warnings = warningsOf(*alerts);
        }
    }
    m_knownAt = now();
    m_isAsking = false;
}

void LiveWarnings::askOther() {
    // What it says is not what the first one's tags stand for.
    m_etag.clear();
    m_lastModified.clear();
    if (m_other.isEmpty()) {
        m_isAsking = false;
        return;
    }
    FetchRequest request{m_other + "/geojson/sbw.geojson", kMostBytes};
    if (m_isPast) {
        request.url += "?ts=" + textOf(now());
    }
    m_fetcher.get(request, checkOf(readStormWarnings), [this](const FetchAnswer& answer) {
        if (isGood(answer)) {
            if (const auto alerts = readStormWarnings(answer.body)) {
                m_warnings = warningsOf(*alerts);
                m_knownAt = now();
            }
        }
        m_isAsking = false;
    });
}

std::vector<WeatherWarning> LiveWarnings::at(FileTime time) const {
    std::vector<WeatherWarning> holding;
    std::copy_if(
        m_warnings.begin(), m_warnings.end(), std::back_inserter(holding),
        [time](const WeatherWarning& warning) { return warning.end == 0 || time < warning.end; }
    );
    return holding;
}

std::vector<QByteArray> LiveWarnings::hosts() const {
    std::vector<QByteArray> hosts;
    for (const QByteArray& address : {m_base, m_other}) {
        const QByteArray host = PoliteFetcher::hostOf(address);
        if (!host.isEmpty() && std::find(hosts.begin(), hosts.end(), host) == hosts.end()) {
            hosts.push_back(host);
        }
    }
    return hosts;
}

} // namespace raincast
