// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"
#include "dialog_controls.h"
#include "page/item.h"
#include "page/page_display.h"
#include "support/dialog_script.h"
#include "support/http_server.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"
#include "support/serial_bytes.h"
#include "support/time_zone.h"
#include "weather/item_weather.h"
#include "weather/servers_setting.h"
#include "window/commands.h"

#include <QListWidget>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace raincast::test {

/// An item above the others that sees the page each time it is painted, with all that lies below.
class Watcher : public CPageDisplay::CItem {
public:
    explicit Watcher(std::function<void(const QImage&)> painted) : m_painted(std::move(painted)) {}

    void draw(QPainter& painter) override {
        const auto* picture = dynamic_cast<const QImage*>(painter.device());
        ASSERT_NE(picture, nullptr);
        m_painted(*picture);
    }

private:
    std::function<void(const QImage&)> m_painted;
};

/// A radar item on a page of 300 by 280 pixels, a server with made-up radar of MUX, a cache of its
/// own, and a clock that stands at 2019-05-19 6:00.
class WeatherPage : public GuiTest {
protected:
    WeatherPage() : m_clock(fromCalendar({2019, 5, 19, 6, 0})) {
        Clock::use(&m_clock);
        qputenv("XDG_DATA_HOME", m_folder.filePath("data").toLocal8Bit());
        qputenv("RAINCAST_CARD_ROOT", m_folder.filePath("cards").toLocal8Bit());
        ServersSetting::set({m_server.host(), m_server.host()});
        publishLayers("MUX");
        publishFrames({"20190519_0534", "20190519_0544", "20190519_0554"});
        m_window.resize(300, 280);
        makePage();
        CHeartbeat::program().Beat(); // the clock may stand before the last test's
    }
    ~WeatherPage() override {
        m_page->deactivate();
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("RAINCAST_CARD_ROOT");
        Clock::use(nullptr);
    }

    void publishLayers(const QString& site) { test::publishLayers(m_server, site); }
    void publishFrames(const QStringList& stamps, const QString& site = "MUX") {
        test::publishFrames(m_server, stamps, site);
    }
    void makePage() {
        m_page = std::make_unique<CPageDisplay>();
        m_item = static_cast<CItemWeather*>(&m_page->addItem(std::make_unique<CItemWeather>()));
        m_item->setRectangle({0, 0, 300, 280});
    }
    /// Calls for every picture of the page that is painted from now on.
    void watch(std::function<void(const QImage&)> painted) {
        m_page->addItem(std::make_unique<Watcher>(std::move(painted)))
            .setRectangle({0, 0, 300, 280});
    }
    /// Shows the page, on which an item with a site loads by itself.
    void showPage() {
        test::show(m_window);
        m_page->activate(m_window, true);
        finish();
    }
    /// Waits until the item has loaded what it is about to load.
    void finish() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !m_item->loading(); }, 30'000));
        settle();
    }
    /// Updates as F5 does.
    void update() {
        EXPECT_TRUE(m_item->command(kUpdate, 0));
        finish();
    }
    void showSite() {
        m_item->beginWith({FirstShow::Choice{"MUX", 0}, std::nullopt});
        showPage();
        useFullSize();
    }
    /// Shows an image pixel in a pixel of the page, the radar in the middle: most tests look at
    /// single pixels.
    void useFullSize() {
        struct Opened : CItemWeather {
            using CItemWeather::showPixel;
        };
        while (m_item->view().zoom() > 0) {
            EXPECT_TRUE(m_item->command(kZoomIn, 0));
        }
        (m_item->*&Opened::showPixel)(CItemWeather::kImageCentre);
        settle();
    }
    /// Saves the page and puts the one that is read back in its place, as another start would.
    void restart() {
        const QByteArray bytes = writtenBlock(*m_page);
        m_page->deactivate();
        auto* page = dynamic_cast<CPageDisplay*>(readBlock(bytes).release());
        ASSERT_NE(page, nullptr);
        m_page.reset(page);
        ASSERT_EQ(page->items().size(), 1U);
        m_item = dynamic_cast<CItemWeather*>(page->items()[0].get());
        ASSERT_NE(m_item, nullptr);
    }
    /// Chooses a site by what its row begins with.
    void chooseSite(const QString& letters) {
        DialogScript script;
        script.expect("Weather Station", [&letters](QDialog& dialog) {
            QTest::keyClicks(dialog.findChild<QListWidget*>(), letters);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        EXPECT_TRUE(m_item->command(kAllStations, 0));
        finish();
    }
    void editAnimation(int frames, bool autoUpdate = false) {
        DialogScript script;
        script.expect("Animation", [=](QDialog& dialog) {
            check(dialog, "Enable Animation", true);
            type(dialog, 0, QString::number(frames));
            check(dialog, "Auto-Update ", autoUpdate);
            press(dialog, "OK");
        });
        EXPECT_TRUE(m_item->command(kAnimation, 0));
        finish();
    }
    /// Switches layers off.
    void editLayers(const QStringList& off) {
        DialogScript script;
        script.expect("Radar Layers", [&off](QDialog& dialog) {
            for (const QString& layer : off) {
                check(dialog, layer, false);
            }
            press(dialog, "OK");
        });
        EXPECT_TRUE(m_item->command(kLayers, 0));
        finish();
    }
    /// Heartbeats at a time, as many as the item needs for one tick.
    void beatAt(FileTime time) {
        beginBeatAt(time);
        finish();
    }
    /// The same, but what it starts goes on.
    void beginBeatAt(FileTime time) {
        m_clock.set(time);
        CHeartbeat::program().Beat(); // the clock jumped: nobody counts
        for (int i = 0; i < 5; ++i) {
            CHeartbeat::program().Beat();
        }
    }
    void tick() {
        m_item->Tick();
        finish();
    }
    [[nodiscard]] QImage drawn() {
        QImage picture(300, 280, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        m_item->draw(painter);
        return picture;
    }
    [[nodiscard]] std::string shown() const {
        return m_item->state().current.timeText.toStdString();
    }

    const TimeZone m_zone{"UTC0"};
    const ScopedHttp m_shortWaits;
    ManualClock m_clock;
    QTemporaryDir m_folder;
    HttpServer m_server;
    QWidget m_window;
    std::unique_ptr<CPageDisplay> m_page;
    CItemWeather* m_item = nullptr;
};

} // namespace raincast::test
