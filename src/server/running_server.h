// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "maps/map_data.h"
#include "server/remembered_page.h"
#include "server/server_options.h"
#include "server/status_page.h"
#include "tree/image_tree.h"
#include "tree/layer_store.h"
#include "tree/publisher.h"
#include "tree/server_log.h"

#include <atomic>
#include <memory>
#include <stop_token>
#include <vector>

namespace raincast {

class Level3Folder;
class Level3Watch;
class LiveNetwork;
class LiveSource;
class PeriodicTask;
class TreeServer;

/// The parts of a running server, put together by the options.
class RunningServer {
public:
    /// Logs which map data are missing. The options are borrowed.
    RunningServer(const ServeOptions& options, ServerLog log);
    ~RunningServer();
    RunningServer(const RunningServer&) = delete;
    RunningServer& operator=(const RunningServer&) = delete;

    /// Begins to serve at the options' address; the result is that of TreeServer::start().
    [[nodiscard]] bool listen();

    /// Publishes the tree; false when a file could not be written.
    [[nodiscard]] bool publishOnce();

    /// From now on says that it should not be asked any more.
    void prepareToEnd() { m_isEnding = true; }

    /// From now on watches the folder of products and publishes. Needs an event loop.
    void work();

    /// "Serving sample weather at http://127.0.0.1:8155/"
    [[nodiscard]] QString readyLine() const;

private:
    std::unique_ptr<FrameSource> makeFrames();
    std::unique_ptr<FrameSource> makeLive();
    void makeSharpPublishers();
    void publishAlways();
    bool publishSharp(const std::stop_token& stop);
    [[nodiscard]] Publisher::Counts published() const;
    void logMissingData() const;
    void addPages();
    [[nodiscard]] ServerStatus statusOfNow() const;
    [[nodiscard]] QByteArray metricsOfNow() const;
    [[nodiscard]] TreeAnswer readinessOfNow() const;

    /// The weather's clock, for as long as it lives.
    class WeatherTime {
    public:
        explicit WeatherTime(const std::optional<Replay>& replay);
        ~WeatherTime() { Clock::replayBy(nullptr); }
        WeatherTime(const WeatherTime&) = delete;
        WeatherTime& operator=(const WeatherTime&) = delete;

        [[nodiscard]] const std::optional<ReplayClock>& replay() const { return m_clock; }

    private:
        std::optional<ReplayClock> m_clock;
    };

    const ServeOptions& m_options;
    WeatherTime m_time; ///< the rest asks it, in several threads
    ServerLog m_log;
    FileTime m_started;
    Level3Folder* m_level3 = nullptr;
    LiveSource* m_live = nullptr;
    // Each uses those above it.
    MapData m_maps;
    LayerStore m_layers;
    std::unique_ptr<LiveNetwork> m_network;
    std::unique_ptr<FrameSource> m_frames;
    ImageTree m_tree;
    Publisher m_publisher;
    std::vector<std::unique_ptr<Publisher>> m_sharpPublishers; ///< the coarsest first
    RememberedPage m_status;
    std::atomic<bool> m_isEnding = false;
    std::unique_ptr<TreeServer> m_server;
    std::unique_ptr<Level3Watch> m_watch;
    std::unique_ptr<PeriodicTask> m_publishing;
    std::unique_ptr<PeriodicTask> m_sharpPublishing;
};

} // namespace raincast
