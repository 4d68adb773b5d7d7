// SPDX-License-Identifier: MIT
#pragma once

#include "core/idle_call.h"
#include "core/listener.h"
#include "core/timers.h"
#include "position/nmea/nmea_reader.h"
#include "position/nmea/nmea_rmc.h"
#include "position/source/position_source.h"
#include "position/source/position_source_address.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace raincast {

/// Keeps a position source open and publishes the sentences that come from it. A source that
/// cannot be opened or breaks is opened again after 1, 2, 4, 8, 16 and then every 30 s, for as long
/// as it is wanted: a device that is plugged in later is found. A sentence that arrives resets
/// the delays.
class PositionReceiver : private PositionSource::Sink, private Listener<CNMEA_GPS::RMC> {
public:
    enum class State {
        off,     ///< no source is wanted
        open,    ///< being opened, or read
        waiting, ///< to open it again; problem() says why
        finished ///< a recorded file has been played to its end
    };
    using Make = std::function<
        std::unique_ptr<PositionSource>(const PositionSourceAddress& address, Timers& timers)>;

    /// The timers are borrowed.
    explicit PositionReceiver(Timers& timers, Make make = makePositionSource);
    ~PositionReceiver() override;

    /// Opens this source instead of the one in use, with the counters at 0; none closes it.
    /// Publishes a ReceiverChange in between. Must not be called by those who receive a sentence.
    void use(const std::optional<PositionSourceAddress>& address);

    /// The source in use; none while the state is Off.
    [[nodiscard]] const std::optional<PositionSourceAddress>& address() const { return m_address; }

    [[nodiscard]] State state() const { return m_state; }

    /// Why the source broke last, in words; empty while nothing is wrong.
    [[nodiscard]] const QString& problem() const { return m_problem; }

    /// What came of the bytes of this source.
    [[nodiscard]] const NmeaCounters& counters() const { return m_reader->counters(); }

    /// Whether an RMC has come from this source: these lead then, and GGA gives no place.
    [[nodiscard]] bool rmcSeen() const { return m_rmcSeen; }

    /// One line for the user: what the source does, and what was read, dropped and why.
    [[nodiscard]] QString statusText() const;

private:
    void received(std::string_view bytes) override;
    void broken(const QString& why) override;
    void finished() override;
    void onPublished(CNMEA_GPS::RMC& /*rmc*/) override { m_rmcSeen = true; }
    void open();
    void close();

    Timers& m_timers;
    Make m_make;
    std::optional<PositionSourceAddress> m_address;
    std::optional<NmeaReader> m_reader;
    std::unique_ptr<PositionSource> m_source;
    State m_state = State::off;
    bool m_rmcSeen = false;
    QString m_problem;
    std::chrono::seconds m_delay;
    std::chrono::seconds m_nextDelay;
    IdleCall m_open;
    std::unique_ptr<Alarm> m_openAgain;
};

} // namespace raincast
