// SPDX-License-Identifier: MIT
// The weather of many sites is taken along, and read where there is no network.
#include "app/viewer_harness.h"
#include "net/http_settings.h"
#include "position/data_gps_position.h"
#include "radar/catalogue/products.h"
#include "reading/reading_setting.h"
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "weather/dialog_controls.h"
#include "window/action_row.h"

#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include <chrono>
#include <future>
#include <memory>

namespace raincast {
namespace {

using test::DialogScript;

const QStringList kTakeAlong = {"Menu", "Weather", "Pictures", "Take Along..."};

class TakeAlongTest : public test::ViewerHarness {
protected:
    TakeAlongTest() {
        ReadingSetting::showScale(false); // it lies over the left columns
        options.siteId = "MUX";
        options.radarServer = options.basemapServer = shore->host();
        for (const char* site : {"MUX", "DAX"}) {
            for (const char* range : {"Short", "Long"}) {
                test::publishLayers(*shore, site, range);
            }
            for (const RadarProduct& product : radarProducts()) {
                test::publishFrames(
                    *shore, {"20190519_0544", "20190519_0554"}, site, product.codeText().toString()
                );
            }
        }
    }

    ~TakeAlongTest() override { ReadingSetting::restore(m_setting); }

    /// The line at the bottom that is shown; null for none.
    static ActionRow* row(Viewer& viewer) {
        for (QWidget* widget : viewer.window()->client()->findChildren<QWidget*>()) {
            auto* const row = dynamic_cast<ActionRow*>(widget);
            if (row != nullptr && row->isVisible()) {
                return row;
            }
        }
        return nullptr;
    }
    static QString said(Viewer& viewer) {
        const ActionRow* const shown = row(viewer);
        return shown != nullptr ? shown->text() : QString();
    }
    static void pressRow(Viewer& viewer) {
        auto* const button = row(viewer)->findChild<QPushButton*>();
        test::click(*button, button->rect().center());
        test::settle();
    }
    /// Chooses the entry and a distance in miles.
    static void ask(Viewer& viewer, const QString& miles) {
        DialogScript script;
        script.expect("Take Along", [&miles](QDialog& dialog) {
            test::type(dialog, 0, miles);
            test::press(dialog, "Take Along");
        });
        choose(viewer, kTakeAlong);
    }
    static void waitForEnd(Viewer& viewer) {
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return said(viewer).contains(QStringLiteral("Taken along: ")); }, 60'000
        )) << said(viewer).toStdString();
    }
    /// What the screen shows of the present product: both are red columns.
    static void expectPicture(Viewer& viewer, const std::string& what) {
        const RadarState& state = itemOf(viewer).state();
        ASSERT_TRUE(state.current.bitmap) << what;
        const QString code = ProductCode(state.product).toString();
        EXPECT_EQ(
            QFileInfo(state.current.path).fileName(),
            state.siteId + "_20190519_0554_" + code + ".gif"
        );
        // The topo map is green; rivers are mixed with it.
        EXPECT_EQ(colourAt(viewer, {10, 275}), qRgb(148, 60, 20)) << what;
        for (const int layer : {20, 30, 40}) {
            EXPECT_EQ(colourAt(viewer, {layer, 275}), qRgb(255, 0, 0)) << what << ' ' << layer;
        }
    }

    std::unique_ptr<HttpServer> shore = std::make_unique<HttpServer>();

private:
    const ReadingSetting::Kept m_setting = ReadingSetting::keep();
};

