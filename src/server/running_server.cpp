// SPDX-License-Identifier: MIT
#include "server/running_server.h"

#include "core/clock.h"
#include "live/live_network.h"
#include "live/live_source.h"
#include "sample/sample_weather.h"
#include "server/home_page.h"
#include "server/level3_watch.h"
#include "server/metrics_page.h"
#include "server/readiness.h"
#include "server/tree_server.h"
#include "tree/level3_folder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QStandardPaths>

#include <algorithm>

namespace raincast {

namespace {

using namespace std::chrono_literals;

constexpr auto kPublish = 30s;
constexpr auto kPlainText = "text/plain; charset=utf-8";

QString cacheFolder(const ServeOptions& options) {
    return options.cacheFolder.isEmpty()
               ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                     QStringLiteral("/raincast-server")
               : options.cacheFolder;
}

/// Below the cache folder. Replays of one storm share theirs, whatever their speed.
QString liveFolder(const std::optional<Replay>& replay) {
    return replay ? QStringLiteral("/replay-") + folderTextOf(*replay) : QStringLiteral("/live");
}

QByteArray agentOf(const LiveOptions& options) {
    const QByteArray agent = "Raincast/" RAINCAST_VERSION;
    return options.contact.isEmpty() ? agent : agent + " (" + options.contact.toUtf8() + ')';
}

QByteArray addressOf(const std::optional<QString>& given, const char* usual) {
    return given ? given->toUtf8() : QByteArray(usual);
}

/// The store of frames that belongs to a folder of products.
QString storeFolder(const ServeOptions& options) {
    const QByteArray folder = QDir(options.level3Folder).absolutePath().toUtf8();
    return cacheFolder(options) + QStringLiteral("/frames-") +
           QString::fromLatin1(
               QCryptographicHash::hash(folder, QCryptographicHash::Sha1).toHex().left(12)
           );
}

} // namespace

RunningServer::WeatherTime::WeatherTime(const std::optional<Replay>& replay) {
    if (replay) {
        m_clock.emplace(*replay, Clock::real().now());
        Clock::replayBy(&*m_clock);
    }
}

RunningServer::RunningServer(const ServeOptions& options, ServerLog log)
    : m_options(options), m_time(options.live.replay), m_log(std::move(log)),
      m_started(Clock::real().now()), m_maps(MapDataFiles::find(options.roadsFile)),
      m_layers(m_maps, cacheFolder(options) + QStringLiteral("/layers")), m_frames(makeFrames()),
      m_tree(*m_frames, m_layers),
      m_publisher(
          m_tree, options.publishFolder, {options.publishSites, m_maps.files().stamp()}, m_log
      ),
      m_status([this] { return statusPage(statusOfNow(), *m_frames, m_maps); }) {
    logMissingData();
    addPages();
    if (!options.publishFolder.isEmpty()) {
        makeSharpPublishers();
    }
}

// What an earlier run published of other details would stay as it is for good.
void RunningServer::makeSharpPublishers() {
    for (const int detail : {2, 4}) {
        auto publisher = std::make_unique<Publisher>(
            m_tree, m_options.publishFolder,
            Publisher::What{m_options.publishSites, m_maps.files().stamp(), detail}, m_log
        );
        if (detail <= m_options.publishDetail) {
            m_sharpPublishers.push_back(std::move(publisher));
        } else {
            publisher->remove();
        }
    }
}

void RunningServer::addPages() {
    // A published page is among files, of which there may be no sharp ones.
    const int detail = m_options.publishFolder.isEmpty() ? 2 : m_options.publishDetail;
    const TreeBody home = homePage(m_maps, m_options.source, m_options.live.replay, detail);
    m_tree.addPage("/", [home] { return TreeAnswer{.body = home, .keeping = Keeping::askAgain}; });
    m_tree.addPage("/status", [this] {
        return TreeAnswer{m_status.get(), "application/json", Keeping::askAgain};
    });
    m_tree.addPage("/metrics", [this] {
        return TreeAnswer{
            metricsOfNow(), "text/plain; version=0.0.4; charset=utf-8", Keeping::never};
    });
    m_tree.addPage("/health/live", [] {
        return TreeAnswer{QByteArray("It runs.\n"), kPlainText, Keeping::never};
    });
    m_tree.addPage("/health/ready", [this] { return readinessOfNow(); });
}

RunningServer::~RunningServer() {
    if (m_live != nullptr) {
        m_live->close();
        m_network->stop();
    }
}

void RunningServer::logMissingData() const {
    for (const QString& line : m_maps.files().missing()) {
        m_log.warn(line);
    }
    if (!m_options.roadsFile.isEmpty() && !m_maps.hasRoads()) {
        m_log.warn(QStringLiteral("The highways layer is empty: %1 has no lines that can be read.")
                       .arg(m_options.roadsFile));
    }
}

bool RunningServer::listen() {
    m_server = std::make_unique<TreeServer>([this](std::string_view path, TreeAsker asker) {
        m_tree.ask(path, std::move(asker));
    });
    return m_server->start(m_options.listen->address, m_options.listen->port);
}

bool RunningServer::publishOnce() {
    if (m_level3 != nullptr) {
        m_level3->rescan();
    }
    return m_publisher.publish() && publishSharp({});
}

bool RunningServer::publishSharp(const std::stop_token& stop) {
    return std::all_of(
        m_sharpPublishers.begin(), m_sharpPublishers.end(),
        [&stop](const auto& publisher) { return publisher->publish(stop); }
    );
}

void RunningServer::work() {
    if (m_level3 != nullptr) {
        m_watch = std::make_unique<Level3Watch>(*m_level3, Level3Watch::Pace());
    }
    if (!m_options.publishFolder.isEmpty()) {
        publishAlways();
    }
}

// The log names the files that could not be written; the next turn tries again.
void RunningServer::publishAlways() {
    m_publishing =
        std::make_unique<PeriodicTask>(kPublish, 0ms, [this](const std::stop_token& stop) {
            static_cast<void>(m_publisher.publish(stop));
        });
    // In a thread of their own: the others do not wait for sharp pictures.
    if (!m_sharpPublishers.empty()) {
        m_sharpPublishing =
            std::make_unique<PeriodicTask>(kPublish, 0ms, [this](const std::stop_token& stop) {
                static_cast<void>(publishSharp(stop));
            });
    }
}

// The folder is up to date when its described tree is.
Publisher::Counts RunningServer::published() const {
    Publisher::Counts sum = m_publisher.counts();
    for (const auto& publisher : m_sharpPublishers) {
        const Publisher::Counts counts = publisher->counts();
        sum.written += counts.written;
        sum.failed += counts.failed;
        sum.deleted += counts.deleted;
    }
    return sum;
}

QString RunningServer::readyLine() const {
    const QString what = m_options.source == SourceKind::sample   ? QStringLiteral("sample weather")
                         : m_options.source == SourceKind::level3 ? m_options.level3Folder
                         : m_options.live.replay
                             ? QStringLiteral("a replay of %1").arg(textOf(*m_options.live.replay))
                             : QStringLiteral("live radar");
    if (!m_server) {
        return QStringLiteral("Publishing %1 in %2").arg(what, m_options.publishFolder);
    }
    const QString& address = m_options.listen->address;
    return QStringLiteral("Serving %1 at http://%2:%3/")
        .arg(what, address.contains(u':') ? u'[' + address + u']' : address)
        .arg(m_server->port());
}

std::unique_ptr<FrameSource> RunningServer::makeFrames() {
    if (m_options.source == SourceKind::sample) {
        return std::make_unique<SampleWeather>(m_options.hours);
    }
    if (m_options.source == SourceKind::live) {
        return makeLive();
    }
    auto folder = std::make_unique<Level3Folder>(
        m_options.level3Folder, storeFolder(m_options), m_options.hours, m_log
    );
    m_level3 = folder.get();
    return folder;
}

std::unique_ptr<FrameSource> RunningServer::makeLive() {
    const LiveOptions& options = m_options.live;
    m_network = std::make_unique<LiveNetwork>(agentOf(options));
    LiveSource::Settings settings;
    settings.replay = options.replay;
    settings.folder = cacheFolder(m_options) + liveFolder(options.replay);
    settings.hours = m_options.hours;
    settings.bucket = addressOf(options.frames, LiveSource::kBucket);
    // The ring has nothing that is older than a day.
    settings.ring = options.replay ? QByteArray() : addressOf(options.fallback, LiveSource::kRing);
    // One address stands for both of those who give warnings: their paths differ.
    settings.warnings = addressOf(options.warnings, LiveSource::kWarnings);
    settings.otherWarnings = addressOf(options.warnings, LiveSource::kOtherWarnings);
    auto live = std::make_unique<LiveSource>(settings, m_network->fetcher(), m_log, [this] {
        m_network->fetcher().wake();
    });
    m_live = live.get();
    m_network->start(*live);
    return live;
}

ServerStatus RunningServer::statusOfNow() const {
    ServerStatus status;
    status.source = m_options.source;
    status.started = m_started;
    status.bytesInMemory = m_tree.bytesInMemory();
    if (m_server) {
        status.counts = m_server->counts();
    }
    if (m_live != nullptr) {
        status.live = m_live->status();
        status.replay = m_time.replay();
    }
    status.isSourceReady = m_frames->isReady();
    status.isEnding = m_isEnding;
    return status;
}

QByteArray RunningServer::metricsOfNow() const {
    ServerMeasures measures;
    measures.requests = m_server ? &m_server->requests() : nullptr;
    measures.tree = m_tree.counts();
    measures.products = m_frames->counts();
    if (!m_options.publishFolder.isEmpty()) {
        measures.published = published();
    }
    return metricsPage(statusOfNow(), measures, Clock::current().now());
}

TreeAnswer RunningServer::readinessOfNow() const {
    const std::string_view reason = whyNotReady(statusOfNow(), Clock::current().now());
    const std::string text = reason.empty() ? "Ready.\n" : std::string(reason) + '\n';
    TreeAnswer answer{QByteArray::fromStdString(text), kPlainText, Keeping::never};
    answer.status = reason.empty() ? 200 : 503;
    return answer;
}

} // namespace raincast
