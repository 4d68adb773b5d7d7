// SPDX-License-Identifier: MIT
#include "server/metrics_page.h"

#include "server/metrics_text.h"
#include "server/readiness.h"

#include <QDir>
#include <QFile>

#include <sys/resource.h>
#include <unistd.h>

#include <map>
#include <set>

namespace raincast {

namespace {

constexpr auto kCounter = "counter";
constexpr auto kGauge = "gauge";

double seconds(FileTime span) {
    return static_cast<double>(span) / static_cast<double>(kFileTimePerSecond);
}

double sinceEpoch(FileTime time) {
    return seconds(time - kUnixEpoch);
}

QByteArray bytesOf(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

void addRequests(MetricsText& text, const RequestCounts& requests) {
    text.begin("raincast_http_requests_total", kCounter, "Requests that were answered.");
    for (const auto& [kind, status, answers] : requests.rows()) {
        text.add(
            answers, {{"kind", bytesOf(wordOf(kind))}, {"status", QByteArray::number(status)}}
        );
    }
    text.begin("raincast_http_sent_bytes_total", kCounter, "Bytes of the bodies of answers.");
    for (std::size_t i = 0; i < kRequestKinds; ++i) {
        const auto kind = static_cast<RequestKind>(i);
        text.add(requests.bytes(kind), {{"kind", bytesOf(wordOf(kind))}});
    }
}

void addConnections(MetricsText& text, const TreeServer::Counts& counts) {
    text.one("raincast_http_connections", kGauge, "Connections that are open.", counts.open);
    text.one(
        "raincast_http_connections_limit", kGauge, "The most connections at a time.",
        ConnectionLimits().connections
    );
    text.one(
        "raincast_http_refused_connections_total", kCounter,
        "Connections that were refused because all were taken.", counts.refused
    );
    text.one(
        "raincast_http_displaced_connections_total", kCounter,
        "Connections that made room for others.", counts.displaced
    );
}

void addPictures(MetricsText& text, const ImageTree::Counts& counts, qsizetype bytesInMemory) {
    text.begin(
        "raincast_picture_making_seconds", "summary",
        "How long pictures and texts took to make, in all threads together."
    );
    const std::pair<const char*, const ImageTree::Counts::Made*> kinds[] = {
        {"frame", &counts.frames}, {"warnings", &counts.warnings}, {"layer", &counts.layers}};
    for (const auto& [kind, made] : kinds) {
        text.add(made->seconds, {{"kind", kind}}, "_sum");
        text.add(made->pictures, {{"kind", kind}}, "_count");
    }
    text.one(
        "raincast_memory_cache_bytes", kGauge, "Bytes of answers that are kept in memory.",
        bytesInMemory
    );
    text.one(
        "raincast_memory_cache_limit_bytes", kGauge, "The most bytes that are kept in memory.",
        ImageTree::kMostBytesInMemory
    );
    text.begin(
        "raincast_memory_cache_requests_total", kCounter, "Answers that were sought in memory."
    );
    text.add(counts.hits, {{"result", "hit"}});
    text.add(counts.misses, {{"result", "miss"}});
}

void addProducts(MetricsText& text, const SourceCounts& counts) {
    text.one(
        "raincast_products_read_total", kCounter, "Level III products that were decoded.",
        counts.read
    );
    text.one(
        "raincast_products_failed_total", kCounter, "Level III products that could not be decoded.",
        counts.failed
    );
}

void addPublished(MetricsText& text, const Publisher::Counts& counts) {
    text.one(
        "raincast_published_files_total", kCounter, "Files that were published.", counts.written
    );
    text.one(
        "raincast_publish_failures_total", kCounter, "Files that could not be written.",
        counts.failed
    );
    text.one(
        "raincast_published_deletions_total", kCounter, "Frames that were deleted again.",
        counts.deleted
    );
    text.one(
        "raincast_publish_last_success_timestamp_seconds", kGauge,
        "When the published folder was up to date; 0: never.",
        counts.lastGood == 0 ? 0 : sinceEpoch(counts.lastGood)
    );
}

void addWanted(MetricsText& text, const LiveStatus& live, FileTime now) {
    std::map<SourceState, int> wanted;
    for (const LiveStatus::Wanted& one : live.wanted) {
        ++wanted[one.state];
    }
    text.begin("raincast_live_wanted", kGauge, "Products of sites that somebody looks at.");
    for (const SourceState state :
         {SourceState::ok, SourceState::noProduct, SourceState::radarDown, SourceState::provider,
          SourceState::network}) {
        text.add(wanted[state], {{"state", bytesOf(wordOf(state))}});
    }
    if (const auto age = newestAge(live, now)) {
        text.one(
            "raincast_live_newest_age_seconds", kGauge,
            "The age of the newest frame of all that is wanted.", seconds(*age)
        );
    }
    text.one(
        "raincast_live_reachable", kGauge, "Whether a provider of frames can be reached.",
        live.reachable ? 1 : 0
    );
}

void addProviders(MetricsText& text, const LiveStatus& live) {
    std::vector<const LiveStatus::Host*> hosts;
    std::set<std::pair<QString, QString>> known;
    for (const LiveStatus::Host& host : live.hosts) {
        if (known.emplace(host.name, host.host).second) { // one may give two things
            hosts.push_back(&host);
        }
    }
    const auto add = [&](const char* name, const char* type, const char* help, auto value) {
        text.begin(name, type, help);
        for (const LiveStatus::Host* const host : hosts) {
            text.add(
                value(*host), {{"provider", host->name.toUtf8()}, {"host", host->host.toUtf8()}}
            );
        }
    };
    add("raincast_provider_requests_total", kCounter, "Requests to a provider.",
        [](const LiveStatus::Host& host) { return host.health.requests; });
    add("raincast_provider_received_bytes_total", kCounter, "Bytes that a provider has sent.",
        [](const LiveStatus::Host& host) { return host.health.bytes; });
    add("raincast_provider_failures_running", kGauge, "Requests that failed one after the other.",
        [](const LiveStatus::Host& host) { return host.health.failures; });
    add("raincast_provider_resting", kGauge, "Whether a provider is given a rest.",
        [](const LiveStatus::Host& host) { return host.rests ? 1 : 0; });
}

/// Pages of the process's memory: all, and those in the machine's.
std::pair<qint64, qint64> memoryPages() {
    QFile file(QStringLiteral("/proc/self/statm"));
    const auto fields =
        file.open(QIODevice::ReadOnly) ? file.readAll().split(' ') : QList<QByteArray>();
    return {fields.value(0).toLongLong(), fields.value(1).toLongLong()};
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// The numbers that every program has, under the names that all of them use.
void addProcess(MetricsText& text, FileTime started) {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto [all, resident] = memoryPages();
    const qint64 page = sysconf(_SC_PAGESIZE);
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    const QDir open(QStringLiteral("/proc/self/fd"));
    text.one(
        "process_cpu_seconds_total", kCounter, "Processor time, user and system.",
        secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime)
    );
    text.one("process_resident_memory_bytes", kGauge, "Memory in use.", resident * page);
    text.one("process_virtual_memory_bytes", kGauge, "Memory that has addresses.", all * page);
    text.one(
        "process_open_fds", kGauge, "Open file descriptors.",
        open.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size()
    );
    text.one(
        "process_max_fds", kGauge, "The most file descriptors that may be open.", files.rlim_cur
    );
    text.one(
        "process_start_time_seconds", kGauge, "When the process started, since 1970.",
        sinceEpoch(started)
    );
}

} // namespace

QByteArray metricsPage(const ServerStatus& status, const ServerMeasures& measures, FileTime now) {
    MetricsText text;
    text.begin("raincast_build_info", kGauge, "The program and where its weather comes from.");
    text.add(1, {{"version", RAINCAST_VERSION}, {"source", wordOf(status.source).toUtf8()}});
    text.one(
        "raincast_ready", kGauge, "Whether the server should be asked.",
        whyNotReady(status, now).empty() ? 1 : 0
    );
    if (measures.requests != nullptr && status.counts) {
        addRequests(text, *measures.requests);
        addConnections(text, *status.counts);
    }
    addPictures(text, measures.tree, status.bytesInMemory);
    if (measures.products) {
        addProducts(text, *measures.products);
    }
    if (measures.published) {
        addPublished(text, *measures.published);
    }
    if (status.live) {
        addWanted(text, *status.live, now);
        addProviders(text, *status.live);
    }
    addProcess(text, status.started);
    return text.text();
}

} // namespace raincast
