// SPDX-License-Identifier: MIT
// A drive over a radar picture, played from a recorded log: the position and its arrow, following
// it, a mark that is approached and passed, and a receiver that falls silent. With
// RAINCAST_DRIVE_PICTURES set to a folder, each stage leaves a picture of the window there.
#include "../golden/sample_server.h"
#include "app/position_feeds.h"
#include "app/raincast_app.h"
#include "geo/local_frame.h"
#include "map/item_map_view.h"
#include "map/map_icon.h"
#include "map/mark_manager.h"
#include "page/page_display.h"
#include "position/position_receiver.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/manual_timers.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"
#include "weather/item_weather.h"
#include "weather/servers_setting.h"
#include "window/command_set.h"
#include "window/screen_metrics.h"

#include <QMenu>
#include <QPixmap>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace raincast {
namespace {

constexpr int kSeconds = 600;
constexpr int kMarkSecond = 400; ///< when the mark is passed
constexpr float kKnots = 300;    ///< who chases storms in an aeroplane is fast
constexpr float kMetresPerSecond = kKnots * 1852 / 3600;
constexpr float kCourse = 50;
constexpr QRgb kArrow = qRgb(255, 0, 0);
const GeoPosition kMark{37.2, -121.6};

/// Where the user is so many seconds after the start.
GeoPosition placeAt(int second) {
    const float metres = kMetresPerSecond * static_cast<float>(second - kMarkSecond);
    return LocalFrame(kMark).fromMetres(LocalFrame::alongBearing(kCourse, metres));
}

/// 3712.0000,N
QString degreesAndMinutes(double degrees, int digits, QStringView signs) {
    const double absolute = std::fabs(degrees);
    const int whole = static_cast<int>(absolute);
    return QString::asprintf("%0*d%07.4f,", digits, whole, (absolute - whole) * 60) +
           signs[degrees < 0 ? 1 : 0];
}

/// $GPRMC,060001,A,3712.0000,N,12136.0000,W,300.0,050.0,190519,,,A
QByteArray sentenceAt(int second) {
    const GeoPosition place = placeAt(second);
    const QString sentence =
        QString::asprintf("$GPRMC,06%02d%02d,A,", second / 60, second % 60) +
        degreesAndMinutes(place.latitude, 2, u"NS") + u',' +
        degreesAndMinutes(place.longitude, 3, u"EW") +
        QString::asprintf(",%05.1f,%05.1f,190519,,,A\r\n", double{kKnots}, double{kCourse});
    return sentence.toLatin1();
}

class Drive : public test::GuiTest {
protected:
    Drive() {
        Clock::use(&m_clock);
        m_window.resize(480, 460);
    }
    ~Drive() override {
        m_receiver.use(std::nullopt);
        m_application.clear();
        COverlayGPSPosition::setVectorScale(COverlayGPSPosition::kUsualVectorScale);
        Clock::use(nullptr);
    }

    /// Shows the weather around a site that the servers in use know, and plays the log.
    void start() {
        Clock::use(&m_clock);
        m_application.setFirstShow({FirstShow::Choice{QStringLiteral("MUX"), 0}, std::nullopt});
        m_application.attach(m_window, m_window, m_commands, m_menu);
        test::show(m_window);
        m_application.restoreDefaultPages();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !m_application.loading(); }, 30'000));
        const QString log = m_home.path("drive.log");
        QByteArray sentences;
        for (int second = 0; second < kSeconds; ++second) {
            sentences += sentenceAt(second);
        }
        writeFile(log, sentences);
        m_receiver.use(*PositionSourceAddress::parse("file:" + log + "?rate=1"));
        playUntil(0);
    }

