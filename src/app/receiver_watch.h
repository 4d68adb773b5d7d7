// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "core/listener.h"
#include "geo/geo_position.h"
#include "position/nmea/nmea_gga.h"
#include "position/nmea/nmea_rmc.h"
#include "position/receiver_change.h"

#include <QString>

#include <cstdint>
#include <deque>
#include <optional>

namespace raincast {

class PositionReceiver;

/// Describes what arrives at a receiver, for a user who checks whether it works: sentences per
/// second (over the last five seconds), whether they hold a position, and what the receiver says of
/// its source.
///
///     ReceiverWatch watch(receiver);
///     watch.look(now);   // every second or so
///     watch.text();
///
/// When the receiver turns to another source the watch starts over.
class ReceiverWatch : private Listener<CNMEA_GPS::RMC>,
                      private Listener<CNMEA_GPS::GGA>,
                      private Listener<ReceiverChange> {
public:
    /// The receiver is borrowed.
    explicit ReceiverWatch(const PositionReceiver& receiver) : m_receiver(receiver) {}

    /// Takes note of what has arrived until now, a UTC time.
    void look(FileTime now);

    /// Sentences per second; none until two looks have passed.
    [[nodiscard]] std::optional<double> sentencesPerSecond() const;

    /// Where the receiver is, from sentences with a fix of the last nine seconds.
    [[nodiscard]] std::optional<GeoPosition> fix() const { return m_fix; }

    /// A few lines; the position is in the user's format.
    [[nodiscard]] QString text() const;

private:
    struct Sample {
        FileTime time = 0;
        std::uint64_t sentences = 0;
    };

    void onPublished(CNMEA_GPS::RMC& rmc) override;
    void onPublished(CNMEA_GPS::GGA& gga) override;
    void onPublished(ReceiverChange& change) override;
    void take(bool valid, GeoPosition position);
    void lookAtSentences(FileTime now);
    void lookAtFix(FileTime now);

    const PositionReceiver& m_receiver;
    std::deque<Sample> m_samples;
    std::optional<GeoPosition> m_fix;
    bool m_heard = false;   ///< of a fix since the last look
    FileTime m_fixTime = 0; ///< of the last look that found one
};

} // namespace raincast
