// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "radar/bitmap.h"
#include "radar/catalogue/antenna_positions.h"
#include "sample/sample_weather.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

const FileTime kNow = fromCalendar({2026, 11, 20, 10, 30, 20});

TEST(SampleWeatherTest, FramesFollowEachOtherEveryFourToSixMinutes) {
    const SampleWeather weather;
    for (const AntennaPosition& antenna : antennaPositions()) {
        const auto times = weather.frameTimes(antenna.id, Product::velocity, kNow);
        ASSERT_GT(times.size(), 40U) << antenna.id;
        EXPECT_LE(times.back(), kNow);
        EXPECT_GT(times.back(), kNow - 6 * kFileTimePerMinute);
        EXPECT_GT(times.front(), kNow - 241 * kFileTimePerMinute);
        for (std::size_t i = 1; i < times.size(); ++i) {
            const FileTime gap = times[i] - times[i - 1];
            EXPECT_GE(gap, 4 * kFileTimePerMinute) << antenna.id;
            EXPECT_LE(gap, 6 * kFileTimePerMinute) << antenna.id;
            EXPECT_EQ(times[i] % kFileTimePerMinute, 0);
        }
    }
}

TEST(SampleWeatherTest, ListingsAgreeWhateverTheMomentTheyAreAskedAt) {
    const SampleWeather weather(2);
    const auto now = weather.frameTimes("TLX", Product::velocity, kNow);
    const auto later =
        weather.frameTimes("TLX", Product::baseReflectivity, kNow + 30 * kFileTimePerMinute);
    for (const FileTime time : now) {
        const bool stillListed = time > kNow - 90 * kFileTimePerMinute;
        const bool found = std::find(later.begin(), later.end(), time) != later.end();
        EXPECT_EQ(found, stillListed);
    }
}

TEST(SampleWeatherTest, AFrameIsAMarkedPictureThatIsTheSameEveryTime) {
    const SampleWeather weather;
    const FileTime time = weather.frameTimes("TLX", Product::baseReflectivity, kNow).back();
    const auto frame = weather.frame("TLX", Product::baseReflectivity, time);
    EXPECT_EQ(SampleWeather(9).frame("TLX", Product::baseReflectivity, time), frame);
    const QImage image = decodeImage(frame.value(), kMostImagePixels);
    ASSERT_EQ(image.size(), QSize(600, 550));
    EXPECT_NE(image.pixel(12, 532), kTransparentWhite);
    EXPECT_TRUE(weather.warnings("TLX", Range::shortRange, time).isSample);
}

/// How many pixels of a sharp picture show what the small one shows there, of 100.
int alike(const QByteArray& usual, const QByteArray& sharp) {
    const QImage small = decodeImage(usual, kMostImagePixels);
    const QImage large = decodeImage(sharp, kMostImagePixels);
    EXPECT_EQ(large.size(), 2 * small.size());
    int same = 0;
    for (int row = 0; row < large.height(); ++row) {
        for (int column = 0; column < large.width(); ++column) {
            same += large.pixel(column, row) == small.pixel(column / 2, row / 2) ? 1 : 0;
        }
    }
    return static_cast<int>(qint64{100} * same / (large.width() * large.height()));
}

TEST(SampleWeatherTest, SharpFramesShowTheSameWeather) {
    const SampleWeather weather;
    const FileTime time = weather.frameTimes("TLX", Product::baseReflectivity, kNow).back();
    for (const Product product : kAllProducts) {
        const auto usual = weather.frame("TLX", product, time);
        const auto sharp = weather.sharpFrame("TLX", product, time, 2);
        ASSERT_TRUE(usual && sharp) << codeOf(product);
        EXPECT_GT(alike(*usual, *sharp), 85) << codeOf(product);
        EXPECT_NE(*weather.frame("TLX", product, time), *sharp);
    }
    EXPECT_FALSE(weather.sharpFrame("TLX", Product::velocity, time + kFileTimePerMinute, 2));
    EXPECT_FALSE(weather.sharpFrame("XXX", Product::velocity, time, 2));
}

TEST(SampleWeatherTest, ThereIsNothingBesideTheTimesAndTheSites) {
    const SampleWeather weather;
    const FileTime time = weather.frameTimes("TLX", Product::velocity, kNow).back();
    EXPECT_EQ(weather.frame("TLX", Product::velocity, time + kFileTimePerMinute), std::nullopt);
    EXPECT_EQ(weather.frame("TLX", Product::velocity, time + kFileTimePerSecond), std::nullopt);
    EXPECT_EQ(weather.frame("XXX", Product::velocity, time), std::nullopt);
    EXPECT_TRUE(weather.warnings("XXX", Range::shortRange, time).warnings.empty());
    EXPECT_TRUE(weather.frameTimes("XXX", Product::velocity, kNow).empty());
    EXPECT_TRUE(weather.frameTimes("TLX", Product::velocity, 0).empty());
}

} // namespace
} // namespace raincast
