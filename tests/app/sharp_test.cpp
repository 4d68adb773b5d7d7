// SPDX-License-Identifier: MIT
// The whole viewer with the server of this project, at the sizes of handhelds to large screens:
// which screens get sharp pictures. With RAINCAST_SHARP_PICTURES set to a folder it goes through
// all sizes and zooms, and leaves pictures of the window there, before, while and after sharp ones
// come; with QT_SCALE_FACTOR=2 those of a screen of as many pixels.
#include "app/raincast_app.h"
#include "net/http_settings.h"
#include "support/loopback.h"
#include "viewer_harness.h"

#include <QDir>
#include <QProcess>

#include <chrono>
#include <cstdlib>

namespace raincast {
namespace {

constexpr int kDeadline = 120'000; // milliseconds

class SharpTest : public test::ViewerHarness {
protected:
    SharpTest() {
        keepLoopbackFromProxies();
        Clock::use(nullptr); // the server has the system's
        // It makes each picture when it is asked for, on a machine that may be busy.
        httpLimits().connectTimeout = httpLimits().stallTime = std::chrono::minutes(1);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(
            QStringLiteral(RAINCAST_SERVER_PROGRAM),
            {"--sample", "--listen", "127.0.0.1:0", "--cache", home.path("server"),
             "--end-with-parent"}
        );
        EXPECT_TRUE(m_process.waitForReadyRead(kDeadline));
        const QString ready = QString::fromUtf8(m_process.readLine()).trimmed();
        options.radarServer = options.basemapServer =
            ready.section(QStringLiteral("//"), 1).section(u'/', 0, 0);
        options.siteId = "TLX";
    }
    ~SharpTest() override {
        m_process.kill();
        m_process.waitForFinished(kDeadline);
    }

    /// A picture of the window, kept if somebody wants to look.
    static QImage look(Viewer& viewer, const char* when) {
        const QImage picture = pageOf(viewer);
        if (const char* const folder = std::getenv("RAINCAST_SHARP_PICTURES")) {
            const QSize size = picture.size();
            const int zoom = itemOf(viewer).view().zoom();
            const QString file = QStringLiteral("%1/%2x%3_zoom%4_%5.png")
                                     .arg(QString::fromLocal8Bit(folder))
                                     .arg(size.width())
                                     .arg(size.height())
                                     .arg(zoom)
                                     .arg(QString::fromLatin1(when));
            EXPECT_TRUE(picture.save(file)) << qPrintable(file);
        }
        return picture;
    }
    /// By the keys + and -.
    static void zoomTo(Viewer& viewer, int zoom) {
        while (itemOf(viewer).view().zoom() != zoom) {
            const bool in = itemOf(viewer).view().zoom() > zoom;
            keyInWindow(viewer, in ? Qt::Key_Plus : Qt::Key_Minus);
        }
        test::settle();
    }
    [[nodiscard]] static QStringList sharpFiles(Viewer& viewer, int detail) {
        const QString site = itemOf(viewer).state().cacheRoot() + QStringLiteral("/TLX/x%1");
        return QDir(site.arg(detail)).entryList(QDir::Files);
    }
    static void awaitSharp(Viewer& viewer) {
        EXPECT_TRUE(QTest::qWaitFor(
            [&viewer] {
                itemOf(viewer).Tick();
                return !viewer.application().loading() && !viewer.application().sharpComing();
            },
            kDeadline
        ));
        test::settle();
    }

    /// The middle of the window: what is written stands at its edges.
    static QImage map(const QImage& picture) {
        const QSize size = picture.size();
        return picture.copy(QRect(QPoint(size.width() / 4, size.height() / 4), size / 2));
    }

    /// Whether the window's picture changes when a zoom's pictures come.
    static bool becomesSharp(Viewer& viewer, int zoom) {
        zoomTo(viewer, zoom);
        const QImage before = map(look(viewer, "1_before"));
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return map(pageOf(viewer)) != before || !viewer.application().sharpComing(); },
            kDeadline
        ));
        look(viewer, "2_while");
        awaitSharp(viewer);
        return map(look(viewer, "3_after")) != before;
    }

private:
    QProcess m_process;
};

TEST_F(SharpTest, ALargeScreenGetsThem) {
    options.geometry = QSize(1920, 1080);
    run([](Viewer& viewer) {
        zoomTo(viewer, 0);
        awaitSharp(viewer);
        const int before = static_cast<int>(sharpFiles(viewer, 2).size());
        EXPECT_FALSE(becomesSharp(viewer, 0));
        EXPECT_EQ(sharpFiles(viewer, 2).size(), before);
        EXPECT_TRUE(becomesSharp(viewer, -1));
        EXPECT_EQ(sharpFiles(viewer, 2).filter("_N0R.gif").size(), 1);
        EXPECT_EQ(sharpFiles(viewer, 2).filter("_Topo_Short.jpg").size(), 1);
        EXPECT_EQ(sharpFiles(viewer, 2).filter("_County_Short.gif").size(), 1);
        EXPECT_TRUE(becomesSharp(viewer, -2));
        EXPECT_EQ(sharpFiles(viewer, 4).filter("_N0R.gif").size(), 1);
        EXPECT_EQ(sharpFiles(viewer, 4).filter("_Topo_Short.jpg").size(), 1);
        viewer.requestEnd();
    });
}

TEST_F(SharpTest, ASmallScreenDoesNot) {
    options.geometry = QSize(240, 320);
    run([](Viewer& viewer) {
        for (const int zoom : {0, -1, -2}) {
            zoomTo(viewer, zoom);
            awaitSharp(viewer);
        }
        EXPECT_EQ(sharpFiles(viewer, 2), QStringList());
        EXPECT_EQ(sharpFiles(viewer, 4), QStringList());
        viewer.requestEnd();
    });
}

TEST_F(SharpTest, PicturesOfAllSizesAndZooms) {
    if (std::getenv("RAINCAST_SHARP_PICTURES") == nullptr) {
        return; // nobody looks
    }
    for (const QSize size :
         {QSize(240, 320), QSize(800, 480), QSize(1920, 1080), QSize(3840, 2160)}) {
        options.geometry = size;
        run([](Viewer& viewer) {
            for (int zoom = ViewTransform::kMostZoom; zoom >= ViewTransform::kLeastZoom; --zoom) {
                static_cast<void>(becomesSharp(viewer, zoom));
            }
            // The next size begins without.
            const QString site = itemOf(viewer).state().cacheRoot() + QStringLiteral("/TLX");
            EXPECT_TRUE(QDir(site + "/x2").removeRecursively());
            EXPECT_TRUE(QDir(site + "/x4").removeRecursively());
            viewer.requestEnd();
        });
    }
}

} // namespace
} // namespace raincast
