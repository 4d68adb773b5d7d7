// SPDX-License-Identifier: MIT
// Clients at four addresses do their worst to the program itself; another client is served
// meanwhile within a bound, and in the end the program has what it had before.
#include "support/loopback.h"
#include "support/raw_client.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <iostream>
#include <random>
#include <thread>

namespace raincast {
namespace {

using namespace std::chrono_literals;

constexpr int kDeadline = 120'000; // milliseconds
constexpr int kAttackers = 4;
constexpr auto kAttack = 700ms;
/// The longest that the good client waits for an answer, on a machine that is busy with other
/// tests.
constexpr auto kPatience = 5s;
constexpr double kMostMegabytes = 48; ///< that the program may grow by

using Kept = std::vector<RawClient>;

/// What a hostile client does, over and over: makes connections and keeps some of them. `turn`
/// counts.
struct Attack {
    const char* name;
    void (*act)(Kept& kept, int port, int from, unsigned turn);
};

RawClient& keep(Kept& kept, int port, int from, std::size_t most) {
    if (kept.size() >= most) {
        kept.erase(kept.begin());
    }
    return kept.emplace_back(port, from);
}

std::string noise(unsigned seed, int count) {
    std::minstd_rand random(seed + 1);
    std::string bytes;
    std::generate_n(std::back_inserter(bytes), count, [&] {
        return static_cast<char>(random() % 256);
    });
    return bytes;
}

const Attack kAttacks[] = {
    {"Silent", [](auto& kept, int port, int from, unsigned) { keep(kept, port, from, 100); }},
    {"SlowHeaders",
     [](Kept& kept, int port, int from, unsigned turn) {
         if (kept.size() < 60) {
             keep(kept, port, from, 60).send("GET / HTTP/1.1\r\n");
         }
         kept[turn % kept.size()].send("a");
     }},
    {"SlowBodies",
     [](Kept& kept, int port, int from, unsigned turn) {
         if (kept.size() < 60) {
             keep(kept, port, from, 60)
                 .send("POST /status HTTP/1.1\r\nContent-Length: 1000000000\r\n\r\n");
         }
         kept[turn % kept.size()].send("x");
     }},
    {"SlowReaders",
     [](Kept& kept, int port, int from, unsigned) {
         const RawClient& client = keep(kept, port, from, 60);
         client.bufferLittle();
         for (int i = 0; i < 20; ++i) {
             client.send("GET /status HTTP/1.1\r\n\r\n");
         }
     }},
    {"HugeRequestLines",
     [](Kept& kept, int port, int from, unsigned) {
         keep(kept, port, from, 8).send("GET /" + std::string(1'000'000, 'a'));
     }},
    {"HugeHeaders",
     [](Kept& kept, int port, int from, unsigned) {
         keep(kept, port, from, 8)
             .send("GET / HTTP/1.1\r\nX: " + std::string(1'000'000, 'b') + "\r\n\r\n");
     }},
    {"HugeBodies",
     [](Kept& kept, int port, int from, unsigned) {
         keep(kept, port, from, 8)
             .send(
                 "POST / HTTP/1.1\r\nContent-Length: 1000000\r\n\r\n" + std::string(1'000'000, 'c')
             );
     }},
    {"Noise", [](auto& kept, int port, int from, unsigned turn
              ) { keep(kept, port, from, 20).send(noise(turn, 2000) + "\r\n\r\n"); }},
    {"BrokenRequests",
     [](Kept& kept, int port, int from, unsigned turn) {
         static constexpr const char* kRequests[] = {
             "GET\r\n\r\n",
             "GET / HTTP/9.9\r\n\r\n",
             "GET / HTTP/1.1\r\nno colon\r\n\r\n",
             "GET /%00%ff%zz HTTP/1.1\r\n\r\n",
             "GET /../../../../etc/passwd HTTP/1.1\r\n\r\n",
             "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFFFFFF\r\n",
             "GET / HTTP/1.1\r\nRange: bytes=-1,0-,1-1,99999999999999999999-\r\n\r\n",
             "GET / HTTP/1.1\r\nIf-None-Match: \"\"\"\",,,W/\r\nAccept-Encoding: ;q=;;\r\n\r\n"};
         keep(kept, port, from, 20).send(kRequests[turn % std::size(kRequests)]);
     }},
    {"Pipelining",
     [](Kept& kept, int port, int from, unsigned) {
         std::string many;
         for (int i = 0; i < 2000; ++i) {
             many += "GET /ridge/RadarImg/N0R/TLX/ HTTP/1.1\r\n\r\n";
         }
         keep(kept, port, from, 4).send(many);
     }},
    {"HalfOpen",
     [](Kept& kept, int port, int from, unsigned turn) {
         const RawClient& client = keep(kept, port, from, 60);
         client.send(turn % 2 == 0 ? "GET /status HTTP/1.1\r\n\r\n" : "GET /sta");
         client.endSending();
     }},
    {"Resets",
     [](Kept& kept, int port, int from, unsigned) {
         const RawClient& client = keep(kept, port, from, 10);
         client.resetOnClose();
         client.send("GET /status HTTP/1.1\r\n\r\n");
     }},
    {"ThousandsOfConnections",
     [](Kept& kept, int port, int from, unsigned) {
         kept.clear();
         keep(kept, port, from, 1).send("GET /health/live HTTP/1.1\r\nConnection: close\r\n\r\n");
     }},
    {"ThousandsOfRequests",
     [](Kept& kept, int port, int from, unsigned) {
         const RawClient& client = keep(kept, port, from, 2);
         for (int i = 0; i < 500; ++i) {
             client.send("GET /health/live HTTP/1.1\r\n\r\n");
             if (client.readUntil("\r\n\r\n").empty()) {
                 return;
             }
         }
     }},
    {"PicturesOfAllSites",
     [](Kept& kept, int port, int from, unsigned turn) {
         static constexpr const char* kSites[] = {"TLX", "OKX", "LWX", "FTG", "MUX", "ATX", "AMX"};
         const std::string site = kSites[turn % std::size(kSites)];
         keep(kept, port, from, 20)
             .send("GET /ridge/Warnings/Short/" + site + "_Warnings_0.gif HTTP/1.1\r\n\r\n");
     }},
};

/// A client at an address of its own, which asks again and again as a viewer does.
class GoodClient {
public:
    explicit GoodClient(int port)
        : m_thread([this, port](const std::stop_token& stop) {
              while (!stop.stop_requested()) {
                  ask(port);
              }
          }) {}
    /// When its last question is answered.
    void end() {
        m_thread.request_stop();
        m_thread.join();
    }

