// SPDX-License-Identifier: MIT
#include "fetch/fetch_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

tl::expected<FetchOptions, CommandLineAnswer> read(QStringList words) {
    words.prepend(QStringLiteral("raincast-fetch"));
    return readFetchOptions(words);
}

FetchOptions optionsOf(const QStringList& words) {
    const auto result = read(words);
    EXPECT_TRUE(result.has_value()) << words.join(u' ').toStdString();
    return result.value_or(FetchOptions());
}

std::string complaintOf(const QStringList& words) {
    const auto result = read(words);
    return !result && result.error().isUsageError ? result.error().text.toStdString()
                                                  : std::string();
}

TEST(FetchOptionsTest, ASiteIsEnough) {
    const FetchOptions options = optionsOf({"MUX"});
    EXPECT_EQ(options.siteId, QStringLiteral("MUX"));
    EXPECT_EQ(options.product, 0);
    EXPECT_EQ(options.frames, 1);
    EXPECT_EQ(options.intervalMinutes, 9);
    EXPECT_EQ(options.cacheFolder, QString());
    EXPECT_EQ(options.radarServer, QStringLiteral("127.0.0.1:8155"));
    EXPECT_TRUE(options.warnings);
    EXPECT_FALSE(options.quiet);
    EXPECT_FALSE(options.verbose);
}

TEST(FetchOptionsTest, EverythingCanBeSaid) {
    const FetchOptions options = optionsOf(
        {"lwx", "n0z", "--frames", "25", "--interval=60", "--cache", "/tmp/x", "--radar-server",
         "radar.example:8080", "--no-warnings", "--quiet", "--verbose"}
    );
    EXPECT_EQ(options.siteId, QStringLiteral("LWX"));
    EXPECT_EQ(options.product, 2);
    EXPECT_EQ(options.frames, 25);
    EXPECT_EQ(options.intervalMinutes, 60);
    EXPECT_EQ(options.cacheFolder, QStringLiteral("/tmp/x"));
    EXPECT_EQ(options.radarServer, QStringLiteral("radar.example:8080"));
    EXPECT_FALSE(options.warnings);
    EXPECT_TRUE(options.quiet);
    EXPECT_TRUE(options.verbose);
}

TEST(FetchOptionsTest, AComplaintEndsInOnePeriod) {
    EXPECT_THAT(complaintOf({"--nonesuch"}), HasSubstr("nonesuch'.\n"));
    EXPECT_THAT(complaintOf({"MUX", "--frames"}), Not(HasSubstr("..")));
}

TEST(FetchOptionsTest, AnUnknownNameIsRefusedWithTheNearestOnes) {
    EXPECT_THAT(complaintOf({"MUY"}), HasSubstr("There is no site MUY. The nearest are "));
    EXPECT_THAT(complaintOf({"MUY"}), HasSubstr("MUX (CA:San Francisco Bay Area)"));
    EXPECT_THAT(complaintOf({"MUX", "N0X"}), HasSubstr("There is no product N0X."));
    EXPECT_THAT(complaintOf({"MUX", "N0X"}), HasSubstr("N0R (Base Reflectivity)"));
}

TEST(FetchOptionsTest, WrongUsageIsRefused) {
    const QStringList wrong[] = {
        {},
        {"MUX", "N0R", "N0V"},
        {""},
        {"../"},
        {"MUX", "--frames", "0"},
        {"MUX", "--frames", "26"},
        {"MUX", "--frames", "six"},
        {"MUX", "--frames", "6.0"},
        {"MUX", "--frames", ""},
        {"MUX", "--frames"},
        {"MUX", "--interval", "0"},
        {"MUX", "--interval", "61"},
        {"MUX", "--radar-server", ""},
        {"MUX", "--radar-server", "http://radar.example"},
        {"MUX", "--radar-server", "radar.example/ridge"},
        {"MUX", "--radar-server", "radar.example:0"},
        {"MUX", "--radar-server", "radar.example:65536"},
        {"MUX", "--no-such-option"},
    };
    for (const QStringList& words : wrong) {
        EXPECT_NE(complaintOf(words), "") << words.join(u' ').toStdString();
    }
}

TEST(FetchOptionsTest, HelpAndVersionAreAnswers) {
    for (const char* word : {"--help", "-h", "--version", "-v"}) {
        const auto result = read({QString::fromLatin1(word)});
        ASSERT_FALSE(result.has_value()) << word;
        EXPECT_FALSE(result.error().isUsageError) << word;
    }
    const auto version = read({"--version"});
    EXPECT_EQ(version.error().text, "raincast-fetch " RAINCAST_VERSION "\n");
}

} // namespace
} // namespace raincast
