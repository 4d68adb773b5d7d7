// SPDX-License-Identifier: MIT
// How many frames a second raincast-server hands out beside nginx, which serves the same tree as
// files, what a request costs it, and how much memory it takes: once every site and product has
// been asked for, and after thousands of requests at random.
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "radar/catalogue/tree_index.h"
#include "support/loopback.h"
#include "support/ratio.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace raincast;

constexpr int kConnections = 8;
constexpr int kRequestsPerConnection = 250;
constexpr int kDeadline = 600'000; // milliseconds
constexpr int kRandomRequests = 8'000;
constexpr double kAimMegabytes = 150;

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

void load(int port, const std::string& path, const std::string& more = {}) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kConnections; ++i) {
        threads.emplace_back([port, &path, &more] {
            Client client(port);
            for (int j = 0; j < kRequestsPerConnection; ++j) {
                client.ask(path, more);
            }
        });
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

/// "VmRSS" or "VmHWM" of a process, in megabytes.
double memoryOf(qint64 process, const char* field) {
    QFile file(QStringLiteral("/proc/%1/status").arg(process));
    if (!file.open(QIODevice::ReadOnly)) {
        fail("The server has ended.");
    }
    const QRegularExpression pattern(QString::fromLatin1(field) + QStringLiteral(":\\s+(\\d+)"));
    return pattern.match(QString::fromLatin1(file.readAll())).captured(1).toDouble() / 1024;
}

QByteArray readProcess(qint64 process, const char* name) {
    QFile file(QStringLiteral("/proc/%1/").arg(process) + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly)) {
        fail("The server has ended.");
    }
    return file.readAll();
}

/// Processor time that a process and its children have taken, in microseconds.
double processorTimeOf(qint64 process) {
    const QList<QByteArray> fields = readProcess(process, "stat").split(' ');
    const double ticks = fields.value(13).toDouble() + fields.value(14).toDouble();
    double time = 1e6 * ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
    const QByteArray children =
        readProcess(process, ("task/" + std::to_string(process) + "/children").c_str());
    for (const QByteArray& child : children.trimmed().split(' ')) {
        time += child.isEmpty() ? 0 : processorTimeOf(child.toLongLong());
    }
    return time;
}

/// What a request costs a server.
double costOf(const Program& server, int port, const std::string& path, const std::string& more) {
    constexpr int kTimes = 10;
    const double before = processorTimeOf(server.id());
    for (int i = 0; i < kTimes; ++i) {
        load(port, path, more);
    }
    constexpr double kRequests = kTimes * kConnections * kRequestsPerConnection;
    return (processorTimeOf(server.id()) - before) / kRequests;
}

struct Peer {
    const char* name;
    const Program& program;
    int port;
};

/// What a request costs each server, and how long its answer is.
void printCosts(
    const char* what, const std::string& path, const std::vector<Peer>& peers,
    std::string more = {}, bool isKnown = false
) {
    std::printf("%s:", what);
    for (const Peer& peer : peers) {
        if (isKnown) {
            const std::string answer = Client(peer.port).ask(path, {});
            const std::size_t at = answer.find("ETag: ") + 6;
            more = "If-None-Match: " + answer.substr(at, answer.find('\r', at) - at) + "\r\n";
        }
        const std::size_t bytes = Client(peer.port).ask(path, more).size();
        std::printf(
            " %s %.0f microseconds, %zu bytes;", peer.name,
            costOf(peer.program, peer.port, path, more), bytes
        );
    }
    std::printf("\n");
}

/// Asks once for the newest frame of every site and product.
void askForEverything(int port) {
    for (const RadarSite& site : radarSites()) {
        Client client(port); // a connection has a limit of requests
        for (const RadarProduct& product : radarProducts()) {
            const std::string folder = folderOf(site, product);
            client.get(newestFrame(folder, client.get(folder)));
        }
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

void askAtRandom(int port) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kConnections; ++i) {
        threads.emplace_back([port, i] {
            std::mt19937 random(static_cast<unsigned>(i));
            for (int asked = 0; asked < kRandomRequests / kConnections;) {
                Client client(port); // a connection has a limit of requests
                for (int j = 0; j < 100; ++j, ++asked) {
                    client.get(anyPath(client, random));
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace

int main() {
    const QTemporaryDir folder;
    const QString program = QStringLiteral(RAINCAST_SERVER_PROGRAM);
    const QStringList common{
        QStringLiteral("--cache"), folder.filePath(QStringLiteral("cache")),
        QStringLiteral("--hours"), QStringLiteral("1"), QStringLiteral("--quiet")};
    QProcess publisher;
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
    std::printf("A frame of %zu bytes\n", Client(port).get(frame).size());
    const Ratio ratio = ratioOf(
        9, [&] { load(port, frame); }, [&] { load(nginxPort, frame); }
    );
    constexpr double kRequests = kConnections * kRequestsPerConnection;
    std::printf(
        "Requests per second: raincast-server %.0f, nginx %.0f\n",
        1000 * kRequests / ratio.firstMilliseconds, 1000 * kRequests / ratio.secondMilliseconds
    );
    printRatio("raincast-server / nginx, time for a frame", ratio, 4);

    std::printf("Processor time and length of an answer\n");
    const Peer own{"raincast-server", server, port};
    const std::vector<Peer> both{own, {"nginx", nginx, nginxPort}};
    printCosts("a frame", frame, both);
    printCosts("a frame that is known", frame, both, {}, true);
    printCosts("a listing", listing, both);
    printCosts("a listing, packed", listing, {own}, "Accept-Encoding: gzip\r\n");
    printCosts("a listing that is known", listing, both, {}, true);
    const std::string warnings = "/ridge/Warnings/Short/TLX_Warnings_0";
    printCosts("the warnings' picture", warnings + ".gif", both);
    printCosts("their texts", warnings + ".json", both);
    printCosts("the status", "/status", {own});
    printCosts("the metrics", "/metrics", {own});
    printCosts("readiness", "/health/ready", {own});

    std::printf("Memory at first: %.0f MB\n", memoryOf(server.id(), "VmRSS"));
    askForEverything(port);
    std::printf(
        "Memory after the newest frames of 155 sites and 7 products: %.0f MB, at most %.0f MB\n",
        memoryOf(server.id(), "VmRSS"), memoryOf(server.id(), "VmHWM")
    );
    askAtRandom(port);
    std::printf(
        "Memory after %d requests at random: %.0f MB, at most %.0f MB (aim: at most %.0f MB)\n",
        kRandomRequests, memoryOf(server.id(), "VmRSS"), memoryOf(server.id(), "VmHWM"),
        kAimMegabytes
    );
}
