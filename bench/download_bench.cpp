// SPDX-License-Identifier: MIT
// How long the 25 downloads of an update take against curl fetching the same URLs over one
// connection from the same server: curl the program, as a user would run it, whose start costs some
// milliseconds, and bare libcurl within this process, which has nothing to start.
#include "net/http_transfer.h"
#include "support/fault_server.h"
#include "support/peer_servers.h"
#include "support/ratio.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <curl/curl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace raincast;

constexpr int kFrames = 25;
constexpr int kFrameBytes = 22'000;
constexpr int kPairs = 60;
constexpr double kAim = 1.1;

void require(bool success, const char* what) {
    if (!success) {
        std::fprintf(stderr, "%s\n", what);
        std::exit(1);
    }
}

QString frameName(int frame) {
    return QStringLiteral("MUX_20190519_%1_N0R.gif").arg(frame, 4, 10, QChar(u'0'));
}

QByteArray frameBytes(int frame) {
    QRandomGenerator random(static_cast<quint32>(frame));
    QByteArray bytes(kFrameBytes, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random.bounded(256));
    }
    return bytes;
}

/// nginx where it is installed, otherwise a server of our own with the bodies in memory.
class FrameServer {
public:
    FrameServer() {
        const bool nginx = !NginxServer::program().isEmpty();
        for (int frame = 0; frame < kFrames; ++frame) {
            const QString name = frameName(frame);
            if (nginx) {
                QFile file(m_folder.filePath(name));
                require(file.open(QIODevice::WriteOnly), "The frames could not be written.");
                file.write(frameBytes(frame));
            } else {
                m_own.on(u'/' + name, answers::respond(200, frameBytes(frame)));
            }
        }
        if (nginx) {
            m_nginx = std::make_unique<NginxServer>(m_folder.path());
            require(!m_nginx->host().isEmpty(), "nginx could not be started.");
        }
        std::printf(
            "%d frames of %d bytes from %s\n", kFrames, kFrameBytes,
            nginx ? "nginx" : "a server in this process"
        );
    }

    [[nodiscard]] QString host() const { return m_nginx ? m_nginx->host() : m_own.host(); }

private:
    QTemporaryDir m_folder;
    FaultServer m_own;
    std::unique_ptr<NginxServer> m_nginx;
};

/// One frame: where it comes from and where it goes.
struct Download {
    QString serverPath;
    QString localPath;
    std::string url;
    std::string file;
};

/// All frames, into a folder of their own: an update fetches only frames that are not there yet.
std::vector<Download> downloads(const QString& host, const QTemporaryDir& root) {
    static int runs = 0;
    const QString folder = root.filePath(QString::number(++runs));
    require(QDir().mkpath(folder), "A folder could not be created.");
    std::vector<Download> all;
    for (int frame = 0; frame < kFrames; ++frame) {
        const QString path = u'/' + frameName(frame);
        const QString local = folder + path;
        all.push_back({path, local, ("http://" + host + path).toStdString(), local.toStdString()});
    }
    return all;
}

void byTransfer(const QString& host, const std::vector<Download>& all) {
    CHttpTransfer transfer(host, true, false);
    for (const Download& one : all) {
        require(transfer.DownloadToFile(one.serverPath, one.localPath), "A download failed.");
    }
}

void byCurlProgram(const std::vector<Download>& all) {
    std::vector<std::string> words{"curl", "-s", "-f"};
    for (const Download& one : all) {
        words.insert(words.end(), {"-o", one.file, one.url});
    }
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    require(
        posix_spawnp(&child, "curl", nullptr, nullptr, arguments.data(), environ) == 0 &&
            waitpid(child, &status, 0) == child && status == 0,
        "curl failed."
    );
}

// libcurl writes to a FILE by itself when it is given no function.
void byBareLibcurl(const std::vector<Download>& all) {
    CURL* easy = curl_easy_init();
    curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
    for (const Download& one : all) {
        std::FILE* file = std::fopen(one.file.c_str(), "wb");
        require(file != nullptr, "A file could not be created.");
        curl_easy_setopt(easy, CURLOPT_URL, one.url.c_str());
        curl_easy_setopt(easy, CURLOPT_WRITEDATA, file);
        require(curl_easy_perform(easy) == CURLE_OK, "libcurl failed.");
        std::fclose(file);
    }
    curl_easy_cleanup(easy);
}

void checkFiles(const std::vector<Download>& all) {
    for (int frame = 0; frame < kFrames; ++frame) {
        QFile file(all[static_cast<std::size_t>(frame)].localPath);
        require(
            file.open(QIODevice::ReadOnly) && file.readAll() == frameBytes(frame),
            "A file differs from what was served."
        );
    }
}

} // namespace

int main() {
    const FrameServer server;
    const QTemporaryDir folder;
    const QString host = server.host();
    const auto ours = [&] { byTransfer(host, downloads(host, folder)); };
    const auto program = [&] { byCurlProgram(downloads(host, folder)); };
    const auto library = [&] { byBareLibcurl(downloads(host, folder)); };

    const std::vector<Download> sample = downloads(host, folder);
    byTransfer(host, sample);
    checkFiles(sample);
    printRatio("CHttpTransfer / curl, 25 downloads", ratioOf(kPairs, ours, program), kAim);
    printRatio("CHttpTransfer / bare libcurl, 25 downloads", ratioOf(kPairs, ours, library), kAim);
    return 0;
}
