// SPDX-License-Identifier: MIT
// The radar item on a screen with room: pictures of more pixels in the place of blown-up ones.
#include "drawing/layer_stack.h"
#include "sharp/detail_setting.h"
#include "support/fault_server.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/gif_maker.h"
#include "weather/storage.h"
#include "weather_page.h"

#include <QFileInfo>

#include <atomic>
#include <memory>

namespace raincast {
namespace {

const QStringList kStamps = {"20190519_0534", "20190519_0544", "20190519_0554"};
constexpr QSize kPage(800, 700);
constexpr QRgb kRed = 0xFFFF0000;

class ItemWeatherSharpTest : public test::WeatherPage {
protected:
    ItemWeatherSharpTest() {
        m_window.resize(kPage);
        m_item->setRectangle({0, 0, kPage.width(), kPage.height()});
    }
    ~ItemWeatherSharpTest() override { DetailSetting::setAutomatic(true); }

    void publishSharp(int detail) {
        test::publishSharpLayers(m_server, "MUX", detail);
        test::publishSharpFrames(m_server, kStamps, "MUX", detail);
    }
    /// Shows MUX at a zoom, with its loop or without.
    void showAt(int zoom, bool animate = false) {
        FirstShow first{FirstShow::Choice{"MUX", 0}, std::nullopt};
        first.animate = animate;
        m_item->beginWith(first);
        showPage();
        zoomTo(zoom);
        finishSharp();
    }
    void zoomTo(int zoom) {
        while (m_item->view().zoom() != zoom) {
            const int before = m_item->view().zoom();
            ASSERT_TRUE(m_item->command(before > zoom ? kZoomIn : kZoomOut, 0));
            ASSERT_NE(m_item->view().zoom(), before);
        }
        test::settle();
    }
    /// Whether the screen has two device pixels for one, so that letters are of another size.
    [[nodiscard]] bool isFine() const { return m_window.devicePixelRatioF() >= 1.5; }
    /// How many layers are there in the size of the zoom.
    [[nodiscard]] int layers() const { return isFine() ? 4 : 5; }
    /// To where the layers have their columns.
    void goWest() {
        while (m_item->view().origin().column > 0) {
            ASSERT_TRUE(m_page->keyDown(Qt::Key_Left));
        }
        test::settle();
    }
    /// Which of kStamps is on the screen; -1 for none.
    [[nodiscard]] int shownFrame() const {
        const QString name = QFileInfo(m_item->state().current.path).fileName();
        return static_cast<int>(kStamps.indexOf(name.mid(4, 13)));
    }
    /// Lets the described pictures come from a server whose sharp ones have a fault. Those that are
    /// in the cache are not asked for.
    void useFaulty(FaultServer& server) {
        const QString folder = test::framesPath("MUX");
        server.on(folder, answers::respond(200, "\"MUX_20190519_0554_N0R.gif\""));
        server.on("/ridge/Warnings/Short/MUX_Warnings_0.gif", answers::respond(404, ""));
        ServersSetting::set({server.host(), server.host()});
        update();
    }
    void finishSharp() {
        EXPECT_TRUE(QTest::qWaitFor(
            [this] {
                m_item->Tick();
                return !m_item->loading() && !m_item->sharpComing();
            },
            30'000
        ));
        test::settle();
    }
    /// Waits for the other frames of a loop.
    void awaitFiles(const QString& pattern, qsizetype count) {
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return sharpFiles(pattern).size() == count && !m_item->sharpLoopComing(); },
            30'000
        )) << sharpFiles(pattern).size();
        test::settle();
    }
    [[nodiscard]] QString cached(const QString& name) const {
        return m_item->state().cacheRoot() + "/MUX/" + name;
    }
    [[nodiscard]] QStringList sharpFiles(const QString& folder) const {
        return QDir(cached(folder)).entryList(QDir::Files);
    }
    /// What was asked for below "/x2/" or "/x4/".
    [[nodiscard]] QStringList sharpRequests() const {
        QStringList paths;
        for (const HttpServer::Request& request : m_server.requests()) {
            if (request.path.contains("/x2/") || request.path.contains("/x4/")) {
                paths.append(request.path);
            }
        }
        return paths;
    }
    [[nodiscard]] QImage painted() {
        QImage picture(kPage, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        m_item->draw(painter);
        return picture;
    }
    /// The page's pixel in which a pixel of a picture of a detail begins.
    [[nodiscard]] QPoint placeOf(int detail, int column, int row) const {
        const int side = 1 << -m_item->view().zoom();
        const ImagePixel origin = m_item->view().origin();
        return {
            column * side / detail - origin.column * side, row * side / detail - origin.row * side};
    }
    /// The width in pixels of the page of the red column that begins at a column of a picture; 0
    /// when there is none.
    [[nodiscard]] int redFrom(int detail, int column) {
        const QImage picture = painted();
        const QPoint place = placeOf(detail, column, 275 * detail);
        int width = 0;
        EXPECT_TRUE(picture.rect().contains(place)) << place.x();
        if (picture.pixel(place - QPoint(1, 0)) == kRed) {
            return 0;
        }
        while (picture.pixel(place + QPoint(width, 0)) == kRed) {
            ++width;
        }
        return width;
    }
};

