// SPDX-License-Identifier: MIT
// How many sentences a core reads in a second: framed, checksums verified, parsed, published and
// made into positions. A plain memchr line splitter goes over the same bytes in the same run and
// gives the ratio, which tells more than the absolute figure of one machine.
#include "position/feed_rmc_to_gps_position.h"
#include "position/nmea/nmea_reader.h"
#include "support/figure.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <string_view>

namespace raincast {
namespace {

constexpr int kSeconds = 2000;
constexpr std::size_t kReadSize = 4096;

std::string withChecksum(const std::string& text) {
    unsigned sum = 0;
    for (const char c : text) {
        sum ^= static_cast<unsigned char>(c);
    }
    char checksum[8];
    std::snprintf(checksum, sizeof checksum, "*%02X\r\n", sum);
    return "$" + text + checksum;
}

// What a receiver that moves sends each second. Every digit that can differ does.
std::string rmc(int i) {
    char text[128];
    std::snprintf(
        text, sizeof text,
        "GPRMC,%02d%02d%02d.000,A,48%02d.%04d,N,011%02d.%04d,E,%d.%02d,%d.%02d,230307,,,A",
        i / 3600 % 24, i / 60 % 60, i % 60, i / 1000 % 60, i * 37 % 10000, i / 900 % 60,
        i * 53 % 10000, i % 60, i % 100, i % 360, i * 7 % 100
    );
    return withChecksum(text);
}

std::string gga(int i) {
    char text[128];
    std::snprintf(
        text, sizeof text,
        "GPGGA,%02d%02d%02d.000,48%02d.%04d,N,011%02d.%04d,E,1,%02d,%d.%d,%d.%d,M,46.9,M,,0000",
        i / 3600 % 24, i / 60 % 60, i % 60, i / 1000 % 60, i * 37 % 10000, i / 900 % 60,
        i * 53 % 10000, i % 12, i % 5, i % 10, i % 900, i % 10
    );
    return withChecksum(text);
}

std::string vtg(int i) {
    char text[64];
    std::snprintf(
        text, sizeof text, "GPVTG,%d.%02d,T,,M,%d.%02d,N,%d.%d,K,A", i % 360, i * 7 % 100, i % 60,
        i % 100, i % 110, i % 10
    );
    return withChecksum(text);
}

// Every sentence is of a kind that is parsed.
const std::string& parsedStream() {
    static const std::string stream = [] {
        std::string text;
        for (int i = 0; i < kSeconds; ++i) {
            text += gga(i) + rmc(i) + vtg(i);
        }
        return text;
    }();
    return stream;
}

// With the satellites that most receivers tell as well.
const std::string& usualStream() {
    static const std::string stream = [] {
        std::string text;
        for (int i = 0; i < kSeconds; ++i) {
            text += gga(i);
            text += withChecksum("GPGSA,A,3,14,30,29,31,,,,,,,,,7.6,3.4,6.8");
            text += withChecksum("GPGSV,3,1,12,02,11,170,37,04,35,100,40,05,30,311,42,07,02,200,");
            text +=
                withChecksum("GPGSV,3,2,12,08,10,048,31,09,65,130,44,12,05,260,33,14,44,180,41");
            text += withChecksum("GPGSV,3,3,12,24,58,220,,26,17,053,,29,20,063,,30,60,311,44");
            text += rmc(i) + vtg(i);
        }
        return text;
    }();
    return stream;
}

void count(benchmark::State& state, std::size_t sentences, std::size_t bytes) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sentences));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

void splitLines(benchmark::State& state, const std::string& stream) {
    std::size_t lines = 0;
    for (auto _ : state) {
        lines = 0;
        const char* at = stream.data();
        const char* const end = at + stream.size();
        while (const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at))) {
            at = static_cast<const char*>(found) + 1;
            benchmark::DoNotOptimize(at);
            ++lines;
        }
    }
    count(state, lines, stream.size());
}

void readSentences(benchmark::State& state, const std::string& stream) {
    PublishedPosition position;
    const CFeedRMC_to_GPSPosition feed(position);
    std::size_t sentences = 0;
    for (auto _ : state) {
        NmeaReader reader;
        for (std::size_t at = 0; at < stream.size(); at += kReadSize) {
            reader.feed(std::string_view(stream).substr(at, kReadSize));
        }
        sentences = reader.counters().taken + reader.counters().otherKinds;
        benchmark::DoNotOptimize(position);
    }
    count(state, sentences, stream.size());
}

/// Notes the rates, and prints below the table what they come to beside a line splitter.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            m_rates[run.benchmark_name()] = run.counters.at("items_per_second");
        }
    }
    void Finalize() override {
        for (const char* stream : {"parsed", "usual"}) {
            const double lines = m_rates[std::string("memchr/") + stream];
            const double sentences = m_rates[std::string("read/") + stream];
            if (sentences > 0) {
                Figure figure = Figure::of(
                    sentences / 1e6, lines / 1e6, "million a second",
                    std::string("NMEA sentences read, ") + stream + " kinds",
                    "memchr splitting lines"
                );
                figure.better = Better::higher;
                print(figure);
            }
        }
    }

private:
    std::map<std::string, double> m_rates;
};

} // namespace
} // namespace raincast

int main(int argc, char** argv) {
    using namespace raincast;
    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("memchr/parsed", [](auto& s) { splitLines(s, parsedStream()); });
    benchmark::RegisterBenchmark("read/parsed", [](auto& s) { readSentences(s, parsedStream()); });
    benchmark::RegisterBenchmark("memchr/usual", [](auto& s) { splitLines(s, usualStream()); });
    benchmark::RegisterBenchmark("read/usual", [](auto& s) { readSentences(s, usualStream()); });
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
