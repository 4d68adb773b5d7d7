// SPDX-License-Identifier: MIT
#pragma once

#include "core/replay_clock.h"
#include "live/live_series.h"
#include "live/live_store.h"
#include "provider/provider.h"
#include "tree/frame_source.h"
#include "tree/server_log.h"

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace raincast {

/// What the operator wants to know of the providers.
struct LiveStatus {
    struct Host {
        QString name;
        QString host;
        HostHealth health;
        bool rests = false;
    };
    struct Wanted {
        std::string site;
        Product product;
        FileTime newest = 0; ///< 0: there is none
        QString provider;    ///< of the newest; empty where there is none
        SourceState state = SourceState::ok;
    };

    std::vector<Host> hosts;
    std::vector<Wanted> wanted;
    /// False when every provider of frames that was asked could not be reached at all.
    bool reachable = true;
};

/// Frames of public providers, fetched when somebody asks for them. What was asked for in the last
/// quarter of an hour is wanted: it is listed again when its next volume is expected. Everything
/// else rests.
///
/// Any thread may ask; the providers are asked from within turn() alone.
class LiveSource : public FrameSource {
public:
    struct Settings {
        QString folder; ///< of the store
        int hours = 4;  ///< how far back frames reach
        /// Where frames come from, addresses without a slash at their end; empty ones are not
        /// asked.
        QByteArray bucket = kBucket;
        QByteArray ring = kRing;
        QByteArray warnings = kWarnings;
        QByteArray otherWarnings = kOtherWarnings;
        /// Weather of the past, by Clock::current(): only the bucket and the other one of those who
        /// give warnings know it.
        std::optional<Replay> replay;
    };

    static constexpr auto kBucket = "https://unidata-nexrad-level3.s3.amazonaws.com";
    static constexpr auto kRing = "https://tgftp.nws.noaa.gov/SL.us008001/DF.of/DC.radar";
    static constexpr auto kWarnings = "https://api.weather.gov";
    static constexpr auto kOtherWarnings = "https://mesonet.agron.iastate.edu";

    /// The fetcher is borrowed. `wake` is called, in any thread, when turn() is wanted now.
    LiveSource(
        const Settings& settings, Fetcher& fetcher, ServerLog log, std::function<void()> wake
    );
    ~LiveSource() override;
    LiveSource(const LiveSource&) = delete;
    LiveSource& operator=(const LiveSource&) = delete;

    /// Does what is due. Returns when it wants to be called again, by Clock::real(), which may be
    /// now. For one thread, the one that the fetcher answers in.
    FileTime turn();

    /// Lets nobody wait any more, now and later. For any thread.
    void close();

    [[nodiscard]] LiveStatus status() const;

    void prepareTimes(std::string_view site, Product product, Ready ready) const override;
    void
    prepareFrame(std::string_view site, Product product, FileTime time, Ready ready) const override;
    void prepareWarnings(Ready ready) const override;
    [[nodiscard]] std::vector<FileTime>
    frameTimes(std::string_view site, Product product, FileTime upTo) const override;
    [[nodiscard]] std::optional<QByteArray>
    frame(std::string_view site, Product product, FileTime time) const override;
    [[nodiscard]] std::optional<QByteArray>
    sharpFrame(std::string_view site, Product product, FileTime time, int detail) const override;
    [[nodiscard]] FrameStamp
    stamp(std::string_view site, Product product, FileTime time) const override;
    [[nodiscard]] SourceState state(std::string_view site, Product product) const override;
    [[nodiscard]] std::optional<SourceCounts> counts() const override;
    [[nodiscard]] const AntennaPosition* antenna(std::string_view site) const override;
    [[nodiscard]] WeatherWarnings
    warnings(std::string_view site, Range range, FileTime time) const override;

private:
    class Engine;
    std::unique_ptr<Engine> m_engine;
};

} // namespace raincast
