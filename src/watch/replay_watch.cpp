// SPDX-License-Identifier: MIT
#include "watch/replay_watch.h"

#include "watch/status_answer.h"

namespace raincast {

namespace {

using namespace std::chrono_literals;

constexpr auto kAgain = 30s;

} // namespace

ReplayWatch::ReplayWatch(Downloads& downloads, Timers& timers)
    : m_downloads(downloads), m_alarm(timers.make([this] { ask(); })) {}

ReplayWatch::~ReplayWatch() {
    Clock::replayBy(nullptr);
}

void ReplayWatch::begin() {
    ServersChange none;
    onPublished(none);
}

void ReplayWatch::onPublished(ServersChange& /*change*/) {
    const bool isWanted = ServersSetting::source() == WeatherSource::past;
    const QString server = isWanted ? ServersSetting::current().radar : QString();
    if (server == m_server) {
        return;
    }
    m_server = server;
    m_download.reset();
    m_alarm->stop();
    if (!isWanted) {
        return set(std::nullopt);
    }
    // Until the server says better.
    set(ReplayClock(ServersSetting::past().replay, Clock::real().now()));
    ask();
}

void ReplayWatch::set(std::optional<ReplayClock> clock) {
    Clock::replayBy(nullptr);
    m_clock = clock;
    if (m_clock) {
        Clock::replayBy(&*m_clock);
    }
}

void ReplayWatch::ask() {
    m_alarm->start(kAgain);
    m_downloads.connection().EstablishConnection(
        m_server,
        [this, server = m_server, alive = std::weak_ptr(m_alive)](bool isUp) {
            if (!alive.expired() && isUp && server == m_server) {
                askServer();
            }
        }
    );
}

void ReplayWatch::askServer() {
    const QString address = m_downloads.connection().addressOf(m_server);
    const QByteArray url = QStringLiteral("http://%1/status").arg(address).toUtf8();
    m_download =
        m_downloads.get({url, DownloadOrder::Body::listing}, [this](const HttpResponse& status) {
            if (const auto start = status.answered() ? replayStartIn(status.body) : std::nullopt) {
                set(ReplayClock(ServersSetting::past().replay, *start));
            }
        });
}

} // namespace raincast