TEST_F(ItemWeatherSharpTest, AtFullSizeAndFurtherOutNothingIsAskedFor) {
    publishSharp(2);
    publishSharp(4);
    showAt(0);
    for (const int zoom : {1, 2, 3, 4}) {
        zoomTo(zoom);
        finishSharp();
    }
    EXPECT_EQ(sharpRequests(), QStringList());
    EXPECT_FALSE(QFileInfo::exists(cached("x2")));
}

TEST_F(ItemWeatherSharpTest, OnASmallScreenNothingIsAskedForAtAnyZoom) {
    publishSharp(2);
    publishSharp(4);
    m_item->setRectangle({0, 0, 240, 320});
    showAt(0);
    for (const int zoom : {-1, -2, 4}) {
        zoomTo(zoom);
        finishSharp();
    }
    EXPECT_EQ(sharpRequests(), QStringList());
}

TEST_F(ItemWeatherSharpTest, ZoomedInThePicturesOfThatZoomAreShown) {
    publishSharp(2);
    publishSharp(4);
    for (const int zoom : {-1, -2}) {
        const int detail = 1 << -zoom;
        zoom == -1 ? showAt(zoom) : zoomTo(zoom);
        finishSharp();
        // One pixel of the sharp picture is one of the page.
        EXPECT_EQ(redFrom(detail, 202 * detail + 1), 1) << zoom;
        EXPECT_EQ(redFrom(1, 202), 0) << zoom;
    }
}

TEST_F(ItemWeatherSharpTest, TheFrameComesFirstThenItsLayers) {
    publishSharp(2);
    showAt(-1);
    const QStringList asked = sharpRequests();
    ASSERT_EQ(asked.size(), 1 + layers()) << asked.join(' ').toStdString();
    EXPECT_EQ(asked[0], "/ridge/x2/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif");
    EXPECT_EQ(asked.count("/ridge/x2/Overlays/Topo/Short/MUX_Topo_Short.jpg"), 1);
    EXPECT_EQ(asked.count("/ridge/x2/Overlays/Rivers/Short/MUX_Rivers_Short.gif"), 1);
    EXPECT_EQ(asked.count("/ridge/x2/Overlays/Highways/Short/MUX_Highways_Short.gif"), 1);
    EXPECT_EQ(asked.count("/weather_radar/x2/basemaps/MUX_County_Short.gif"), 1);
    EXPECT_EQ(sharpFiles("x2").size(), 1 + layers());
    // Once is enough.
    for (int i = 0; i < 5; ++i) {
        tick();
        m_window.repaint();
    }
    zoomTo(0);
    zoomTo(-1);
    finishSharp();
    EXPECT_EQ(sharpRequests().size(), 1 + layers());
    EXPECT_EQ(redFrom(2, 405), 1);
}

TEST_F(ItemWeatherSharpTest, LettersAreNeverSmallerThanOnOtherScreens) {
    publishSharp(2);
    publishSharp(4);
    showAt(-1);
    const QString city = "/weather_radar/x2/basemaps/MUX_City_Short.gif";
    EXPECT_EQ(m_server.count(city), isFine() ? 0 : 1);
    zoomTo(-2);
    finishSharp();
    EXPECT_EQ(m_server.count(city), 1);
    EXPECT_EQ(m_server.count("/weather_radar/x4/basemaps/MUX_City_Short.gif"), isFine() ? 0 : 1);
}

