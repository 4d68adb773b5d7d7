// SPDX-License-Identifier: MIT
// What a user who waits for a load sees: each step as it is done.
#include "player/loop_setting.h"
#include "support/files.h"
#include "weather_page.h"

#include <algorithm>

namespace raincast {
namespace {

constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kBar = qRgb(0, 90, 200);
constexpr int kRow = 400; // below the texts

/// A page that shows the whole image.
class ItemWeatherLoadingTest : public test::WeatherPage {
protected:
    ItemWeatherLoadingTest() {
        m_window.resize(600, 550);
        LoopSetting::setBar(LoopSetting::Bar::never); // it would cover that of the progress
        useWholePage();
    }
    ~ItemWeatherLoadingTest() override { LoopSetting::setBar(LoopSetting::Bar::whereRoomIs); }

    void useWholePage() {
        m_item->setRectangle({0, 0, 600, 550});
        watch([this](const QImage& picture) {
            const std::string seen = described(picture);
            if (m_seen.empty() || m_seen.back() != seen) {
                m_seen.push_back(seen);
            }
        });
    }
    /// The status (a bar for the end of a line), how many hundredths of the bar are filled, and a
    /// letter for each layer.
    [[nodiscard]] std::string described(const QImage& picture) const {
        int filled = 0;
        while (filled < 600 && picture.pixel(filled, 549) == kBar) {
            ++filled;
        }
        QString text = m_item->state().status + QString(" %1 ").arg(filled / 6);
        text.replace('\n', '|');
        text += qGreen(picture.pixel(100, kRow)) == 120 ? "T" : "";
        for (const auto& [column, letter] :
             {std::pair(10, 'R'), {30, 'C'}, {20, 'H'}, {40, 'Y'}, {202, 'E'}}) {
            text += picture.pixel(column, kRow) == kRed ? QString(QChar(letter)) : QString();
        }
        return text.toStdString();
    }

    /// Whether no other steps than these were seen, in this order and to the last one. Steps that
    /// follow each other at once are painted together.
    void expectSteps(const std::vector<std::string>& steps) const {
        auto next = steps.begin();
        for (const std::string& seen : m_seen) {
            next = std::find(next, steps.end(), seen);
            ASSERT_NE(next, steps.end()) << seen;
        }
        ASSERT_FALSE(m_seen.empty());
        EXPECT_EQ(m_seen.back(), steps.back());
        EXPECT_GE(2 * m_seen.size(), steps.size());
    }

    std::vector<std::string> m_seen;
};

TEST_F(ItemWeatherLoadingTest, AFirstLoadShowsEachStep) {
    showSite();
    expectSteps(
        {"Loading basemap...| 0 ",      // the world file is fetched,
         "Loading basemap...| 16 ",     // the topo,
         "Loading basemap...| 16 T",    // and so on: there, and the next one is fetched
         "Loading basemap...| 33 T",    // rivers
         "Loading basemap...| 33 TR",   //
         "Loading basemap...| 50 TR",   // counties
         "Loading basemap...| 50 TRC",  //
         "Loading basemap...| 66 TRC",  // highways
         "Loading basemap...| 66 TRCH", //
         "Loading basemap...| 83 TRCH", // cities
         "Loading basemap...| 83 TRCHY",
         "Updating radar image...| 83 TRCHY",   // the listing is fetched,
         "Updating radar image...| 0 TRCHY",    // the frame,
         "Updating radar image...| 0 TRCHYE",   // which is shown
         "Updating radar image...| 100 TRCHYE", // while the warnings are fetched
         " 100 TRCHYE", " 0 TRCHYE"}
    );
}

TEST_F(ItemWeatherLoadingTest, AnotherStartSaysThatItLoads) {
    showSite();
    restart();
    m_seen.clear();
    useWholePage();
    test::show(m_window);
    m_page->activate(m_window, true);
    EXPECT_EQ(m_item->statusText(), "Loading...");
    finish();
    if (!m_seen.empty() && m_seen[0] == "Loading... 0 ") {
        m_seen.erase(m_seen.begin()); // the frame may be there before this is painted
    }
    ASSERT_GT(m_seen.size(), 1U);
    EXPECT_EQ(m_seen[0], "Loading basemap...| 0 E") << "the cached frame is there";
    EXPECT_EQ(m_seen.back(), " 0 TRCHYE");
}

TEST_F(ItemWeatherLoadingTest, AnUpdateShowsEachFrameThatComes) {
    showSite();
    m_seen.clear();
    editAnimation(3);
    expectSteps(
        {"Updating radar image...| 0 TRCHYE", "Updating radar image...| 33 TRCHYE",
         "Updating radar image...| 66 TRCHYE", "Updating radar image...| 100 TRCHYE", " 100 TRCHYE",
         " 0 TRCHYE"}
    );
}

TEST_F(ItemWeatherLoadingTest, TheFrameOfBeforeStaysBehindAFailure) {
    showSite();
    editLayers({"Highways"});
    EXPECT_EQ(m_seen.back(), " 0 TRCYE");
    m_server.serve(test::framesPath("MUX"), "", 503);
    m_seen.clear();
    update();
    expectSteps({"Updating radar image...| 0 TRCYE", "No radar images found on server.| 0 TRCYE"});
    publishFrames({"20190519_0554"});
    update();
    EXPECT_EQ(m_seen.back(), " 0 TRCYE");
    m_server.serve("/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif", "", 404);
    QFile::remove(m_item->state().cacheFolder + "/MUX/MUX_Rivers_Short.gif");
    editLayers({"Counties"});
    EXPECT_EQ(
        m_seen.back(), "Failed to access|the internet. Please|check your connection|settings. 0 TE"
    );
}

} // namespace
} // namespace raincast
