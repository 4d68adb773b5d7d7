// SPDX-License-Identifier: MIT
#include "live/live_source.h"

#include "core/clock.h"
#include "core/utc_date_time.h"
#include "live/live_plan.h"
#include "live/live_warnings.h"
#include "nexrad/frame_painter.h"
#include "nexrad/level3_decoder.h"
#include "provider/past_bucket.h"
#include "provider/s3_bucket.h"
#include "provider/tgftp.h"

#include <QRandomGenerator>

#include <algorithm>
#include <atomic>
#include <limits>

namespace raincast {

namespace {

constexpr FileTime kCleanAfter = 10 * kFileTimePerMinute;
constexpr FileTime kNever = std::numeric_limits<FileTime>::max();

// Of the weather.
FileTime now() {
    return Clock::current().now();
}

// Of the world: nobody waits longer because the weather is slow.
FileTime worldNow() {
    return Clock::real().now();
}

FileTime worldTimeOf(FileTime time) {
    return time == kNever ? kNever : worldNow() + Clock::current().until(time);
}

QString textOf(FileTime time) {
    return utcDateTime(time).toString(QStringLiteral("yyyy-MM-dd HH:mm 'UTC'"));
}

QString textOf(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

/// Whether something is due that is done at an interval; it is done then.
bool isTime(FileTime& due, FileTime interval) {
    const bool isDue = hasCome(due, interval, worldNow());
    due = isDue ? worldNow() + interval : due;
    return isDue;
}

std::unique_ptr<Provider> bucketOf(const LiveSource::Settings& settings, PoliteFetcher& polite) {
    if (settings.bucket.isEmpty()) {
        return nullptr;
    }
    auto bucket = std::make_unique<S3Bucket>(polite, settings.bucket);
    if (!settings.replay) {
        return bucket;
    }
    return std::make_unique<PastBucket>(std::move(bucket));
}

double anyPart() {
    return QRandomGenerator::global()->generateDouble();
}

} // namespace

/// All that lies behind one lock.
class LiveSource::Engine {
public:
    Engine(const Settings& settings, Fetcher& fetcher, ServerLog log, std::function<void()> wake)
        : m_log(std::move(log)), m_wake(std::move(wake)), m_polite(fetcher, anyPart),
          m_store(settings.folder, settings.hours, m_log),
          m_feeds(
              bucketOf(settings, m_polite),
              settings.ring.isEmpty() ? nullptr : std::make_unique<Tgftp>(m_polite, settings.ring),
              m_store
          ),
          m_warnings(m_polite, settings.warnings, settings.otherWarnings, settings.replay) {}

    FileTime turn();
    void close();
    LiveStatus status();
    void
    prepare(std::string_view site, Product product, std::optional<FileTime> minute, Ready ready);
    void prepareWarnings(Ready ready);
    std::vector<WeatherWarning> warnings(FileTime time);
    std::vector<FileTime> frameTimes(std::string_view site, Product product, FileTime upTo);
    std::optional<QByteArray>
    frame(std::string_view site, Product product, FileTime minute, int detail);
    FrameStamp stamp(std::string_view site, Product product, FileTime minute);
    SourceState state(std::string_view site, Product product);
    [[nodiscard]] SourceCounts counts() const { return {m_read, m_failed}; }

private:
    /// Somebody who waits for a listing, for a frame, or (without a series) for warnings.
    struct Waiter {
        LiveSeries* series;
        std::optional<FileTime> minute;
        FileTime since; ///< by the world's clock
        Ready ready;
    };

    LiveSeries& seriesOf(std::string_view site, Product product);
    bool isWaiting(const Waiter& waiter);
    void wait(Waiter waiter, std::unique_lock<std::mutex>& lock);
    std::vector<Ready> takeReady();
    FileTime pursueWanted();
    void logChanges();
    std::optional<PolarScan> scanOf(const LiveObject& object, Product product);
    void lose(const LiveObject& object, LiveFeed::Loss loss);