TEST_F(ItemWeatherSharpTest, LayersArePutTogetherOfTheirSharpPictures) {
    publishSharp(2);
    showAt(-1);
    goWest();
    for (const int column : {21, 41, 61, 81}) {
        const int width = column == 81 && isFine() ? 2 : 1;
        EXPECT_EQ(redFrom(2, column - (width - 1)), width) << column;
    }
    const QColor ground(painted().pixel(placeOf(2, 100, 500)));
    EXPECT_NEAR(ground.blue(), 140, 4);
}

TEST_F(ItemWeatherSharpTest, ALayerThatTheServerLacksStaysBlownUp) {
    test::publishSharpFrames(m_server, kStamps, "MUX", 2);
    m_server.serve(
        "/ridge/x2/Overlays/Highways/Short/MUX_Highways_Short.gif", test::sharpColumnGif(2, 41)
    );
    showAt(-1);
    goWest();
    EXPECT_EQ(redFrom(2, 41), 1) << "highways";
    EXPECT_EQ(redFrom(2, 60), 2) << "counties";
    EXPECT_EQ(redFrom(2, 20), 2) << "rivers";
    EXPECT_NEAR(QColor(painted().pixel(placeOf(2, 100, 500))).blue(), 40, 4);
}

TEST_F(ItemWeatherSharpTest, WithAServerThatHasNoneAllStaysAsItIs) {
    DetailSetting::setAutomatic(false);
    showAt(-2);
    const QImage before = painted();
    EXPECT_EQ(sharpRequests(), QStringList());
    DetailSetting::setAutomatic(true);
    finishSharp();
    EXPECT_EQ(painted(), before);
    EXPECT_GT(sharpRequests().size(), 0);
    EXPECT_EQ(m_item->statusText(), QString());
}

TEST_F(ItemWeatherSharpTest, AServerThatHasNoneIsAskedForAFew) {
    showAt(-2, true);
    const auto asked = sharpRequests().size();
    // Of each detail three frames, a layer, and counties and cities.
    EXPECT_LE(asked, 2 * (3 + 1 + 2)) << sharpRequests().join(' ').toStdString();
    for (const int zoom : {0, -1, -2}) {
        zoomTo(zoom);
        finishSharp();
        update();
        finishSharp();
    }
    EXPECT_EQ(sharpRequests().size(), asked);
}

TEST_F(ItemWeatherSharpTest, WhereTheFinestAreMissingTheOthersDo) {
    publishSharp(2);
    showAt(-2);
    EXPECT_EQ(redFrom(2, 405), 2);
}

TEST_F(ItemWeatherSharpTest, TheOthersOfALoopFollow) {
    publishSharp(2);
    showAt(-1, true);
    awaitFiles("x2", layers() + 3);
    EXPECT_EQ(sharpRequests().filter("RadarImg").size(), 3);
    // Each frame is sharp when its turn comes.
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(m_item->command(kStepForward, 0));
        finishSharp();
        const int frame = shownFrame();
        EXPECT_EQ(redFrom(2, (200 + frame) * 2 + 1), 1) << frame;
    }
    EXPECT_EQ(sharpRequests().filter("RadarImg").size(), 3);
}

TEST_F(ItemWeatherSharpTest, TheFinestFramesArePackedAndDrawnAsWell) {
    publishSharp(4);
    showAt(-2, true);
    awaitFiles("x4", layers() + 3);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(m_item->command(kStepForward, 0));
        finishSharp();
        const int frame = shownFrame();
        EXPECT_EQ(redFrom(4, (200 + frame) * 4 + 1), 1) << frame;
    }
}

TEST_F(ItemWeatherSharpTest, WhatIsOutOfViewIsNotFetched) {
    publishSharp(2);
    DetailSetting::setAutomatic(false);
    showAt(-1);
    while (!LayerStack::imageArea(QRect(QPoint(), kPage), m_item->view(), {600, 550}).isEmpty()) {
        ASSERT_TRUE(m_page->keyDown(Qt::Key_Left));
    }
    DetailSetting::setAutomatic(true);
    finishSharp();
    EXPECT_EQ(sharpRequests(), QStringList());
    ASSERT_TRUE(m_page->keyDown(Qt::Key_Right));
    finishSharp();
    EXPECT_GT(sharpRequests().size(), 0);
}

