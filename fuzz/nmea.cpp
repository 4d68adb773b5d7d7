// SPDX-License-Identifier: MIT
// Whatever bytes come, in whatever reads: everything published is finite, every sentence is counted
// once, and how the bytes were cut into reads makes no difference.
#include "position/feed_rmc_to_gps_position.h"
#include "position/nmea/nmea_pace.h"
#include "position/nmea/nmea_reader.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace raincast {
namespace {

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

/// Checks every record, and sums up all of them.
class Checker : private Listener<CNMEA_GPS::RMC>,
                private Listener<CNMEA_GPS::GGA>,
                private Listener<CNMEA_GPS::VTG>,
                private Listener<CDataGPSPosition> {
public:
    std::vector<double> values;

private:
    void note(double value) {
        require(std::isfinite(value));
        values.push_back(value);
    }
    void onPublished(CNMEA_GPS::RMC& rmc) override {
        note(rmc.latitude);
        note(rmc.longitude);
        note(rmc.speed);
        note(rmc.course);
        note(rmc.magneticVariation);
        note(static_cast<double>(rmc.time));
    }
    void onPublished(CNMEA_GPS::GGA& gga) override {
        note(gga.latitude);
        note(gga.longitude);
        note(gga.altitude);
        note(gga.dilution);
        note(gga.satellites);
        note(gga.quality);
    }
    void onPublished(CNMEA_GPS::VTG& vtg) override {
        note(vtg.speed);
        note(vtg.course);
    }
    void onPublished(CDataGPSPosition& position) override {
        require(position.fixType >= kFixNone && position.fixType <= kFixManual);
    }
};

struct Result {
    std::vector<double> values;
    std::string counters;
};

Result read(std::string_view bytes, std::size_t readSize) {
    Checker checker;
    PublishedPosition position;
    const CFeedRMC_to_GPSPosition feed(position);
    NmeaReader reader;
    for (std::size_t at = 0; at < bytes.size(); at += readSize) {
        reader.feed(bytes.substr(at, readSize));
    }
    reader.reset();
    const NmeaCounters& counters = reader.counters();
    require(counters.bytes == bytes.size());
    require(counters.sentences() + counters.jsonLines + counters.junkBytes <= bytes.size());
    return {std::move(checker.values), counters.text()};
}

void parseDirectly(std::string_view text) {
    const Checker checker;
    for (const char* name : {"RMC", "GGA", "VTG"}) {
        CNMEASentenceType::find(name)->receive(text);
    }
    NmeaPace pace(1);
    const auto wait = pace.waitBefore(text);
    require(wait.count() >= 0 && wait <= NmeaPace::kLongestGap);
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    if (size == 0) {
        return 0;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const Result whole = read(bytes, bytes.size() + 1);
    const Result pieces = read(bytes, data[0] % 64 + 1);
    require(whole.values == pieces.values);
    parseDirectly(bytes);
    return 0;
}
