// SPDX-License-Identifier: MIT
#include "watch/live_watch.h"

#include "watch/status_answer.h"

#include <utility>

namespace raincast {

namespace {

using namespace std::chrono_literals;

constexpr auto kFirst = 5s;
constexpr auto kAgain = 30s;
constexpr int kMostInVain = 3;

QString liveServer() {
    return QString::fromUtf16(kOwnLiveServer);
}

} // namespace

LiveWatch::LiveWatch(Downloads& downloads, Timers& timers, Listing listing, Told told)
    : m_downloads(downloads), m_listing(std::move(listing)), m_told(std::move(told)),
      m_alarm(timers.make([this] { ask(); })) {}

bool LiveWatch::isWanted() {
    return ServersSetting::source() == WeatherSource::live && !ServersSetting::hadLive();
}

void LiveWatch::begin() {
    m_begun = true;
    rest();
}

void LiveWatch::onPublished(ServersChange& /*change*/) {
    if (!m_begun) {
        return;
    }
    m_told(ServersSetting::standsIn());
    if (!ServersSetting::standsIn()) {
        m_decided = false;
        m_inVain = 0;
        m_download.reset();
        rest();
    }
}

bool LiveWatch::undecided() const {
    return isWanted() && !m_decided && !m_listing().isEmpty();
}

// Waits for its time to ask.
void LiveWatch::rest() {
    if (isWanted()) {
        m_alarm->start(ServersSetting::standsIn() ? kAgain : kFirst);
    } else {
        m_alarm->stop();
    }
}

void LiveWatch::ask() {
    if (!isWanted() || m_listing().isEmpty()) {
        rest(); // nobody looks at radar: no server is started for it
        return;
    }
    m_download.reset();
    const bool runs = !m_downloads.connection().addressOf(liveServer()).isEmpty();
    if (!runs && !ServersSetting::standsIn()) {
        // Nothing was asked of it, it cannot be started, or the machine is slow.
        m_decided = ++m_inVain >= kMostInVain;
        rest();
        return;
    }
    m_alarm->stop();
    const auto ready = [this, alive = std::weak_ptr(m_alive)](bool /*up*/) {
        if (!alive.expired()) {
            askServer();
        }
    };
    m_downloads.connection().EstablishConnection(liveServer(), ready);
}

void LiveWatch::askServer() {
    const auto askStatus = [this] {
        get(QStringLiteral("/status"), [this](const HttpResponse& status) { take(status); });
    };
    const QString listing = m_listing();
    if (!ServersSetting::standsIn() || listing.isEmpty()) {
        askStatus();
        return;
    }
    get(listing, [askStatus](const HttpResponse& /*names*/) { askStatus(); });
}

void LiveWatch::get(const QString& path, Downloads::Done done) {
    const QString address = m_downloads.connection().addressOf(liveServer());
    if (address.isEmpty()) {
        rest();
        return;
    }
    const QByteArray url = QStringLiteral("http://%1%2").arg(address, path).toUtf8();
    m_download = m_downloads.get({url, DownloadOrder::Body::listing}, std::move(done));
}

void LiveWatch::take(const HttpResponse& status) {
    m_download.reset();
    const bool isUnreachable = status.answered() && saysUnreachable(status.body);
    // A provider that has not answered yet may be slow, or not there at all.
    m_decided = isUnreachable || ++m_inVain >= kMostInVain;
    if (isWanted() && status.answered()) {
        ServersSetting::standIn(isUnreachable);
    }
    rest();
}

} // namespace raincast
