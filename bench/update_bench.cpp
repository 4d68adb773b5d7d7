// SPDX-License-Identifier: MIT
// What an update of 25 frames costs. Its downloads against curl fetching the same URLs over one
// connection from the same server: curl the program, as a user would run it, whose start costs some
// milliseconds, and bare libcurl within this process, which has nothing to start. Then the whole
// update, from listing to loaded frames, against bare libcurl and giflib's bare decoding.
#include "net/http_transfer.h"
#include "radar/catalogue/frame_name.h"
#include "radar/radar_update.h"
#include "support/fault_server.h"
#include "support/gif_maker.h"
#include "support/peer_servers.h"
#include "support/ratio.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <curl/curl.h>
#include <gif_lib.h>
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
constexpr int kMinutesApart = 10;
constexpr int kPairs = 60;
constexpr double kAim = 1.1;

void require(bool success, const char* what) {
    if (!success) {
        std::fprintf(stderr, "%s\n", what);
        std::exit(1);
    }
}

const QString kSite = QStringLiteral("MUX");
const QString kProduct = QStringLiteral("N0R");

QString frameName(int frame) {
    const FileTime newest = fromCalendar({2019, 5, 19, 5, 54});
    return frameFileName(kSite, newest - frame * kMinutesApart * kFileTimePerMinute, kProduct);
}

/// Rain in cells of a few pixels, another one in each frame, as compressible as published frames.
QByteArray frameBytes(int frame) {
    return makeGif({.screen = {600, 550}, .transparent = 0, .pixel = [frame](int column, int row) {
                        const int cell = (column / 4 * 31 + row / 4 * 17 + frame * 7) % 97;
                        return cell < 9 ? 1 + cell % 3 : 0;
                    }});
}

/// nginx where it is installed, otherwise a server of our own with the bodies in memory.
class FrameServer {
public:
    FrameServer() {
        const QString listing = listingDirectory(kSite, kProduct);
        QByteArray links;
        require(QDir().mkpath(m_folder.path() + listing), "The frames' folder could not be made.");
        for (int frame = 0; frame < kFrames; ++frame) {
            const QByteArray bytes = frameBytes(frame);
            m_bytes += bytes.size();
            QFile file(m_folder.path() + listing + frameName(frame));
            require(file.open(QIODevice::WriteOnly), "The frames could not be written.");
            file.write(bytes);
            m_own.on(listing + frameName(frame), answers::respond(200, bytes));
            links += '"' + frameName(frame).toLatin1() + '"';
        }
        m_own.on(listing, answers::respond(200, links));
        const bool nginx = !NginxServer::program().isEmpty();
        if (nginx) {
            m_nginx = std::make_unique<NginxServer>(m_folder.path());
            require(!m_nginx->host().isEmpty(), "nginx could not be started.");
        }
        std::printf(
            "%d frames of %lld bytes from %s\n", kFrames, static_cast<long long>(m_bytes / kFrames),
            nginx ? "nginx" : "a server in this process"
        );
    }

    [[nodiscard]] QString host() const { return m_nginx ? m_nginx->host() : m_own.host(); }

private:
    QTemporaryDir m_folder;
    qint64 m_bytes = 0;
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

/// A folder that was not used before: an update fetches only frames that are not there yet.
QString freshFolder(const QTemporaryDir& root) {
    static int runs = 0;
    const QString folder = root.filePath(QString::number(++runs));
    require(QDir().mkpath(folder), "A folder could not be created.");
    return folder;
}

std::vector<Download> downloads(const QString& host, const QTemporaryDir& root) {
    const QString folder = freshFolder(root);
    std::vector<Download> all;
    for (int frame = 0; frame < kFrames; ++frame) {
        const QString path = listingDirectory(kSite, kProduct) + frameName(frame);
        const QString local = folder + u'/' + frameName(frame);
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

class Silent : public RadarUpdateObserver {
public:
    void statusChanged(const QString& /*status*/) override {}
    void repaint() override {}
    void progress(int /*done*/, int /*wanted*/) override {}
};

void byUpdate(const QString& host, const QString& cache) {
    RadarState state;
    state.siteId = kSite;
    state.cacheFolder = cache;
    state.animate = true;
    state.frameCount = kFrames;
    state.frameInterval = kMinutesApart;
    state.showWarnings = false;
    Silent silent;
    CHttpTransfer transfer(host, true, false);
    require(RadarUpdate(state, silent).UpdateRadar(transfer), "The update failed.");
    require(state.frames.size() == kFrames, "The update did not get all frames.");
}

// As an update does, keeps all of them decoded at once.
void decodeBare(const std::vector<Download>& all) {
    std::vector<GifFileType*> gifs;
    for (const Download& one : all) {
        gifs.push_back(DGifOpenFileName(one.file.c_str(), nullptr));
        require(gifs.back() != nullptr && DGifSlurp(gifs.back()) == GIF_OK, "giflib failed.");
    }
    for (GifFileType* gif : gifs) {
        DGifCloseFile(gif, nullptr);
    }
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

    const auto update = [&] { byUpdate(host, freshFolder(folder)); };
    const auto bare = [&] {
        const std::vector<Download> all = downloads(host, folder);
        byBareLibcurl(all);
        decodeBare(all);
    };
    printRatio("UpdateRadar / bare libcurl and giflib", ratioOf(kPairs, update, bare), kAim);
    return 0;
}
