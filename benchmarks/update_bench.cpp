// SPDX-License-Identifier: MIT
// What an update of 25 frames costs: against curl fetching the same URLs over one connection from a
// server that is 100 ms away; on loopback, from listing to loaded frames, against bare libcurl and
// giflib's bare decoding; and for how long the viewer's event loop is held at most while an item on
// a large screen updates.
#include "core/mailbox.h"
#include "image/image_file.h"
#include "net/http_transfer.h"
#include "page/item.h"
#include "page/page_display.h"
#include "radar/catalogue/frame_name.h"
#include "radar/radar_update.h"
#include "support/fault_server.h"
#include "support/figure.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"
#include "weather/item_weather.h"
#include "weather/servers_setting.h"
#include "window/commands.h"
#include "window/modal.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <curl/curl.h>
#include <gif_lib.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace raincast;

constexpr int kFrames = 25;
constexpr int kMinutesApart = 10;
constexpr int kPairs = 60;
constexpr int kFarPairs = 5;
constexpr std::chrono::milliseconds kRoundTrip{100};
constexpr double kAimFar = 0.3;
constexpr double kAimNear = 1.05;
constexpr double kMostHeldMilliseconds = 50;
constexpr int kUpdatesHeld = 10;

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

/// Frames and their listing, from a server of our own, each answer after some time.
class FrameServer {
public:
    explicit FrameServer(std::chrono::milliseconds roundTrip) {
        const QString listing = listingDirectory(kSite, kProduct);
        QByteArray links;
        for (int frame = 0; frame < kFrames; ++frame) {
            serve(listing + frameName(frame), frameBytes(frame), roundTrip);
            links += '"' + frameName(frame).toLatin1() + '"';
        }
        serve(listing, links, roundTrip);
    }

    [[nodiscard]] QString host() const { return m_server.host(); }

private:
    void serve(const QString& path, const QByteArray& body, std::chrono::milliseconds roundTrip) {
        m_server.on(
            path,
            [response = answers::response(200, body), roundTrip](FaultConnection& to) {
                if (roundTrip.count() > 0) {
                    to.pause(roundTrip);
                }
                to.send(response);
            }
        );
    }

    FaultServer m_server;
};

/// One frame: where it comes from and where it goes.
struct Download {
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
        all.push_back({("http://" + host + path).toStdString(), local.toStdString()});
    }
    return all;
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

void byUpdate(Downloads& downloads, const QString& host, const QString& cache) {
    RadarState state;
    state.siteId = kSite;
    state.cacheFolder = cache;
    state.animate = true;
    state.frameCount = kFrames;
    state.frameInterval = kMinutesApart;
    state.showWarnings = false;
    Silent silent;
    CHttpTransfer transfer(downloads, host, true, false);
    RadarUpdate run(state, silent, transfer, shownPictures());
    QEventLoop loop;
    bool done = false;
    run.UpdateRadar([&](bool updated) {
        done = updated;
        loop.quit();
    });
    loop.exec();
    require(done, "The update failed.");
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

/// Measures how long the event loop lets others wait: calls come from another thread all the time.
class Holding {
public:
    Holding()
        : m_thread([this, slit = m_mailbox.slit()] {
              while (!m_ended) {
                  const auto posted = std::chrono::steady_clock::now();
                  slit.post([this, posted] {
                      const std::chrono::duration<double, std::milli> waited =
                          std::chrono::steady_clock::now() - posted;
                      m_longest = std::max(m_longest, waited.count());
                  });
                  std::this_thread::sleep_for(std::chrono::milliseconds(1));
              }
          }) {}
    ~Holding() {
        m_ended = true;
        m_thread.join();
    }
    [[nodiscard]] double longest() const { return m_longest; }

private:
    Mailbox m_mailbox;
    double m_longest = 0; ///< milliseconds
    std::atomic<bool> m_ended = false;
    std::thread m_thread;
};

/// How long an update of an item that fills a large window holds the event loop at most. The
/// median of some updates: the machine holds it as well.
void measureHolding(const FrameServer& frames) {
    const test::TemporaryHome home;
    HttpServer maps;
    test::publishLayers(maps, kSite);
    ServersSetting::set({maps.host(), maps.host()});
    QWidget window;
    window.resize(1920, 1080);
    window.show();
    CPageDisplay page;
    auto& item = static_cast<CItemWeather&>(page.addItem(std::make_unique<CItemWeather>()));
    item.setRectangle({0, 0, 1920, 1080});
    item.beginWith({FirstShow::Choice{kSite, 0}, std::nullopt});
    page.activate(window, true);
    const auto finish = [&item] {
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            if (!item.loading()) {
                loop.quit();
            }
        });
        look.start(5);
        loop.exec();
    };
    finish();
    ServersSetting::set({frames.host(), maps.host()});
    Modal::setHook([](QDialog& dialog) {
        dialog.findChild<QCheckBox*>()->setChecked(true); // "Enable Animation"
        dialog.findChildren<QLineEdit*>().at(0)->setText(QString::number(kFrames));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    item.command(kAnimation, 0);
    finish();
    std::vector<double> longest;
    for (int i = 0; i < kUpdatesHeld; ++i) {
        QDir(item.state().cacheFolder + u'/' + kSite).removeRecursively();
        const Holding holding;
        item.command(kUpdate, 0);
        finish();
        longest.push_back(holding.longest());
        require(item.state().frames.size() == kFrames, "The update did not get all frames.");
    }
    std::sort(longest.begin(), longest.end());
    Figure held{.what = "An update holds the event loop at most", .unit = "ms"};
    held.own = longest[longest.size() / 2];
    print(held.withAim(AimOf::own, kMostHeldMilliseconds));
    page.deactivate();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    Downloads network;
    {
        const FrameServer far(kRoundTrip);
        const QString host = far.host();
        const auto update = [&] { byUpdate(network, host, freshFolder(folder)); };
        const auto program = [&] { byCurlProgram(downloads(host, folder)); };
        print(Figure::of(
                  ratioOf(kFarPairs, update, program),
                  "An update of 25 frames from a server 100 ms away", "curl, one connection"
        )
                  .withAim(AimOf::ratio, kAimFar));
    }
    const FrameServer near(std::chrono::milliseconds(0));
    const QString host = near.host();
    const auto update = [&] { byUpdate(network, host, freshFolder(folder)); };
    const auto bare = [&] {
        const std::vector<Download> all = downloads(host, folder);
        byBareLibcurl(all);
        decodeBare(all);
    };
    print(Figure::of(
              ratioOf(kPairs, update, bare), "An update of 25 frames on loopback",
              "bare libcurl and giflib"
    )
              .withAim(AimOf::ratio, kAimNear));
    measureHolding(near);
    return 0;
}