    [[nodiscard]] int served() const { return m_served; }
    [[nodiscard]] int failed() const { return m_failed; }
    [[nodiscard]] std::chrono::milliseconds longest() const { return 1ms * m_longest.load(); }

private:
    void ask(int port) {
        QElapsedTimer timer;
        timer.start();
        const RawClient client(port, 99);
        client.send("GET /ridge/RadarImg/N0R/TLX/ HTTP/1.1\r\nConnection: close\r\n\r\n");
        const std::string answer = client.readAll();
        ++(answer.starts_with("HTTP/1.1 200") && answer.find("_N0R.gif") != std::string::npos
               ? m_served
               : m_failed);
        m_longest = std::max<int>(m_longest, static_cast<int>(timer.elapsed()));
        std::this_thread::sleep_for(10ms);
    }

    std::atomic<int> m_served = 0;
    std::atomic<int> m_failed = 0;
    std::atomic<int> m_longest = 0; ///< milliseconds
    std::jthread m_thread;
};

class HostileClientTest : public ::testing::TestWithParam<Attack> {
protected:
    HostileClientTest() {
        keepLoopbackFromProxies();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CACHE_HOME", m_folder.filePath("cache"));
        environment.insert(
            "ASAN_OPTIONS", "quarantine_size_mb=8"
        ); // it is no growth of the program
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(
            QStringLiteral(RAINCAST_SERVER_PROGRAM), {"--listen", "127.0.0.1:0", "--quiet"}
        );
        while (!m_process.canReadLine() && m_process.waitForReadyRead(kDeadline)) {
        }
        const QByteArray ready = m_process.readLine();
        m_port = ready.mid(ready.lastIndexOf(':') + 1).chopped(2).toInt();
    }
    ~HostileClientTest() override {
        m_process.kill();
        m_process.waitForFinished(kDeadline);
    }