    ServerLog m_log;
    std::atomic<std::uint64_t> m_read = 0;
    std::atomic<std::uint64_t> m_failed = 0;
    std::function<void()> m_wake;
    std::mutex m_mutex; ///< of what follows, but for the store, which has its own
    PoliteFetcher m_polite;
    LiveStore m_store;
    LiveFeeds m_feeds;
    LiveWarnings m_warnings;
    std::map<std::pair<std::string, Product>, LiveSeries> m_series;
    std::vector<Waiter> m_waiters;
    FileTime m_logAt = 0;
    FileTime m_forgetAt = 0;
    FileTime m_cleanAt = 0;
    bool m_isClosed = false;
    bool m_hasNetwork = true;                               ///< as it was logged
    std::map<const Provider*, bool> m_isDown;               ///< as it was logged
    std::map<const LiveSeries*, SourceState> m_loggedState; ///< the same
};

LiveSeries& LiveSource::Engine::seriesOf(std::string_view site, Product product) {
    const std::pair key{std::string(site), product};
    return m_series.try_emplace(key, m_feeds, key.first, product).first->second;
}

FileTime LiveSource::Engine::turn() {
    std::vector<Ready> ready;
    FileTime next = kNever;
    bool isCleaning = false;
    {
        const std::lock_guard lock(m_mutex);
        static_cast<void>(m_polite.turn());
        const FileTime due = worldTimeOf(pursueWanted());
        ready = takeReady();
        next = std::min(due, m_polite.turn());
        for (const Waiter& waiter : m_waiters) {
            for (const FileTime most : {kWarmWait, kColdWait, kFrameWait}) {
                next =
                    waiter.since + most > worldNow() ? std::min(next, waiter.since + most) : next;
            }
        }
        if (isTime(m_logAt, kFileTimePerSecond)) {
            logChanges();
        }
        if (isTime(m_forgetAt, kFileTimePerMinute)) {
            m_feeds.forgetOld();
        }
        isCleaning = isTime(m_cleanAt, kCleanAfter);
    }
    if (isCleaning) {
        m_store.clean(); // nobody has to wait for it
    }
    for (const Ready& one : ready) {
        one();
    }
    return next;
}

// Asks for what is due of all that is wanted; when the next of it is.
FileTime LiveSource::Engine::pursueWanted() {
    static_cast<void>(m_warnings.pursue());
    FileTime next = m_warnings.due();
    std::vector<std::pair<std::string, FileTime>> witnesses;
    for (auto& [key, series] : m_series) {
        if (series.isWanted()) {
            series.pursue();
            next = std::min(next, series.due());
            if (series.needsWitness()) {
                witnesses.emplace_back(series.site(), series.wantedAt());
            }
        }
    }
    for (const auto& [site, wantedAt] : witnesses) {
        LiveSeries& witness = seriesOf(site, Product::baseReflectivity);
        witness.want(wantedAt);
        witness.pursue();
        next = std::min(next, witness.due());
    }
    return next;
}

bool LiveSource::Engine::isWaiting(const Waiter& waiter) {
    const FileTime waited = worldNow() - waiter.since;
    if (m_isClosed || waited < 0) { // the clock went back
        return false;
    }
    if (waiter.series == nullptr) {
        return m_warnings.pursue() && waited < (m_warnings.isKnown() ? kWarmWait : kColdWait);
    }
    LiveSeries& series = *waiter.series;
    if (!waiter.minute) {
        const bool isPending = series.pursue();
        return isPending && waited < (series.newest() == 0 ? kColdWait : kWarmWait);
    }
    const auto minutes = series.minutes();
    const bool isKnown = std::binary_search(minutes.begin(), minutes.end(), *waiter.minute);
    const bool isPending = isKnown ? series.pursueFrame(*waiter.minute) : series.pursue();
    return isPending && waited < (isKnown ? kFrameWait : kColdWait);
}

void LiveSource::Engine::close() {
    std::vector<Ready> ready;
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        ready = takeReady();
    }
    for (const Ready& one : ready) {
        one();
    }
}

std::vector<FrameSource::Ready> LiveSource::Engine::takeReady() {
    std::vector<Ready> ready;
    std::vector<Waiter> waiting;
    for (Waiter& waiter : m_waiters) {
        if (isWaiting(waiter)) {
            waiting.push_back(std::move(waiter));
        } else {
            ready.push_back(std::move(waiter.ready));
        }
    }
    m_waiters = std::move(waiting);
    return ready;
}

void LiveSource::Engine::prepare(
    std::string_view site, Product product, std::optional<FileTime> minute, Ready ready
) {
    if (findAntenna(site) == nullptr) {
        return ready();
    }
    std::unique_lock lock(m_mutex);
    LiveSeries& series = seriesOf(site, product);
    series.want(now());
    wait({&series, minute, worldNow(), std::move(ready)}, lock);
}

void LiveSource::Engine::prepareWarnings(Ready ready) {
    std::unique_lock lock(m_mutex);
    m_warnings.want(now());
    wait({nullptr, std::nullopt, worldNow(), std::move(ready)}, lock);
}

// Lets somebody wait if there is something to wait for.
void LiveSource::Engine::wait(Waiter waiter, std::unique_lock<std::mutex>& lock) {
    const bool isReady = !isWaiting(waiter);
    Ready ready;
    if (isReady) {
        ready = std::move(waiter.ready);
    } else {
        m_waiters.push_back(std::move(waiter));
    }
    lock.unlock();
    m_wake();
    if (ready) {
        ready();
    }
}

std::vector<WeatherWarning> LiveSource::Engine::warnings(FileTime time) {
    const std::lock_guard lock(m_mutex);
    return m_warnings.at(time);
}

std::vector<FileTime>
LiveSource::Engine::frameTimes(std::string_view site, Product product, FileTime upTo) {
    const std::lock_guard lock(m_mutex);
    // Not by seriesOf(): a question about all sites must not make any.
    const auto found = m_series.find({std::string(site), product});
    auto times = found != m_series.end() ? found->second.minutes()
                 : findAntenna(site) != nullptr
                     ? LiveSeries(m_feeds, std::string(site), product).minutes()
                     : std::vector<FileTime>();
    times.erase(std::upper_bound(times.begin(), times.end(), upTo), times.end());
    return times;
}

std::optional<PolarScan> LiveSource::Engine::scanOf(const LiveObject& object, Product product) {
    const auto bytes = m_store.read(object);
    if (!bytes) {
        lose(object, LiveFeed::Loss::gone);
        return std::nullopt;
    }
    auto scan = decodeLevel3(*bytes);
    QString problem = scan ? QString() : scan.error();
    if (scan) {
        const auto products = publishedAs(*scan);
        if (std::find(products.begin(), products.end(), product) == products.end()) {
            problem = QStringLiteral("it is no %1").arg(textOf(codeOf(product)));
        }
    }
    ++(problem.isEmpty() ? m_read : m_failed);
    if (!problem.isEmpty()) {
        m_log.warn(
            QString::fromStdString(keyOf(object.name, object.time)) + QStringLiteral(": ") + problem
        );
        lose(object, LiveFeed::Loss::useless);
        return std::nullopt;
    }
    return std::move(*scan);
}

// Forgets bytes that the store does not have or that cannot be shown.
void LiveSource::Engine::lose(const LiveObject& object, LiveFeed::Loss loss) {
    const std::lock_guard lock(m_mutex);
    for (Provider* const provider : m_feeds.providers()) {
        LiveFeed& feed = m_feeds.feed(*provider, object.name);
        const auto kept = feed.kept(object.minute());
        if (kept && kept->etag == object.etag) {
            feed.lose(object.minute(), loss);
        }
    }
}

std::optional<QByteArray>
LiveSource::Engine::frame(std::string_view site, Product product, FileTime minute, int detail) {
    std::vector<LiveObject> objects;
    const AntennaPosition* antenna = findAntenna(site);
    if (antenna == nullptr) {
        return std::nullopt;
    }
    {
        const std::lock_guard lock(m_mutex);
        for (const LiveFeed* const feed : seriesOf(site, product).keptBy(minute)) {
            objects.push_back(*feed->kept(minute));
        }
    }
    if (const ClosedSite* const closed = findClosedSite(site, now())) {
        antenna = &closed->follower;
    }
    const ImageGeometry image(antenna->latitude, antenna->longitude, rangeOf(product), detail);
    for (const LiveObject& object : objects) {
        if (const auto scan = scanOf(object, product)) {
            return renderFrame(*scan, product, image);
        }
    }
    return std::nullopt;
}

FrameStamp LiveSource::Engine::stamp(std::string_view site, Product product, FileTime minute) {
    const std::lock_guard lock(m_mutex);
    return seriesOf(site, product).stamp(minute);
}

SourceState LiveSource::Engine::state(std::string_view site, Product product) {
    const std::lock_guard lock(m_mutex);
    return seriesOf(site, product).state();
}

// Says what has changed, once.
void LiveSource::Engine::logChanges() {
    for (Provider* const provider : m_feeds.providers()) {
        const HostHealth& health = provider->health();
        const bool isDown = health.failures >= PoliteFetcher::kFailuresToRest;
        if (std::exchange(m_isDown[provider], isDown) != isDown) {
            if (isDown) {
                m_log.warn(
                    QStringLiteral("%1 does not answer: %2.").arg(provider->host(), health.problem)
                );
            } else {
                m_log(QStringLiteral("%1 answers again.").arg(provider->host()));
            }
        }
    }
    bool hasNetwork = true;
    for (auto& [key, series] : m_series) {
        if (!series.isWanted()) {
            continue;
        }
        const SourceState state = series.state();
        hasNetwork = hasNetwork && state != SourceState::network;
        if (std::exchange(m_loggedState[&series], state) == state) {
            continue;
        }
        const QString what = textOf(key.first) + u' ' + textOf(codeOf(key.second));
        if (state == SourceState::noProduct) {
            m_log(what + QStringLiteral(": this radar makes no such product."));
        } else if (state == SourceState::radarDown) {
            m_log.warn(
                what + QStringLiteral(": the radar itself is down; its newest volume is of %1.")
                           .arg(textOf(m_feeds.newestOf(series.radar())))
            );
        }
    }
    if (std::exchange(m_hasNetwork, hasNetwork) && !hasNetwork) {
        m_log.warn(QStringLiteral("This machine has no network."));
    }
}

LiveStatus LiveSource::Engine::status() {
    const std::lock_guard lock(m_mutex);
    LiveStatus status;
    bool isOneHopeful = false;
    bool isOneAsked = false;
    for (Provider* const provider : m_feeds.providers()) {
        const HostHealth& health = provider->health();
        status.hosts.push_back({provider->name(), provider->host(), health, provider->rests()});
        isOneAsked = isOneAsked || health.requests > 0;
        // A slow one may answer yet.
        isOneHopeful =
            isOneHopeful || health.isReached || (health.requests > 0 && health.answers == 0);
    }
    status.reachable = isOneHopeful || !isOneAsked;
    for (const QByteArray& host : m_warnings.hosts()) {
        status.hosts.push_back(
            {QStringLiteral("warnings"), QString::fromUtf8(host), m_polite.health(host),
             m_polite.rests(host)}
        );
    }
    for (auto& [key, series] : m_series) {
        if (series.isWanted()) {
            const LiveFeed* const feed = series.newestFeed();
            status.wanted.push_back(
                {key.first, key.second, series.newest(),
                 feed == nullptr ? QString() : feed->provider().name(), series.state()}
            );
        }
    }
    return status;
}

LiveSource::LiveSource(
    const Settings& settings, Fetcher& fetcher, ServerLog log, std::function<void()> wake
)
    : m_engine(std::make_unique<Engine>(settings, fetcher, std::move(log), std::move(wake))) {}

LiveSource::~LiveSource() = default;

FileTime LiveSource::turn() {
    return m_engine->turn();
}

void LiveSource::close() {
    m_engine->close();
}

LiveStatus LiveSource::status() const {
    return m_engine->status();
}

void LiveSource::prepareTimes(std::string_view site, Product product, Ready ready) const {
    m_engine->prepare(site, product, std::nullopt, std::move(ready));
}

void LiveSource::prepareFrame(std::string_view site, Product product, FileTime time, Ready ready)
    const {
    m_engine->prepare(site, product, time, std::move(ready));
}

void LiveSource::prepareWarnings(Ready ready) const {
    m_engine->prepareWarnings(std::move(ready));
}

std::vector<FileTime>
LiveSource::frameTimes(std::string_view site, Product product, FileTime upTo) const {
    return m_engine->frameTimes(site, product, upTo);
}

std::optional<QByteArray>
LiveSource::frame(std::string_view site, Product product, FileTime time) const {
    return m_engine->frame(site, product, time, 1);
}

std::optional<QByteArray>
LiveSource::sharpFrame(std::string_view site, Product product, FileTime time, int detail) const {
    return m_engine->frame(site, product, time, detail);
}

FrameStamp LiveSource::stamp(std::string_view site, Product product, FileTime time) const {
    return m_engine->stamp(site, product, time);
}

SourceState LiveSource::state(std::string_view site, Product product) const {
    return m_engine->state(site, product);
}

std::optional<SourceCounts> LiveSource::counts() const {
    return m_engine->counts();
}

const AntennaPosition* LiveSource::antenna(std::string_view site) const {
    const ClosedSite* const closed = findClosedSite(site, now());
    return closed == nullptr ? findAntenna(site) : &closed->follower;
}

// Of the whole country: who draws them cuts them off.
WeatherWarnings LiveSource::warnings(std::string_view, Range, FileTime time) const {
    return {m_engine->warnings(time), false};
}

} // namespace raincast