TEST_F(TakeAlongTest, WithoutTheServerEachProductOfEachSiteOpensWithItsLayers) {
    run([this](Viewer& viewer) {
        ask(viewer, "130");
        EXPECT_TRUE(said(viewer).startsWith("Taking ")) << said(viewer).toStdString();
        waitForEnd(viewer);
        EXPECT_TRUE(said(viewer).startsWith("Taken along: 2 sites, "))
            << said(viewer).toStdString();
        pressRow(viewer);
        EXPECT_EQ(row(viewer), nullptr);
    });
    shore.reset();
    options.geometry = QSize(640, 640);
    for (const char* site : {"MUX", "DAX"}) {
        options.siteId = site;
        run([site](Viewer& viewer) {
            CItemWeather& item = itemOf(viewer);
            for (int product = 0; product < static_cast<int>(kRadarProductCount); ++product) {
                keyInWindow(viewer, static_cast<Qt::Key>(Qt::Key_1 + product));
                finish(viewer);
                EXPECT_EQ(item.state().product, product);
                EXPECT_EQ(item.state().siteId, site);
                expectPicture(viewer, site + std::to_string(product));
            }
        });
    }
}

TEST_F(TakeAlongTest, TheWindowStaysInUseAndCancelKeepsWhatThereIs) {
    httpLimits().stallTime = std::chrono::minutes(1);
    std::promise<void> answers;
    shore->handle(
        test::framesPath("MUX", "NTP"),
        [may = answers.get_future().share()](const auto&) -> HttpServer::Response {
            may.wait();
            return {};
        }
    );
    run([&](Viewer& viewer) {
        ask(viewer, "130");
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return shore->count(test::framesPath("MUX", "NTP")) == 1; }, 60'000
        ));
        keyInWindow(viewer, Qt::Key_2);
        finish(viewer);
        EXPECT_EQ(itemOf(viewer).state().product, 1);
        expectPicture(viewer, "while it runs");
        EXPECT_TRUE(said(viewer).startsWith("Taking along MUX ")) << said(viewer).toStdString();
        const int above = itemOf(viewer).rectangle().bottom;
        EXPECT_EQ(above, viewer.window()->client()->height() - row(viewer)->height())
            << "the line covers nothing of the item";
        pressRow(viewer);
        EXPECT_TRUE(said(viewer).startsWith("Cancelled. Taken along: 0 of 2 sites whole, "))
            << said(viewer).toStdString();
        pressRow(viewer);
        EXPECT_EQ(row(viewer), nullptr);
        EXPECT_GT(itemOf(viewer).rectangle().bottom, above);
    });
    answers.set_value();
}

TEST_F(TakeAlongTest, WhatIsMissingIsShown) {
    shore->serve(test::framesPath("DAX", "N0V"), "none", 404);
    run([](Viewer& viewer) {
        ask(viewer, "130");
        waitForEnd(viewer);
        EXPECT_TRUE(said(viewer).startsWith("Taken along: 1 of 2 sites whole, "));
        EXPECT_TRUE(said(viewer).endsWith(" 1 thing is missing.")) << said(viewer).toStdString();
        DialogScript script;
        script.expect("Taken Along", [](QDialog& box) {
            QString text;
            for (const auto* label : box.findChildren<QLabel*>()) {
                text += label->text();
            }
            EXPECT_TRUE(text.contains("DAX Velocity: No radar images found on server."))
                << text.toStdString();
        });
        pressRow(viewer);
        EXPECT_EQ(row(viewer), nullptr);
    });
}

TEST_F(TakeAlongTest, DistancesAreFromTheUserWhereThatIsKnown) {
    run([](Viewer& viewer) {
        const auto from = [&viewer](const char* expected) {
            DialogScript script;
            script.expect("Take Along", [expected](QDialog& dialog) {
                EXPECT_EQ(dialog.findChild<QLabel*>("1102")->text().toStdString(), expected);
            });
            choose(viewer, kTakeAlong);
        };
        from("from the map's middle");
        CDataGPSPosition position;
        position.latitude = 44.0;
        position.longitude = -121.0;
        position.fixType = kFixPrecise;
        Listener<CDataGPSPosition>::Notify(position);
        from("from your position");
    });
}

TEST_F(TakeAlongTest, OtherServersEndIt) {
    run([this](Viewer& viewer) {
        ask(viewer, "130");
        ServersSetting::choose(WeatherSource::another, {server.host(), server.host()});
        EXPECT_TRUE(said(viewer).startsWith("The servers have changed. Taken along: "))
            << said(viewer).toStdString();
    });
}

} // namespace
} // namespace raincast
