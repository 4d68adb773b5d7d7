// SPDX-License-Identifier: MIT
// The radar item against servers that misbehave: what the window says, that it can be used, and
// that the next update works.
#include "support/fault_server.h"
#include "support/files.h"
#include "support/gif_maker.h"
#include "support/loopback.h"
#include "weather_page.h"

namespace raincast {
namespace {

const QString kFrames = test::framesPath("MUX");
const QString kNewest = kFrames + "MUX_20190519_0554_N0R.gif";
const QString kWorld = "/ridge/Overlays/Cities/Short/MUX_City_Short.gfw";
const char* const kNoServer = "Could not access server.\n";
const char* const kNoImages = "No radar images found on server.\n";
const char* const kNoFrame = "Could not download\nany radar images.\n";
const char* const kNoInternet =
    "Failed to access\nthe internet. Please\ncheck your connection\nsettings.";

struct Fault {
    const char* what;
    FaultServer::Answer answer;
    QString status; ///< that the window then shows
};

class ItemWeatherFaultsTest : public test::WeatherPage {
protected:
    ItemWeatherFaultsTest() { ScopedHttp::waitBriefly(); }

    void useServer(const QString& host) { ServersSetting::set({host, host}); }
    /// How much is written at the item's top, where the status stands.
    [[nodiscard]] int writtenAtTop() {
        constexpr int kUnitOfScale = 40; // at the right edge
        const QImage picture = drawn();
        int count = 0;
        for (int y = 8; y < 90; ++y) {
            for (int x = 0; x < picture.width() - kUnitOfScale; ++x) {
                count += qGray(picture.pixel(x, y)) < 60 ? 1 : 0;
            }
        }
        return count;
    }
    void expectStatus(const QString& status, const char* what) {
        EXPECT_EQ(m_item->statusText(), status) << what;
        EXPECT_GT(writtenAtTop(), 100) << what;
    }
    /// The window answers to keys, is painted, and is not left waiting.
    void expectUsable(const char* what) {
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr) << what;
        const ViewTransform before = m_item->view();
        EXPECT_TRUE(m_page->keyDown(Qt::Key_Left)) << what;
        EXPECT_NE(m_item->view(), before) << what;
        EXPECT_TRUE(m_page->keyDown(Qt::Key_Right)) << what;
        EXPECT_FALSE(m_window.grab().isNull()) << what;
    }
    void expectNextUpdateWorks(const char* what) {
        useServer(m_server.host());
        EXPECT_TRUE(m_item->command(kUpdate, 0)) << what;
        finish();
        EXPECT_EQ(m_item->statusText(), QString()) << what;
        EXPECT_EQ(shown(), "5:54") << what;
        EXPECT_EQ(writtenAtTop(), 0) << what;
    }
    void updateFrom(const QString& host) {
        useServer(host);
        update();
    }
};

TEST_F(ItemWeatherFaultsTest, EveryFaultOfTheListingIsTold) {
    const QByteArray links = "<a href=\"MUX_20190519_0554_N0R.gif\">";
    const Fault faults[] = {
        {"redirect", answers::redirect(302, "/login"), kNoImages},
        {"404", answers::respond(404, "<html>Not found</html>"), kNoImages},
        {"503", answers::respond(503, "<html>Later</html>"), kNoImages},
        {"another type", answers::respond(200, "GIF89a", "Content-Type: image/gif\r\n"), kNoImages},
        {"no HTTP", answers::raw("220 ready\r\n"), kNoServer},
        {"nothing", answers::nothing(), kNoServer},
        {"silence", answers::silence(), kNoServer},
        {"stall", answers::stall("<html>"), kNoImages},
        {"headers without end", answers::endlessHeaders(), kNoServer},
        {"drip", answers::drip(std::chrono::milliseconds(20)), kNoImages},
        {"huge", answers::hugeListing(20 << 20), kNoImages},
        {"cut before its name", answers::cut(links, 12), kNoImages},
    };
    showSite();
    for (const Fault& fault : faults) {
        FaultServer server(fault.answer);
        updateFrom(server.host());
        expectStatus(fault.status, fault.what);
        EXPECT_EQ(shown(), "5:54") << "the frame of before: " << fault.what;
        expectUsable(fault.what);
        expectNextUpdateWorks(fault.what);
    }
}

TEST_F(ItemWeatherFaultsTest, AServerThatCannotBeReachedIsTold) {
    showSite();
    const RefusingPort refusing;
    updateFrom(refusing.host());
    expectStatus(kNoServer, "refused");
    expectUsable("refused");
    expectNextUpdateWorks("refused");
    const DeafPort deaf;
    updateFrom(deaf.host());
    expectStatus(kNoServer, "deaf");
    expectUsable("deaf");
    expectNextUpdateWorks("deaf");
}

TEST_F(ItemWeatherFaultsTest, EveryFaultOfTheOnlyFrameIsTold) {
    const QByteArray gif = test::columnGif(200);
    const Fault faults[] = {
        {"redirect", answers::redirect(301, "/other.gif"), kNoFrame},
        {"404", answers::respond(404, "gone"), kNoFrame},
        {"500", answers::respond(500, "broken"), kNoFrame},
        {"a page instead", answers::respond(200, "<html>Please log in</html>"), kNoFrame},
        {"garbage", answers::respond(200, "GIF89a" + QByteArray(4000, '\xA7')), kNoFrame},
        {"a picture too large", answers::respond(200, gifThatClaims({30'000, 30'000})), kNoFrame},
        {"empty", answers::respond(200, {}), kNoFrame},
        {"cut short", answers::cut(gif, gif.size() / 2), kNoFrame},
        {"reset", answers::reset(gif, gif.size() / 2), kNoFrame},
        {"stall", answers::stall(gif.left(100)), kNoFrame},
    };
    showSite();
    for (const Fault& fault : faults) {
        QDir(m_item->state().cacheFolder + "/MUX").removeRecursively();
        FaultServer server;
        server.on(kFrames, answers::respond(200, "\"MUX_20190519_0554_N0R.gif\""));
        server.on(kNewest, fault.answer);
        updateFrom(server.host());
        expectStatus(fault.status, fault.what);
        expectUsable(fault.what);
        expectNextUpdateWorks(fault.what); // everything is fetched again
    }
}

TEST_F(ItemWeatherFaultsTest, AFrameThatIsGarbageOnTheServerGivesWayToTheNextOne) {
    showSite();
    publishFrames({"20190519_0554", "20190519_0604"});
    m_server.serve(kFrames + "MUX_20190519_0604_N0R.gif", "GIF89a and garbage");
    update();
    EXPECT_EQ(shown(), "5:54") << "the one before";
    publishFrames({"20190519_0554", "20190519_0604", "20190519_0610"});
    update();
    EXPECT_EQ(shown(), "6:10");
}

TEST_F(ItemWeatherFaultsTest, EveryFaultOfTheFirstLoadIsToldAndTheNextUpdateLoadsAll) {
    const Fault faults[] = {
        {"redirect", answers::redirect(302, "/login"), kNoInternet},
        {"404", answers::respond(404, "<html>"), kNoInternet},
        {"a page instead", answers::respond(200, "<html>Please log in</html>"), kNoInternet},
        {"nothing", answers::nothing(), kNoInternet},
        {"silence", answers::silence(), kNoInternet},
    };
    for (const Fault& fault : faults) {
        QDir(m_item->state().cacheFolder + "/MUX").removeRecursively();
        const FaultServer server(fault.answer);
        useServer(server.host());
        showSite();
        expectStatus(fault.status, fault.what);
        EXPECT_EQ(namesIn(m_item->state().cacheFolder + "/MUX"), "") << fault.what;
        expectUsable(fault.what);
        expectNextUpdateWorks(fault.what);
        m_page->deactivate();
        makePage();
    }
}

TEST_F(ItemWeatherFaultsTest, AWorldFileOfNonsenseIsToldAndTheNextUpdateLoadsAll) {
    m_server.serve(kWorld, "<html>Please log in</html>");
    showSite();
    expectStatus(kNoInternet, "nonsense");
    expectUsable("nonsense");
    publishLayers("MUX");
    expectNextUpdateWorks("nonsense");
    EXPECT_EQ(m_item->state().siteId, "MUX");
}

TEST_F(ItemWeatherFaultsTest, ALayerWithoutEndIsRefused) {
    const QByteArray much(1 << 20, '\0');
    FaultServer server([&much](FaultConnection& to) {
        to.send("HTTP/1.1 200 OK\r\n\r\nGIF89a");
        while (to.send(much)) {
        }
    });
    ServersSetting::set({m_server.host(), server.host()}); // counties and cities
    showSite();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
    EXPECT_FALSE(QFile::exists(m_item->state().cacheFolder + "/MUX/MUX_County_Short.gif"));
}

} // namespace
} // namespace raincast