    /// Lets the log and the clock go on to a second of the drive.
    void playUntil(int second) {
        for (; m_second < second; ++m_second) {
            beat();
            const auto end = std::chrono::seconds(m_second + 1);
            while (m_timers.now() < end && m_timers.fire() >= 0) {
            }
        }
        test::settle();
    }
    /// Seconds in which no sentence comes.
    void silence(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            beat();
        }
        test::settle();
    }
    void press(Qt::Key key) { QTest::keyClick(&m_window, key); }

    CItemMapView& view() {
        const auto& page = dynamic_cast<const CPageDisplay&>(*m_application.current());
        return dynamic_cast<CItemMapView&>(*page.items().front());
    }
    const CDataGPSPosition& fix() const { return m_feeds.received(); }

    /// The whole page as it is on the screen, kept as a picture of the drive.
    QImage look(const char* name) {
        test::settle();
        const QPixmap picture = m_window.grab();
        if (const char* const folder = std::getenv("RAINCAST_DRIVE_PICTURES")) {
            const QString file = QStringLiteral("%1/%2-%3.png")
                                     .arg(QString::fromLocal8Bit(folder))
                                     .arg(++m_pictures, 2, 10, QChar(u'0'))
                                     .arg(QString::fromLatin1(name));
            EXPECT_TRUE(picture.save(file)) << qPrintable(file);
        }
        return picture.toImage().convertToFormat(QImage::Format_RGB32);
    }
    /// The pixel of the page that shows a position.
    QPoint pixelOf(const GeoPosition& place) {
        const auto placed = m_placement.geoToPixelForDrawing(place);
        EXPECT_TRUE(placed.ok);
        const PagePoint point = view().view().toPage(placed.pixel);
        return {point.x, point.y};
    }
    void placeImages(const QByteArray& worldFile) {
        const QString file = m_home.path("image.gfw");
        writeFile(file, worldFile);
        ASSERT_TRUE(m_placement.loadWorldFile(file.toStdString(), 600, 550));
    }

    ::testing::AssertionResult
    shows(const QImage& screen, const QImage& picture, const QPoint& corner) {
        int wrong = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                const bool opaque = qAlpha(pixel) == 255;
                const QPoint place = corner + QPoint(x, y);
                const QRgb seen = screen.valid(place) ? screen.pixel(place) : 0;
                wrong += opaque && seen != pixel && seen != kArrow ? 1 : 0;
            }
        }
        return wrong == 0 ? ::testing::AssertionSuccess()
                          : ::testing::AssertionFailure() << wrong << " pixels differ";
    }
    ::testing::AssertionResult showsPosition(const QImage& screen, MapIcon icon) {
        const bool large = ScreenMetrics::current().iconWidth() >= 64;
        const int half = positionPictureExtent(large) / 2;
        const QPoint corner = pixelOf({fix().latitude, fix().longitude}) - QPoint(half, half);
        return shows(screen, mapIconPicture(icon, large), corner);
    }
    /// Whether the arrowhead is where the user will be in five minutes.
    bool showsArrow(const QImage& screen) {
        const LocalFrame here({fix().latitude, fix().longitude});
        const float metres = kMetresPerSecond * 60 * COverlayGPSPosition::kUsualVectorScale;
        const QPoint tip = pixelOf(here.fromMetres(LocalFrame::alongBearing(kCourse, metres)));
        int red = 0;
        for (int y = tip.y() - 7; y <= tip.y() + 7; ++y) {
            for (int x = tip.x() - 7; x <= tip.x() + 7; ++x) {
                red += screen.valid(x, y) && screen.pixel(x, y) == kArrow ? 1 : 0;
            }
        }
        return red >= 20;
    }

    void replay();

    test::TemporaryHome m_home;
    GeoReference m_placement;

private:
    void beat() {
        for (int i = 0; i < 10; ++i) {
            m_clock.advance(kFileTimePerSecond / 10);
            m_heartbeat.Beat();
        }
    }

    ManualClock m_clock{fromCalendar({2019, 5, 19, 6, 0})};
    CHeartbeat m_heartbeat; // not the program's, which would see the clock jump when this ends
    QWidget m_window;
    QMenu m_menu;
    PositionFeeds m_feeds;
    CommandSet m_commands{m_window};
    CRaincastApp m_application;
    ManualTimers m_timers;
    PositionReceiver m_receiver{m_timers};
    int m_second = 0;
    int m_pictures = 0;
};

