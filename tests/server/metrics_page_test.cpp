// SPDX-License-Identifier: MIT
#include "server/metrics_page.h"
#include "server/metrics_text.h"

#include <QProcess>
#include <QStandardPaths>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const FileTime kNow = fromCalendar({2026, 11, 21, 18, 0});
constexpr int kDeadline = 60'000; // milliseconds

/// All that a server may have, with hostile texts.
class MetricsPageTest : public ::testing::Test {
protected:
    MetricsPageTest() {
        m_counts.note(RequestKind::frame, 200, 4711);
        m_counts.note(RequestKind::listing, 304, 0);
        m_measures.requests = &m_counts;
        m_measures.tree.frames = {12, 0.25};
        m_measures.tree.hits = 30;
        m_measures.tree.misses = 10;
        m_measures.products = SourceCounts{7, 2};
        m_measures.published = Publisher::Counts{100, 1, 3, kNow};
        m_status.source = SourceKind::live;
        m_status.started = kNow - kFileTimePerMinute;
        m_status.counts.emplace();
        m_status.counts->open = 5;
        m_status.live.emplace();
        m_status.live->wanted = {
            {"TLX",
             Product::baseReflectivity,
             kNow - 90 * kFileTimePerSecond,
             {},
             SourceState::ok}};
        LiveStatus::Host host;
        host.name = QStringLiteral("a \"quoted\" name\\");
        host.host = QStringLiteral("two\nlines");
        host.health.requests = 9;
        m_status.live->hosts = {host, host};
    }
    [[nodiscard]] std::string page() const {
        return metricsPage(m_status, m_measures, kNow).toStdString();
    }

    RequestCounts m_counts;
    ServerStatus m_status;
    ServerMeasures m_measures;
};

TEST_F(MetricsPageTest, HasWhatTheServerCounts) {
    const std::string page = this->page();
    for (const char* line : {
             "raincast_build_info{version=\"" RAINCAST_VERSION "\",source=\"live\"} 1\n",
             "raincast_ready 1\n",
             "raincast_http_requests_total{kind=\"frame\",status=\"200\"} 1\n",
             "raincast_http_requests_total{kind=\"listing\",status=\"304\"} 1\n",
             "raincast_http_sent_bytes_total{kind=\"frame\"} 4711\n",
             "raincast_http_connections 5\n",
             "raincast_http_connections_limit 64\n",
             "raincast_picture_making_seconds_sum{kind=\"frame\"} 0.25\n",
             "raincast_picture_making_seconds_count{kind=\"frame\"} 12\n",
             "raincast_memory_cache_requests_total{result=\"hit\"} 30\n",
             "raincast_memory_cache_requests_total{result=\"miss\"} 10\n",
             "raincast_products_read_total 7\n",
             "raincast_products_failed_total 2\n",
             "raincast_published_files_total 100\n",
             "raincast_publish_last_success_timestamp_seconds 1795284000\n",
             "raincast_live_wanted{state=\"ok\"} 1\n",
             "raincast_live_wanted{state=\"network\"} 0\n",
             "raincast_live_newest_age_seconds 90\n",
             "raincast_provider_requests_total{provider=\"a \\\"quoted\\\" name\\\\\","
             "host=\"two\\nlines\"} 9\n",
             "process_start_time_seconds 1795283940\n",
         }) {
        EXPECT_THAT(page, HasSubstr(line));
    }
    EXPECT_EQ(QString::fromStdString(page).count("\nraincast_provider_requests_total{"), 1)
        << "Prometheus takes no sample twice";
    EXPECT_THAT(page, HasSubstr("process_resident_memory_bytes "));
    EXPECT_THAT(page, Not(HasSubstr("process_open_fds 0\n")));
}

TEST_F(MetricsPageTest, LeavesOutWhatThereIsNot) {
    m_measures = {};
    m_status.live.reset();
    m_status.counts.reset();
    const std::string page = this->page();
    for (const char* name :
         {"raincast_http", "raincast_live", "raincast_publish", "raincast_provider",
          "raincast_products"}) {
        EXPECT_THAT(page, Not(HasSubstr(name)));
    }
    EXPECT_THAT(page, HasSubstr("raincast_ready 1\n"));
}

TEST_F(MetricsPageTest, PrometheusHasNothingToSayAgainstIt) {
    const QString promtool = QStandardPaths::findExecutable(QStringLiteral("promtool"));
    if (promtool.isEmpty()) {
        GTEST_SKIP() << "promtool is not installed";
    }
    for (const bool isWhole : {true, false}) {
        if (!isWhole) {
            m_measures = {};
            m_status.live.reset();
        }
        QProcess check;
        check.setProcessChannelMode(QProcess::MergedChannels);
        check.start(promtool, {QStringLiteral("check"), QStringLiteral("metrics")});
        check.write(QByteArray::fromStdString(page()));
        check.closeWriteChannel();
        ASSERT_TRUE(check.waitForFinished(kDeadline));
        EXPECT_EQ(check.exitCode(), 0);
        EXPECT_EQ(check.readAll().toStdString(), "");
    }
}

} // namespace
} // namespace raincast