TEST_F(ItemWeatherSharpTest, WithTheDescribedSizeOnlyNothingIsAskedFor) {
    publishSharp(2);
    DetailSetting::setAutomatic(false);
    showAt(-1);
    EXPECT_EQ(sharpRequests(), QStringList());
    EXPECT_EQ(redFrom(1, 202), 2);
    // And back: what is there goes from the screen.
    DetailSetting::setAutomatic(true);
    finishSharp();
    EXPECT_EQ(redFrom(2, 405), 1);
    int paintings = 0;
    watch([&paintings](const QImage&) { ++paintings; });
    test::settle();
    paintings = 0;
    DetailSetting::setAutomatic(false);
    tick();
    EXPECT_GT(paintings, 0) << "the screen is to follow";
    EXPECT_EQ(redFrom(1, 202), 2);
}

TEST_F(ItemWeatherSharpTest, OfflineTheyComeFromTheCache) {
    publishSharp(2);
    showAt(-1, true);
    awaitFiles("x2", layers() + 3);
    restart();
    ServersSetting::set({"127.0.0.1:9", "127.0.0.1:9"});
    const int asked = m_server.count();
    showPage();
    ASSERT_TRUE(m_item->command(kStepForward, 0)); // between two rounds there is none
    finishSharp();
    const int frame = shownFrame();
    ASSERT_GE(frame, 0) << m_item->statusText().toStdString();
    EXPECT_EQ(redFrom(2, (200 + frame) * 2 + 1), 1) << frame;
    EXPECT_EQ(m_server.count(), asked);
}

TEST_F(ItemWeatherSharpTest, TheReadoutIsThatOfTheSharpPixel) {
    // One column is green there, and transparent in the described frame.
    const QString path = "/ridge/x2/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif";
    m_server.serve(
        path, makeGif(
                  {.screen = {1200, 1100},
                   .colours = {0xFFFFFFFF, 0xFF02FD02, 0xFFFFFFFF, 0xFFFFFFFF},
                   .transparent = 0,
                   .pixel = [](int column, int) { return column == 601 ? 1 : 0; }}
              )
    );
    showAt(-1);
    const QPoint place = placeOf(2, 601, 550);
    const auto levelAt = [&](int x) {
        return m_item->contextHeading(x, place.y()).section('\n', 0, 0).toStdString();
    };
    EXPECT_EQ(levelAt(place.x()), "20 to 24 dBZ");
    EXPECT_EQ(levelAt(place.x() - 1), "below 5 dBZ");
    EXPECT_EQ(levelAt(place.x() + 1), "below 5 dBZ");
}

TEST_F(ItemWeatherSharpTest, ASavedPictureIsAsSharpAsTheScreen) {
    publishSharp(2);
    showAt(-1);
    const QImage saved = m_item->pictures().paint();
    ASSERT_FALSE(saved.isNull());
    const QPoint place = placeOf(2, 405, 550);
    EXPECT_EQ(saved.pixel(place), kRed);
    EXPECT_NE(saved.pixel(place + QPoint(1, 0)), kRed);
    EXPECT_NE(saved.pixel(place - QPoint(1, 0)), kRed);
}

TEST_F(ItemWeatherSharpTest, AFrameOfNewBytesGetsItsOwnSharpPicture) {
    publishSharp(2);
    const QString path = test::framesPath("MUX") + "MUX_20190519_0554_N0R.gif";
    const auto changing = [&](const QByteArray& tag, int column) {
        m_server.handle(path, [=](const HttpServer::Request& request) {
            HttpServer::Response response{200, test::columnGif(column), "image/gif", {}};
            if (request.header("If-None-Match") == tag) {
                response = {304, {}, "image/gif", {}};
            }
            response.headers = {{"ETag", tag}, {"Cache-Control", "no-cache"}};
            return response;
        });
    };
    changing("\"1\"", 202);
    showAt(-1);
    EXPECT_EQ(redFrom(2, 405), 1);
    changing("\"2\"", 210);
    m_server.serve("/ridge/x2" + path.mid(6), test::sharpColumnGif(2, 433));
    update();
    finishSharp();
    EXPECT_EQ(redFrom(2, 433), 1);
    EXPECT_EQ(m_server.count("/ridge/x2" + path.mid(6)), 2);
}

