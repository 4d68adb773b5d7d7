// SPDX-License-Identifier: MIT
// How many frames a second raincast-server hands out beside nginx, which serves the same tree as
// files, what a request costs it, and how much memory it takes: as more and more sites are asked
// for, and after requests at random, as many as the first argument says (500 unless told
// otherwise).
#include "process_cost.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "radar/catalogue/tree_index.h"
#include "support/figure.h"
#include "support/loopback.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace raincast;

constexpr int kConnections = 8;
constexpr int kRequestsPerConnection = 250;
constexpr int kDeadline = 600'000; // milliseconds
constexpr int kRandomRequests = 500;
// A request takes twice as long in one round as in the next, as threads come to share cores, and
// not in both of a pair: the ratio of a few pairs is chance.
constexpr int kPairs = 41;
constexpr int kPairsOfViewers = 15;
constexpr double kAimOfFrame = 15; // microseconds, here and below
constexpr double kAimOfListing = 30;
constexpr double kAimOfStatus = 50;
constexpr std::size_t kSites[] = {1, 10, 50, 155};
constexpr int kViewers[] = {1, 8, 16, 30}; // one address may have 32 connections
constexpr double kAimMegabytes = 150;
constexpr double kAimBesideNginx = 4;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

/// One kept-alive connection.
class Client {
public:
    explicit Client(int port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int yes = 1;
        setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        if (connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            fail("Cannot connect.");
        }
    }
    ~Client() { close(m_socket); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// The body of a path.
    std::string get(const std::string& path) {
        const std::string answer = ask(path, {});
        return answer.substr(answer.find("\r\n\r\n") + 4);
    }

    /// The whole answer to a request with more headers.
    std::string ask(const std::string& path, const std::string& more) {
        const std::string request =
            "GET " + path + " HTTP/1.1\r\nHost: localhost\r\n" + more + "\r\n";
        if (send(m_socket, request.data(), request.size(), MSG_NOSIGNAL) < 0) {
            fail("Cannot send.");
        }
        std::string answer;
        std::size_t headers = 0;
        while ((headers = answer.find("\r\n\r\n")) == std::string::npos) {
            receive(answer);
        }
        const auto length = answer.find("Content-Length: ");
        const bool isKnown = answer.starts_with("HTTP/1.1 304");
        if (!isKnown && (!answer.starts_with("HTTP/1.1 200") || length > headers)) {
            fail("A request was not answered.");
        }
        const std::size_t body = isKnown ? 0 : std::stoul(answer.substr(length + 16));
        while (answer.size() < headers + 4 + body) {
            receive(answer);
        }
        return answer;
    }

private:
    void receive(std::string& answer) {
        char piece[65536];
        const ssize_t count = recv(m_socket, piece, sizeof piece, 0);
        if (count <= 0) {
            fail("The connection ended.");
        }
        answer.append(piece, static_cast<std::size_t>(count));
    }

    int m_socket;
};

constexpr int kRequests = kConnections * kRequestsPerConnection;

/// As one viewer after the other would: a connection has a limit of requests.
void ask(int port, const std::string& path, const std::string& more, int times) {
    for (int asked = 0; asked < times;) {
        Client client(port);
        for (int i = 0; i < kRequestsPerConnection && asked < times; ++i, ++asked) {
            client.ask(path, more);
        }
    }
}

/// What one of several has to do, so that they do all of it together.
int shareOf(int all, int workers, int worker) {
    return all / workers + (worker < all % workers ? 1 : 0);
}

/// kRequests requests over so many connections at once.
void load(
    int port, const std::string& path, const std::string& more = {}, int connections = kConnections
) {
    std::vector<std::thread> threads;
    for (int i = 0; i < connections; ++i) {
        threads.emplace_back(ask, port, path, more, shareOf(kRequests, connections, i));
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// A free port, free for a moment only.
int freePort() {
    int port = 0;
    close(bindLoopback(-1, port));
    return port;
}

QByteArray nginxSettings(const QString& folder, int port) {
    return QStringLiteral(
               "daemon off; worker_processes auto; pid %1/nginx.pid; error_log %1/error.log;\n"
               "user root; events {}\n"
               "http { access_log off; types { image/gif gif; } keepalive_requests 100000;\n"
               "sendfile on; tcp_nopush on;\n"
               "client_body_temp_path %1/b; proxy_temp_path %1/p; fastcgi_temp_path %1/f;\n"
               "uwsgi_temp_path %1/u; scgi_temp_path %1/s;\n"
               "server { listen 127.0.0.1:%2; root %1/www; index index.html; } }\n"
    )
        .arg(folder)
        .arg(port)
        .toUtf8();
}

/// Stops a program at its end.
class Program {
public:
    Program(const QString& name, const QStringList& arguments) {
        process_cost::endWithUs(m_process);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(name, arguments);
        if (!m_process.waitForStarted()) {
            fail("A program cannot be started.");
        }
    }
    ~Program() {
        m_process.terminate();
        m_process.waitForFinished();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    QByteArray line() {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(kDeadline)) {
        }
        return m_process.readLine();
    }
    [[nodiscard]] qint64 id() const { return m_process.processId(); }

private:
    QProcess m_process;
};

std::string newestFrame(const std::string& folder, const std::string& listing) {
    static const QRegularExpression name(QStringLiteral("[A-Z]{3}_\\d{8}_\\d{4}_[A-Z0-9]{3}\\.gif")
    );
    std::string newest;
    auto names = name.globalMatch(QString::fromStdString(listing));
    while (names.hasNext()) {
        newest = names.next().captured().toStdString();
    }
    return newest.empty() ? std::string() : folder + newest;
}

std::string folderOf(const RadarSite& site, const RadarProduct& product) {
    return "/ridge/RadarImg/" + product.codeText().toString().toStdString() + "/" +
           site.idText().toString().toStdString() + "/";
}

struct Peer {
    const Program& program;
    int port;
};

/// Microseconds of processor time that a request costs a server.
double costOf(
    const Peer& server, const std::string& path, const std::string& more,
    int connections = kConnections
) {
    const double before = process_cost::processorMilliseconds(server.program.id());
    load(server.port, path, more, connections);
    return 1000 * (process_cost::processorMilliseconds(server.program.id()) - before) / kRequests;
}

/// What a server says a path's answer is known by.
std::string knownBy(const Peer& server, const std::string& path) {
    const std::string answer = Client(server.port).ask(path, {});
    const std::size_t at = answer.find("ETag: ") + 6;
    return "If-None-Match: " + answer.substr(at, answer.find('\r', at) - at) + "\r\n";
}

/// A request of the one server, and what it is measured beside.
struct Request {
    const char* what;
    std::string path;
    std::string peerName;
    std::string peerPath;
    double aim = 0; ///< microseconds; 0: none
    bool isKnown = false;
    std::string more{};
};

void measure(const Request& request, const Peer& own, const Peer& nginx) {
    const std::string more = request.isKnown ? knownBy(own, request.path) : request.more;
    const std::string nginxMore = request.isKnown ? knownBy(nginx, request.peerPath) : "";
    Figure figure = Figure::of(
        toldRatioOf(
            kPairs, [&] { return costOf(own, request.path, more); },
            [&] { return costOf(nginx, request.peerPath, nginxMore); }
        ),
        std::string("Server, ") + request.what + ": processor time", request.peerName
    );
    figure.unit = "µs";
    print(request.aim > 0 ? figure.withAim(AimOf::own, request.aim) : figure);
    std::printf(
        "    of %zu bytes, nginx's of %zu\n", Client(own.port).ask(request.path, more).size(),
        Client(nginx.port).ask(request.peerPath, nginxMore).size()
    );
}

/// Asked once a second, nothing is remembered from the time before.
void measureRareStatus(const Peer& own, const Peer& nginx, const std::string& listing) {
    constexpr int kTimes = 8;
    Client client(own.port);
    const auto rare = [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(1050));
        const double before = process_cost::processorMilliseconds(own.program.id());
        client.get("/status");
        return 1000 * (process_cost::processorMilliseconds(own.program.id()) - before);
    };
    Figure figure = Figure::of(
        toldRatioOf(kTimes, rare, [&] { return costOf(nginx, listing, {}); }),
        "Server, /status once a second: processor time", "nginx and a listing"
    );
    figure.unit = "µs";
    print(figure.withAim(AimOf::own, kAimOfStatus));
}

void measureViewers(const Peer& own, const Peer& nginx, const std::string& frame) {
    for (const int viewers : kViewers) {
        const Ratio ratio = toldRatioOf(
            kPairsOfViewers, [&] { return costOf(own, frame, {}, viewers); },
            [&] { return costOf(nginx, frame, {}, viewers); }
        );
        print(CurvePoint{
            "Server, a frame's processor time", "viewers at once", double(viewers), "µs",
            ratio.firstMilliseconds, "nginx", ratio.secondMilliseconds});
    }
}

/// Asks once for the newest frame of so many sites.
void askForSites(int port, std::size_t sites) {
    for (const RadarSite& site : std::span(radarSites()).first(sites)) {
        Client client(port); // a connection has a limit of requests
        const std::string folder = folderOf(site, radarProducts()[0]);
        client.get(newestFrame(folder, client.get(folder)));
    }
}

template<class Values>
const auto& anyOf(const Values& values, std::mt19937& random) {
    return values[std::uniform_int_distribution<std::size_t>(0, values.size() - 1)(random)];
}

/// The path itself, or in one case of eight that of a sharp picture, if there is one.
std::string atAnyDetail(const std::string& path, std::mt19937& random) {
    const auto sharp = sharpPath(path, random() % 2 == 0 ? 2 : 4);
    return random() % 8 == 0 && sharp && findTreeItem(*sharp) ? *sharp : path;
}

/// A frame of any age in two cases of three, else the present warnings, a layer or a world file.
std::string anyPath(Client& client, std::mt19937& random) {
    if (random() % 3 == 0) {
        return atAnyDetail(anyOf(standingPaths(), random), random);
    }
    const std::string folder = pathOf(anyOf(allFrameFolders(), random));
    static const QRegularExpression name(QStringLiteral("\"([A-Z]{3}_\\d{8}_\\d{4}_\\w{3}\\.gif)\"")
    );
    std::vector<std::string> names;
    auto found = name.globalMatch(QString::fromStdString(client.get(folder)));
    while (found.hasNext()) {
        names.push_back(found.next().captured(1).toStdString());
    }
    return names.empty() ? folder : atAnyDetail(folder + anyOf(names, random), random);
}

void askAtRandom(int port, int requests) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kConnections; ++i) {
        threads.emplace_back([port, i, share = shareOf(requests, kConnections, i)] {
            std::mt19937 random(static_cast<unsigned>(i));
            for (int asked = 0; asked < share;) {
                Client client(port); // a connection has a limit of requests
                for (int j = 0; j < 100 && asked < share; ++j, ++asked) {
                    client.get(anyPath(client, random));
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void measureMemory(const Peer& own, int randomRequests) {
    const auto resident = [&own] { return process_cost::memoryOf(own.program.id()).resident; };
    for (const std::size_t sites : kSites) {
        askForSites(own.port, sites);
        print(CurvePoint{"Server, memory", "sites asked for", double(sites), "MiB", resident()});
    }
    askAtRandom(own.port, randomRequests);
    Figure figure{.what = "Server, memory after requests at random", .unit = "MiB"};
    figure.own = resident();
    print(figure.withAim(AimOf::own, kAimMegabytes));
}

} // namespace

int main(int argc, char** argv) {
    const int randomRequests = argc > 1 ? std::atoi(argv[1]) : kRandomRequests;
    const QTemporaryDir folder;
    const QString program = QStringLiteral(RAINCAST_SERVER_PROGRAM);
    const QStringList common{
        QStringLiteral("--cache"), folder.filePath(QStringLiteral("cache")),
        QStringLiteral("--hours"), QStringLiteral("1"), QStringLiteral("--quiet")};
    QProcess publisher;
    process_cost::endWithUs(publisher);
    publisher.start(
        program, common +
                     QStringList{
                         QStringLiteral("--once"), QStringLiteral("--sites"), QStringLiteral("TLX"),
                         QStringLiteral("--publish"), folder.filePath(QStringLiteral("www"))}
    );
    if (!publisher.waitForFinished(kDeadline) || publisher.exitCode() != 0) {
        fail("The tree cannot be published.");
    }

    Program server(
        program, common + QStringList{QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0")}
    );
    const QByteArray ready = server.line();
    const int port = ready.mid(ready.lastIndexOf(':') + 1).chopped(2).toInt();

    const int nginxPort = freePort();
    QFile settings(folder.filePath(QStringLiteral("nginx.conf")));
    if (!settings.open(QIODevice::WriteOnly)) {
        fail("The settings cannot be written.");
    }
    settings.write(nginxSettings(folder.path(), nginxPort));
    settings.close();
    const Program nginx(
        QStringLiteral("/usr/sbin/nginx"), {QStringLiteral("-c"), settings.fileName()}
    );

    const std::string listing = "/ridge/RadarImg/N0R/TLX/";
    const std::string frame = newestFrame(listing, Client(port).get(listing));
    const Peer own{server, port};
    const Peer nginxPeer{nginx, nginxPort};
    const Ratio ratio = ratioOf(
        9, [&] { load(port, frame); }, [&] { load(nginxPort, frame); }
    );
    print(Figure::of(ratio, "Server, 2000 frames over 8 connections", "nginx")
              .withAim(AimOf::ratio, kAimBesideNginx));

    const std::string warnings = "/ridge/Warnings/Short/TLX_Warnings_0";
    const std::string nginxListing = "nginx and a listing";
    const std::vector<Request> requests{
        {"a frame", frame, "nginx", frame, kAimOfFrame},
        {"a frame that is known", frame, "nginx", frame, 0, true},
        {"a listing", listing, "nginx", listing, kAimOfListing},
        {"a listing, packed", listing, nginxListing, listing, 0, false,
         "Accept-Encoding: gzip\r\n"},
        {"a listing that is known", listing, "nginx", listing, 0, true},
        {"the warnings' picture", warnings + ".gif", "nginx", warnings + ".gif"},
        {"the warnings' texts", warnings + ".json", "nginx", warnings + ".json"},
        {"/status", "/status", nginxListing, listing, kAimOfStatus},
        {"/metrics", "/metrics", nginxListing, listing},
        {"/health/ready", "/health/ready", nginxListing, listing},
    };
    for (const Request& request : requests) {
        measure(request, own, nginxPeer);
    }
    measureRareStatus(own, nginxPeer, listing);
    measureViewers(own, nginxPeer, frame);
    measureMemory(own, randomRequests);
    return 0;
}