    /// What is read once and kept, map data for one, counts as there before.
    void warmUp() const {
        const RawClient client(m_port, 100);
        client.send("GET /ridge/Warnings/Short/TLX_Warnings_0.gif HTTP/1.1\r\n\r\n"
                    "GET /ridge/Warnings/Short/OKX_Warnings_0.gif HTTP/1.1\r\n\r\n"
                    "GET /ridge/RadarImg/N0R/TLX/ HTTP/1.1\r\nConnection: close\r\n\r\n");
        EXPECT_THAT(client.readAll(), ::testing::HasSubstr("_N0R.gif"));
    }
    [[nodiscard]] double number(const char* name) const {
        const RawClient client(m_port, 100);
        client.send("GET /metrics HTTP/1.1\r\nConnection: close\r\n\r\n");
        const QString page = QString::fromStdString(client.readAll());
        const QRegularExpression line(QStringLiteral("\n%1 ([0-9.e+-]+)\n").arg(QLatin1String(name))
        );
        const auto match = line.match(page);
        EXPECT_TRUE(match.hasMatch()) << name;
        return match.captured(1).toDouble();
    }
    /// Of it alone, nobody else being connected. Each thread that makes pictures has one.
    [[nodiscard]] double descriptors() const {
        const QDeadlineTimer deadline(kDeadline);
        while (number("raincast_http_connections") > 1 && !deadline.hasExpired()) {
        }
        EXPECT_FALSE(deadline.hasExpired()) << "connections stay";
        const QDir threads(QStringLiteral("/proc/%1/task").arg(m_process.processId()));
        const auto count = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
        return number("process_open_fds") - static_cast<double>(count);
    }
    [[nodiscard]] double megabytes() const {
        return number("process_resident_memory_bytes") / (1024 * 1024);
    }

    QTemporaryDir m_folder;
    QProcess m_process;
    int m_port = 0;
};

TEST_P(HostileClientTest, TheOthersAreServed) {
    warmUp();
    const double descriptorsBefore = descriptors();
    const double megabytesBefore = megabytes();
    std::atomic<int> turns = 0;
    {
        std::vector<std::jthread> attackers;
        for (int from = 1; from <= kAttackers; ++from) {
            attackers.emplace_back([&, from](const std::stop_token& stop) {
                Kept kept;
                for (unsigned turn = 0; !stop.stop_requested(); ++turn, ++turns) {
                    GetParam().act(kept, m_port, from, turn);
                }
            });
        }
        GoodClient good(m_port);
        std::this_thread::sleep_for(kAttack);
        good.end();
        EXPECT_GT(good.served(), 0);
        EXPECT_EQ(good.failed(), 0);
        EXPECT_LT(good.longest(), kPatience);
        std::cout << turns << " attacks; " << good.served()
                  << " served meanwhile, the slowest after " << good.longest().count() << " ms\n";
    }
    EXPECT_EQ(m_process.state(), QProcess::Running);
    EXPECT_EQ(descriptors(), descriptorsBefore);
    EXPECT_LT(megabytes(), megabytesBefore + kMostMegabytes);
    m_process.terminate();
    EXPECT_TRUE(m_process.waitForFinished(kDeadline));
    EXPECT_EQ(m_process.exitCode(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, HostileClientTest, ::testing::ValuesIn(kAttacks),
    [](const auto& attack) { return std::string(attack.param.name); }
);

} // namespace
} // namespace raincast