TEST_F(ItemWeatherSharpTest, AFrameThatTheServerDropsGoesFromTheCacheInEverySize) {
    publishSharp(2);
    showAt(-1, true);
    awaitFiles("x2", layers() + 3);
    publishFrames({"20190519_0544", "20190519_0554"});
    update();
    EXPECT_EQ(sharpFiles("x2").filter("_2019").size(), 2);
    EXPECT_FALSE(QFileInfo::exists(cached("x2/MUX_20190519_0534_N0R.gif")));
}

/// What a server may do wrong with sharp pictures.
struct Wrong {
    const char* what;
    FaultServer::Answer answer;
};

TEST_F(ItemWeatherSharpTest, WhateverGoesWrongTheDescribedPictureStays) {
    const QByteArray whole = test::sharpColumnGif(2, 405);
    const Wrong faults[] = {
        {"404", answers::respond(404, "<html>Not found</html>")},
        {"another size", answers::respond(200, test::columnGif(9))},
        {"a page", answers::respond(200, "<html>Log in</html>")},
        {"503", answers::respond(503, "later")},
        {"cut", answers::cut(whole, whole.size() - 9)},
        {"reset", answers::reset(whole, 100)},
        {"stalls", answers::stall(whole.left(300))},
        {"silence", answers::silence()},
        {"no HTTP", answers::raw("220 ready\r\n")},
    };
    DetailSetting::setAutomatic(false);
    showAt(-1);
    const QImage before = painted();
    for (const Wrong& fault : faults) {
        FaultServer server(fault.answer);
        useFaulty(server);
        const auto asked = server.requests().size();
        ScopedHttp::waitBriefly();
        DetailSetting::setAutomatic(true);
        finishSharp();
        httpLimits().connectTimeout = httpLimits().stallTime = std::chrono::seconds(2);
        EXPECT_GT(server.requests().size(), asked) << fault.what;
        EXPECT_EQ(painted(), before) << fault.what;
        EXPECT_FALSE(m_window.grab().isNull()) << fault.what;
        EXPECT_EQ(sharpFiles("x2"), QStringList()) << fault.what;
        DetailSetting::setAutomatic(false);
        tick();
    }
}

TEST_F(ItemWeatherSharpTest, OnAFullDiskTheDescribedPictureStays) {
    publishSharp(2);
    DetailSetting::setAutomatic(false);
    showAt(-1);
    const QImage before = painted();
    {
        const FullDisk full(64);
        DetailSetting::setAutomatic(true);
        finishSharp();
    }
    EXPECT_EQ(painted(), before);
    EXPECT_EQ(sharpFiles("x2"), QStringList());
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(redFrom(1, 202), 2);
    // When there is room again the next update brings them.
    update();
    finishSharp();
    EXPECT_EQ(redFrom(2, 405), 1);
}

// A layer that takes its time keeps the others waiting, so that lines and letters never stand in
// two sizes over each other; the frame does not wait.
TEST_F(ItemWeatherSharpTest, LayersAreExchangedAsAWhole) {
    httpLimits().stallTime = std::chrono::seconds(30); // it is to be waited for
    publishSharp(2);
    const auto go = std::make_shared<std::atomic<bool>>(false);
    m_server.handle("/weather_radar/x2/basemaps/MUX_County_Short.gif", [go](const auto&) {
        go->wait(false);
        return HttpServer::Response{200, test::sharpColumnGif(2, 61), "image/gif", {}};
    });
    m_item->beginWith({FirstShow::Choice{"MUX", 0}, std::nullopt});
    showPage();
    zoomTo(-1);
    goWest();
    EXPECT_TRUE(QTest::qWaitFor(
        [this] {
            m_item->Tick();
            return sharpFiles("x2").size() == 4 && redFrom(2, 405) == 1;
        },
        30'000
    ));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(redFrom(2, 40), 2) << "highways";
        EXPECT_EQ(redFrom(2, 60), 2) << "counties";
        tick();
    }
    *go = true;
    go->notify_all();
    finishSharp();
    EXPECT_EQ(redFrom(2, 41), 1);
    EXPECT_EQ(redFrom(2, 61), 1);
}