void Drive::replay() {
    CMarkManager& marks = m_application.marks();
    start();
    playUntil(1);
    QImage screen = look("start");
    EXPECT_TRUE(showsPosition(screen, m_feeds.received().icon()));
    EXPECT_TRUE(showsArrow(screen));

    marks.setTarget(marks.add(kMark, QStringLiteral("Storm Point")));
    playUntil(100);
    screen = look("under-way");
    EXPECT_TRUE(showsPosition(screen, m_feeds.received().icon()));
    EXPECT_TRUE(
        shows(screen, mapIconPicture(MapIcon::mark, false), pixelOf(kMark) - COverlayMark::kHotSpot)
    );
    ASSERT_NE(marks.navigation(), nullptr);
    EXPECT_NEAR(marks.navigation()->distance, 300 * kMetresPerSecond, 50);
    EXPECT_NEAR(marks.navigation()->relativeBearing, 0, 1);
    EXPECT_NEAR(marks.navigation()->crossTrack, 0, 50);

    marks.add(placeAt(200), QStringLiteral("Half way"));
    press(Qt::Key_L);
    EXPECT_TRUE(view().following());
    playUntil(200);
    screen = look("half-way-following");
    const QPoint middle = pixelOf({fix().latitude, fix().longitude});
    EXPECT_NEAR(middle.x(), screen.width() / 2, 1);
    EXPECT_NEAR(middle.y(), screen.height() / 2, 1);
    EXPECT_TRUE(showsPosition(screen, m_feeds.received().icon()))
        << "on top of the mark that is passed";

    playUntil(390);
    look("approached");
    EXPECT_NEAR(marks.navigation()->distance, 10 * kMetresPerSecond, 50);
    EXPECT_NEAR(marks.navigation()->relativeBearing, 0, 3);
    playUntil(420);
    screen = look("passed");
    EXPECT_NEAR(marks.navigation()->distance, 20 * kMetresPerSecond, 50);
    EXPECT_NEAR(std::fabs(marks.navigation()->relativeBearing), 180, 3);
    EXPECT_TRUE(showsArrow(screen));

    silence(8);
    EXPECT_TRUE(fix().valid());
    silence(1);
    EXPECT_FALSE(fix().valid());
    screen = look("silent");
    EXPECT_TRUE(showsPosition(screen, MapIcon::noFix));
    EXPECT_FALSE(showsArrow(screen));
    EXPECT_TRUE(view().following()) << "it goes on when there is a fix again";

    playUntil(500);
    screen = look("found-again");
    EXPECT_TRUE(showsPosition(screen, m_feeds.received().icon()));
    EXPECT_NEAR(pixelOf({fix().latitude, fix().longitude}).x(), screen.width() / 2, 1);
    for (int zoom = 0; zoom < 2; ++zoom) {
        press(Qt::Key_Plus);
    }
    look("zoomed-in");
    for (int zoom = 0; zoom < 4; ++zoom) {
        press(Qt::Key_Minus);
    }
    look("zoomed-out");
}

class DriveTest : public Drive {
protected:
    test::SampleServer m_server;
};

TEST_F(DriveTest, OverSampleWeather) {
    placeImages("0.009\n0\n0\n-0.009\n-124.6\n39.6\n");
    replay();
}

class RealDataDrive : public Drive {
protected:
    ~RealDataDrive() override {
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
    }

    HttpServer m_server;
};

TEST_F(RealDataDrive, OverPublishedPictures) {
    const char* const data = std::getenv("RAINCAST_TEST_DATA");
    const QString tree = QString::fromLocal8Bit(data != nullptr ? data : "") + "/radar-tree";
    if (!QFileInfo::exists(tree)) {
        GTEST_SKIP() << "no folder " << qPrintable(tree);
    }
    m_server.serveFolder(tree);
    ServersSetting::set({m_server.host(), m_server.host()});
    placeImages(readFile(tree + "/ridge/Overlays/Cities/Short/MUX_City_Short.gfw"));
    replay();
}

} // namespace
} // namespace raincast
