// SPDX-License-Identifier: MIT
#pragma once

#include "app/main_window.h"
#include "app/viewer.h"
#include "app/window_place.h"
#include "core/clock.h"
#include "page/item.h"
#include "page/page.h"
#include "page/page_display.h"
#include "pictures/picture_folder_setting.h"
#include "support/http_server.h"
#include "support/menu.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"
#include "support/temporary_home.h"
#include "support/time_zone.h"
#include "weather/item_weather.h"
#include "weather/servers_setting.h"
#include "window/modal.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace raincast::test {

/// For tests that use the whole viewer as a person does, in this process: folders of its own, a
/// server with made-up radar of MUX, and a clock that stands at 2019-05-19 6:00.
class ViewerHarness : public GuiTest {
protected:
    ViewerHarness() {
        forgetRun();
        PictureFolderSetting::setFolder(home.root());
        Clock::use(&clock);
        publishLayers(server, "MUX");
        publishFrames(server, {"20190519_0534", "20190519_0544", "20190519_0554"}, "MUX");
        options.radarServer = options.basemapServer = server.host();
        options.geometry = QSize(400, 500);
    }
    ~ViewerHarness() override {
        forgetRun();
        PictureFolderSetting::setFolder({});
        Clock::use(nullptr);
    }

    /// What a new process would not know.
    static void forgetRun() {
        WindowPlace::settings.geometry.clear();
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
        Modal::forgetEnd();
        Modal::neverAsk(false);
    }
    /// Runs a viewer from its start to its end; `step` is done in its event loop and has to end it.
    int run(const std::function<void(Viewer&)>& step) {
        forgetRun();
        Viewer viewer(options);
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            // A dialog before the loop lets timers run as well.
            if (Modal::depth() == 0 && !viewer.application().loading()) {
                timer.stop();
                step(viewer);
                if (!Modal::endRequested()) {
                    viewer.requestEnd(); // a step that failed may have left the viewer open
                }
            }
        });
        timer.start(0);
        return viewer.run();
    }

    /// Waits until the current page has loaded what it is about to load.
    static void finish(const Viewer& viewer) {
        EXPECT_TRUE(QTest::qWaitFor([&viewer] { return !viewer.application().loading(); }, 30'000));
    }
    static void choose(Viewer& viewer, const QStringList& path) {
        chooseInMenu(*viewer.window()->frame()->menuBar(), path);
    }
    /// What stands in the window below the menu.
    static QImage pageOf(Viewer& viewer) {
        return viewer.window()->client()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    /// The radar item of a page.
    static CItemWeather& itemOf(Viewer& viewer, std::size_t page = 0) {
        const auto& pages = viewer.application().pages();
        auto& shown = dynamic_cast<CPageDisplay&>(*pages.at(page));
        return dynamic_cast<CItemWeather&>(*shown.items().at(0));
    }
    /// The colour in which an image pixel of a page's item is shown.
    static QRgb colourAt(Viewer& viewer, ImagePixel pixel) {
        const PagePoint place = itemOf(viewer).view().toPage(pixel);
        return pageOf(viewer).pixel(place.x, place.y);
    }
    /// Types into the widget that has the keyboard.
    static void typeText(const QString& text) {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClicks(QApplication::focusWidget(), text);
    }
    static void typeKey(Qt::Key key) {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), key);
    }
    /// Presses a key while the main window is in front.
    static void keyInWindow(Viewer& viewer, Qt::Key key) {
        QMainWindow& frame = *viewer.window()->frame();
        frame.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
        QTest::keyClick(frame.windowHandle(), key);
    }

    const TimeZone zone{"UTC0"};
    const ScopedHttp shortWaits;
    ManualClock clock{fromCalendar({2019, 5, 19, 6, 0})};
    TemporaryHome home;
    HttpServer server;
    AppOptions options;
};

} // namespace raincast::test
