// SPDX-License-Identifier: MIT
// How old the picture is, as a person sees it who only looks: nothing else has the page painted.
#include "map/text_box.h"
#include "weather_page.h"

#include <QFontMetrics>

namespace raincast {
namespace {

constexpr TextBoxColours kAmber{{255, 191, 0}, {0, 0, 0}};
constexpr TextBoxColours kRed{{192, 0, 0}, {255, 255, 255}};

class ItemWeatherAgeTest : public test::WeatherPage {
protected:
    void look() {
        watch([this](const QImage& picture) {
            ++m_paintings;
            m_screen = picture.copy();
        });
    }
    /// Lets time pass, ten seconds from tick to tick; the newest frame is of 5:54, it is 6:00
    /// first.
    void passTime(int minutes) {
        for (int step = 0; step < minutes * 6; ++step) {
            m_clock.advance(10 * kFileTimePerSecond);
            for (int beat = 0; beat < 5; ++beat) {
                CHeartbeat::program().Beat();
            }
            test::settle();
        }
    }
    /// How often the page is painted while time passes.
    int paintingsIn(int minutes) {
        const int before = m_paintings;
        passTime(minutes);
        return m_paintings - before;
    }
    [[nodiscard]] int height() const { return QFontMetrics(m_window.font()).height(); }
    /// The n-th line from the bottom of a picture, counted from 0, as far as a text reaches.
    [[nodiscard]] QImage line(const QImage& picture, int n, const QString& text) const {
        const int width = QFontMetrics(m_window.font()).horizontalAdvance(text);
        return picture.copy(2, 280 - (n + 1) * height(), width, height());
    }
    [[nodiscard]] QImage written(const QString& text, const TextBoxColours& colours) const {
        const QFontMetrics metrics(m_window.font());
        QImage picture(metrics.horizontalAdvance(text), height(), QImage::Format_RGB32);
        QPainter painter(&picture);
        painter.setFont(m_window.font());
        drawTextBox(painter, {0, 0}, text, colours);
        return picture;
    }
    /// Whether a text stands at the beginning of the n-th line from the bottom.
    [[nodiscard]] bool says(int n, const QString& text, const TextBoxColours& colours = {}) const {
        return line(m_screen, n, text) == written(text, colours);
    }

    int m_paintings = 0;
    QImage m_screen;
};

TEST_F(ItemWeatherAgeTest, ItAppearsAndGrowsByItselfAndNothingElseIsPainted) {
    look();
    showSite();
    EXPECT_EQ(paintingsIn(14), 0);
    EXPECT_EQ(paintingsIn(1), 2) << "more than twenty minutes, then twenty-one";
    EXPECT_TRUE(says(0, "5:54"));
    EXPECT_TRUE(says(1, "Image is 21 minutes old", kAmber));
    EXPECT_EQ(paintingsIn(5), 5);
    EXPECT_TRUE(says(1, "Image is 26 minutes old", kAmber));
    passTime(94);
    EXPECT_TRUE(says(1, "Image is 2 hours old", kRed));
    EXPECT_EQ(paintingsIn(59), 0);
    EXPECT_EQ(paintingsIn(1), 1);
    EXPECT_TRUE(says(1, "Image is 3 hours old", kRed));
}

// A position that comes has a part of the page painted.
TEST_F(ItemWeatherAgeTest, APartThatIsPaintedMeanwhileDoesNotHideThatItGrew) {
    look();
    showSite();
    passTime(15);
    ASSERT_TRUE(says(1, "Image is 21 minutes old", kAmber));
    m_clock.advance(60 * kFileTimePerSecond);
    m_item->invalidate(QRect(0, 0, 20, 20));
    EXPECT_TRUE(QTest::qWaitFor([this] { return says(1, "Image is 22 minutes old", kAmber); }));
}

/// Shows a time that cannot be right.
class WrongClock : public ManualClock {
public:
    using ManualClock::ManualClock;
    [[nodiscard]] Teller teller() const override { return Teller::nobody; }
};

TEST_F(ItemWeatherAgeTest, ALineSaysThatTheClockIsWrong) {
    look();
    showSite();
    const QImage before = m_screen;
    const WrongClock wrong(m_clock.now());
    Clock::use(&wrong);
    EXPECT_EQ(paintingsIn(1), 1);
    EXPECT_NE(m_screen, before);
    Clock::use(&m_clock); // the network has set it
    EXPECT_EQ(paintingsIn(1), 1);
    EXPECT_EQ(m_screen, before);
}

TEST_F(ItemWeatherAgeTest, AHiddenPageIsNotPaintedAndTellsItsAgeWhenItIsShown) {
    look();
    showSite();
    m_page->deactivate();
    EXPECT_EQ(paintingsIn(30), 0);
    showPage();
    EXPECT_TRUE(QTest::qWaitFor([this] { return says(1, "Image is 36 minutes old", kAmber); }));
    EXPECT_EQ(paintingsIn(3), 3);
}

TEST_F(ItemWeatherAgeTest, AFreshPictureHasNone) {
    look();
    showSite();
    passTime(30);
    publishFrames({"20190519_0630"});
    update();
    test::settle();
    EXPECT_TRUE(says(0, "6:30"));
    EXPECT_TRUE(says(1, "MUX Base Reflectivity"));
    EXPECT_EQ(paintingsIn(5), 0);
}

// An old picture is no younger because some of its frames are missing.
TEST_F(ItemWeatherAgeTest, ItIsToldBesideAStatus) {
    publishFrames({"20190519_0554"});
    look();
    showSite();
    editAnimation(6);
    EXPECT_EQ(m_item->statusText(), "Could not get\nall images.\n");
    passTime(30);
    EXPECT_TRUE(says(1, "Image is 36 minutes old", kAmber));
}

TEST_F(ItemWeatherAgeTest, InTheBlankTickItStaysWhereItIsAndTheTitleKeepsItsDate) {
    look();
    showSite();
    editAnimation(3);
    const QString title = m_item->caption();
    EXPECT_EQ(title, "MUX Base Reflectivity 2019-05-19");
    tick();
    EXPECT_TRUE(says(1, title));
    tick();
    EXPECT_EQ(shown(), "") << "the blank one";
    EXPECT_TRUE(says(1, title));
    EXPECT_FALSE(says(0, "5:54"));
    editAnimation(3);
    m_clock.set(fromCalendar({2019, 5, 19, 6, 30}));
    tick();
    const QString age = "Image is 36 minutes old";
    EXPECT_EQ(shown(), "5:54");
    EXPECT_TRUE(says(1, age, kAmber));
    tick();
    EXPECT_EQ(shown(), "");
    EXPECT_TRUE(says(1, age, kAmber));
    EXPECT_EQ(m_item->caption(), title);
    tick();
    EXPECT_EQ(shown(), "5:34");
    EXPECT_TRUE(says(1, age, kAmber)) << "the newest image's, whichever is shown";
}

} // namespace
} // namespace raincast
