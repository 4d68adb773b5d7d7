// SPDX-License-Identifier: MIT
#pragma once

#include "position/nmea/nmea_counters.h"
#include "position/nmea/nmea_framer.h"

#include <optional>
#include <string_view>

namespace raincast {

/// Reads a stream of bytes from a receiver: frames its sentences, verifies their checksums, and has
/// each one of a known kind parsed and published. Any talker will do ("GP", "GN", "IN" ...). A
/// sentence without a checksum is taken as it is.
class NmeaReader {
public:
    NmeaReader() : m_framer(m_counters) {}
    NmeaReader(const NmeaReader&) = delete;
    NmeaReader& operator=(const NmeaReader&) = delete;

    /// Takes the bytes of one read and publishes the sentences that end in them. Must not be called
    /// again by those who receive them.
    void feed(std::string_view bytes);

    /// What follows has nothing to do with what came before: drops the beginning of a sentence.
    void reset() { m_framer.reset(); }

    [[nodiscard]] const NmeaCounters& counters() const { return m_counters; }

private:
    void take(std::string_view sentence);
    void dispatch(std::string_view text);

    NmeaCounters m_counters;
    NmeaFramer m_framer;
};

/// The text of a sentence ("$GPRMC,...*6A") between its start and its checksum; empty when the
/// checksum is wrong or cut short.
[[nodiscard]] std::optional<std::string_view> checkedNmeaText(std::string_view sentence);

} // namespace raincast