TEST_F(ItemWeatherSharpTest, ZoomedOutAgainWhatRunsIsCancelled) {
    std::atomic<bool> hasGone = false;
    FaultServer slow([&hasGone](FaultConnection& connection) {
        connection.waitForEnd();
        hasGone = true;
    });
    DetailSetting::setAutomatic(false);
    showAt(-1);
    useFaulty(slow);
    const auto asked = slow.requests().size();
    DetailSetting::setAutomatic(true);
    m_item->Tick();
    EXPECT_TRUE(QTest::qWaitFor([&] { return slow.requests().size() == asked + 1; }, 30'000));
    EXPECT_TRUE(m_item->sharpComing());
    zoomTo(0);
    EXPECT_FALSE(m_item->sharpComing());
    EXPECT_TRUE(QTest::qWaitFor([&hasGone] { return hasGone.load(); }, 30'000));
}

TEST_F(ItemWeatherSharpTest, APageThatIsLeftKeepsNoneInMemory) {
    publishSharp(2);
    showAt(-1);
    m_page->deactivate();
    m_item->Tick();
    EXPECT_EQ(redFrom(1, 202), 2);
    m_page->activate(m_window, true);
    finishSharp();
    EXPECT_EQ(redFrom(2, 405), 1);
    EXPECT_EQ(sharpRequests().size(), 1 + layers());
}

TEST_F(ItemWeatherSharpTest, ALayerThatFailsDoesNotHoldBackTheLoop) {
    const QString county = "/weather_radar/x2/basemaps/MUX_County_Short.gif";
    publishSharp(2);
    m_server.serve(county, "busy", 503);
    showAt(-1, true);
    awaitFiles("x2", layers() - 1 + 3);
    EXPECT_EQ(m_server.count(county), 1);
    // The others are drawn, and the one that failed comes with the next update.
    goWest();
    finishSharp();
    EXPECT_EQ(redFrom(2, 41), 1) << "highways";
    EXPECT_EQ(redFrom(2, 60), 2) << "counties";
    m_server.serve(county, test::sharpColumnGif(2, 61));
    publishFrames(kStamps);
    update();
    finishSharp();
    EXPECT_EQ(redFrom(2, 61), 1) << "counties";
}

TEST_F(ItemWeatherSharpTest, AnotherServerIsJudgedByItself) {
    showAt(-1);
    EXPECT_EQ(redFrom(1, 202), 2) << "this one has none";
    FaultServer other(answers::respond(404, ""));
    other.on(
        "/ridge/x2/Overlays/Topo/Short/MUX_Topo_Short.jpg",
        answers::respond(200, test::sharpTopoJpeg(2))
    );
    useFaulty(other);
    finishSharp();
    const QColor ground(painted().pixel(placeOf(2, 500, 550)));
    EXPECT_NEAR(ground.blue(), 140, 4);
}

TEST_F(ItemWeatherSharpTest, OneStepFurtherInThePicturesOfBeforeStayUntilTheFinerCome) {
    httpLimits().stallTime = std::chrono::seconds(30); // it is to be waited for
    publishSharp(2);
    publishSharp(4);
    const auto go = std::make_shared<std::atomic<bool>>(false);
    m_server.handle("/ridge/x4/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif", [go](const auto&) {
        go->wait(false);
        return HttpServer::Response{200, test::sharpColumnGif(4, 809), "image/gif", {}};
    });
    showAt(-1);
    EXPECT_EQ(redFrom(2, 405), 1);
    zoomTo(-2);
    EXPECT_EQ(redFrom(2, 405), 2) << "not blocks of four";
    *go = true;
    go->notify_all();
    finishSharp();
    EXPECT_EQ(redFrom(4, 809), 1);
}

const QString kWarningsPath = "/ridge/Warnings/Short/MUX_Warnings_0.gif";
const QString kSharpWarningsPath = "/ridge/x2/Warnings/Short/MUX_Warnings_0.gif";

TEST_F(ItemWeatherSharpTest, WarningsAreSharpWhileTheyAreThoseOfNow) {
    m_server.serve(kWarningsPath, test::columnGif(250));
    m_server.serve(kSharpWarningsPath, test::sharpColumnGif(2, 501));
    showAt(-1);
    EXPECT_EQ(redFrom(2, 501), 1);
    // An hour later the server's would be others than those of the frame and the list.
    zoomTo(0);
    QFile::remove(cached("x2/MUX_Warnings_0.gif"));
    m_clock.advance(20 * kFileTimePerMinute);
    const int asked = m_server.count(kSharpWarningsPath);
    zoomTo(-1);
    finishSharp();
    EXPECT_EQ(m_server.count(kSharpWarningsPath), asked);
}

TEST_F(ItemWeatherSharpTest, WarningsThatCameAgainAsTheyWereStaySharp) {
    m_server.serve(kWarningsPath, test::columnGif(250));
    m_server.serve(kSharpWarningsPath, test::sharpColumnGif(2, 501));
    showAt(-1);
    EXPECT_EQ(redFrom(2, 501), 1);
    EXPECT_TRUE(m_item->command(kUpdate, 0));
    EXPECT_TRUE(QTest::qWaitFor(
        [this] {
            EXPECT_EQ(redFrom(2, 501), 1);
            return !m_item->loading();
        },
        30'000
    ));
    finishSharp();
    EXPECT_EQ(m_server.count(kSharpWarningsPath), 1);
    // Others take their place.
    m_server.serve(kWarningsPath, test::columnGif(260));
    m_server.serve(kSharpWarningsPath, test::sharpColumnGif(2, 521));
    update();
    finishSharp();
    EXPECT_EQ(redFrom(2, 521), 1);
}

TEST_F(ItemWeatherSharpTest, APictureAsItLookedBeforeFetchesNothing) {
    publishSharp(2);
    showAt(-1, true);
    awaitFiles("x2", layers() + 3);
    const CItemMapView::Look look = m_item->look();
    zoomTo(0);
    finishSharp();
    const int asked = m_server.count();
    QImage saved(kPage, QImage::Format_RGB32);
    QPainter painter(&saved);
    m_item->drawAs(look, painter);
    painter.end();
    EXPECT_FALSE(m_item->sharpComing());
    m_item->Tick();
    EXPECT_EQ(m_server.count(), asked);
}

TEST_F(ItemWeatherSharpTest, AFrameElsewhereOnTheDiskGetsNoSharpPictureThere) {
    publishSharp(2);
    const QString elsewhere = m_folder.filePath("elsewhere/MUX_20190519_0554_N0R.gif");
    writeFile(elsewhere, test::columnGif(202));
    showAt(0);
    auto& state = const_cast<RadarState&>(m_item->state());
    state.frames.back().path = state.current.path = elsewhere;
    zoomTo(-1);
    finishSharp();
    EXPECT_EQ(sharpRequests().filter("RadarImg"), QStringList());
    EXPECT_FALSE(QFileInfo::exists(m_folder.filePath("elsewhere/x2")));
}

TEST_F(ItemWeatherSharpTest, TheCleanUpTakesThemToo) {
    publishSharp(2);
    showAt(-1, true);
    awaitFiles("x2", layers() + 3);
    const QString root = m_item->state().cacheFolder;
    const GeoPosition near{37, -121};
    StorageCleanup cleanup;
    cleanup.keepNearbyRadar = true;
    cleanUpCache(root, cleanup, near);
    EXPECT_EQ(sharpFiles("x2").size(), layers() + 3) << "those nearby stay";
    cleanup.keepNearbyRadar = false;
    cleanUpCache(root, cleanup, near);
    EXPECT_EQ(sharpFiles("x2").size(), layers()) << "those of the radar go";
    cleanup.basemaps = true;
    cleanup.keepNearbyBasemaps = false;
    const auto described = QDir(cached("")).entryList(QDir::Files).size();
    EXPECT_EQ(countCleanUp(root, cleanup, near).files, described + layers());
    cleanUpCache(root, cleanup, near);
    EXPECT_FALSE(QFileInfo::exists(cached("")));
}

} // namespace
} // namespace raincast
