// SPDX-License-Identifier: MIT
#pragma once

#include "core/replay_clock.h"
#include "provider/alert_reader.h"
#include "provider/polite_fetcher.h"
#include "tree/weather_warning.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace raincast {

/// The warnings of the whole country, asked for once a minute while anybody looks; of the other
/// provider when the first one fails. What is known stays until it ends. For one thread at a time.
class LiveWarnings {
public:
    /// `base` is the address of the National Weather Service's programming interface, `other` that
    /// of the Iowa Environmental Mesonet; empty ones are not asked. Only the latter knows those of
    /// a replay's moment, and it is asked at the same pace of the world's clock at any speed. The
    /// fetcher is borrowed.
    LiveWarnings(
        PoliteFetcher& fetcher, QByteArray base, QByteArray other,
        const std::optional<Replay>& replay = {}
    );

    /// Somebody asked at a time.
    void want(FileTime time) { m_wantedAt = time; }
    [[nodiscard]] bool isWanted() const;

    /// Asks if that is due. True while an answer is under way.
    bool pursue();
    [[nodiscard]] FileTime due() const;
    [[nodiscard]] bool isKnown() const { return m_knownAt != 0; }

    /// Those that have not ended at a time.
    [[nodiscard]] std::vector<WeatherWarning> at(FileTime time) const;

    /// The addresses that are asked, by host and port.
    [[nodiscard]] std::vector<QByteArray> hosts() const;

private:
    void askFirst();
    void askOther();
    void takeFirst(const FetchAnswer& answer);

    PoliteFetcher& m_fetcher;
    QByteArray m_base;
    QByteArray m_other;
    bool m_isPast;
    FileTime m_interval;       ///< of the weather's clock
    bool m_asksForAll = false; ///< the provider does not understand what is asked of it
    QByteArray m_etag;
    QByteArray m_lastModified;
    FileTime m_wantedAt = 0;
    FileTime m_due = 0;
    FileTime m_knownAt = 0;
    bool m_isAsking = false;
    std::vector<WeatherWarning> m_warnings;
};

} // namespace raincast
