// SPDX-License-Identifier: MIT
#pragma once

#include "core/replay_clock.h"
#include "core/timers.h"
#include "net/downloads.h"
#include "weather/servers_setting.h"

#include <memory>
#include <optional>

namespace raincast {

/// While a past storm is replayed it keeps the weather's clock of the program at that of the
/// viewer's own server, which has started it; asks it at once and then every 30 seconds, as a
/// server that had to be started again begins again.
class ReplayWatch : public Listener<ServersChange> {
public:
    /// The downloads are borrowed.
    ReplayWatch(Downloads& downloads, Timers& timers);
    ~ReplayWatch() override;
    ReplayWatch(const ReplayWatch&) = delete;
    ReplayWatch& operator=(const ReplayWatch&) = delete;

    /// Follows the settings, which are loaded.
    void begin();

    void onPublished(ServersChange& change) override;

private:
    void set(std::optional<ReplayClock> clock);
    void ask();
    void askServer();

    Downloads& m_downloads;
    std::unique_ptr<Alarm> m_alarm;
    std::optional<ReplayClock> m_clock;
    QString m_server; ///< of the clock; empty for none
    std::unique_ptr<Downloads::Download> m_download;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); ///< for a late connection
};

} // namespace raincast
