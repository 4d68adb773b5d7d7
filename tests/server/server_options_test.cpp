// SPDX-License-Identifier: MIT
#include "server/server_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;

tl::expected<ServerOptions, CommandLineAnswer> read(QStringList arguments) {
    arguments.prepend("raincast-server");
    return readServerOptions(arguments);
}

ServeOptions serving(const QStringList& arguments) {
    const auto result = read(arguments);
    const auto* const options = result ? std::get_if<ServeOptions>(&*result) : nullptr;
    EXPECT_NE(options, nullptr) << qPrintable(arguments.join(u' '));
    return options == nullptr ? ServeOptions() : *options;
}

TEST(ServerOptionsTest, ServesSampleWeatherOnLoopbackByDefault) {
    const ServeOptions options = serving({});
    EXPECT_EQ(options.listen, (ListenAddress{"127.0.0.1", 8155}));
    EXPECT_EQ(options.level3Folder, QString());
    EXPECT_EQ(options.hours, 4);
    EXPECT_FALSE(options.endWithParent);
}

TEST(ServerOptionsTest, TakesEverything) {
    const ServeOptions options = serving(
        {"--listen", "0.0.0.0:80", "--level3", "feed", "--hours", "0", "--publish", "www",
         "--sites", "lwx,MUX", "--once", "--roads", "r.shp", "--cache", "c", "--end-with-parent",
         "--quiet"}
    );
    EXPECT_EQ(options.listen, (ListenAddress{"0.0.0.0", 80}));
    EXPECT_EQ(options.level3Folder, "feed");
    EXPECT_EQ(options.hours, 0);
    EXPECT_EQ(options.publishFolder, "www");
    EXPECT_EQ(options.publishSites, (QStringList{"LWX", "MUX"}));
    EXPECT_TRUE(options.once);
    EXPECT_EQ(options.roadsFile, "r.shp");
    EXPECT_EQ(options.cacheFolder, "c");
    EXPECT_TRUE(options.endWithParent);
    EXPECT_TRUE(options.quiet);
}

TEST(ServerOptionsTest, LiveWeatherMayBeOfThePast) {
    EXPECT_FALSE(serving({"--live"}).live.replay);
    const auto options = serving({"--live", "--replay", "2021-12-11T02:00Zx10"});
    EXPECT_EQ(options.live.replay, (Replay{fromCalendar({2021, 12, 11, 2, 0}), 10}));
    EXPECT_EQ(serving({"--live", "--replay", "2020-01-01T00:00Z"}).live.replay->speed, 1);
}

TEST(ServerOptionsTest, FetchesLiveWeather) {
    ServeOptions options = serving({"--live", "--hours", "26"});
    EXPECT_EQ(options.source, SourceKind::live);
    EXPECT_EQ(options.live.frames, std::nullopt);
    options = serving(
        {"--live", "--live-frames", "http://127.0.0.1:1/bucket/", "--live-fallback", "none",
         "--live-warnings", "https://alerts.example", "--contact", "me@radar.example"}
    );
    EXPECT_EQ(options.live.frames, "http://127.0.0.1:1/bucket");
    EXPECT_EQ(options.live.fallback, "");
    EXPECT_EQ(options.live.warnings, "https://alerts.example");
    EXPECT_EQ(options.live.contact, "me@radar.example");
    EXPECT_EQ(
        serving({"--live", "--publish", "www", "--sites", "TLX"}).publishSites, QStringList("TLX")
    );
}

TEST(ServerOptionsTest, APublisherListensOnlyIfAskedTo) {
    EXPECT_FALSE(serving({"--publish", "www"}).listen);
    EXPECT_TRUE(serving({"--publish", "www", "--listen", "[::1]:0"}).listen);
}

TEST(ServerOptionsTest, PublishesSharpPicturesIfAskedTo) {
    EXPECT_EQ(serving({"--publish", "www"}).publishDetail, 1);
    EXPECT_EQ(serving({"--publish", "www", "--detail", "1"}).publishDetail, 1);
    EXPECT_EQ(serving({"--publish", "www", "--detail", "2"}).publishDetail, 2);
    EXPECT_EQ(serving({"--publish", "www", "--detail", "4"}).publishDetail, 4);
}

TEST(ServerOptionsTest, Renders) {
    const auto result = read({"render", "in", "out.gif"});
    ASSERT_TRUE(result.has_value());
    const auto* const render = std::get_if<RenderOptions>(&*result);
    ASSERT_NE(render, nullptr);
    EXPECT_EQ(render->file, "in");
    EXPECT_EQ(render->outFile, "out.gif");
    EXPECT_EQ(render->detail, 1);
    const auto sharp = read({"render", "in", "out.gif", "--detail", "4"});
    ASSERT_TRUE(sharp.has_value());
    EXPECT_EQ(std::get<RenderOptions>(*sharp).detail, 4);
}

TEST(ServerOptionsTest, AnswersForHelpAndVersion) {
    const auto help = read({"--help"});
    ASSERT_FALSE(help.has_value());
    EXPECT_FALSE(help.error().isUsageError);
    EXPECT_THAT(help.error().text.toStdString(), HasSubstr("--level3"));
    const auto version = read({"--version"});
    ASSERT_FALSE(version.has_value());
    EXPECT_EQ(version.error().text, "raincast-server " RAINCAST_VERSION "\n");
}

struct WrongRow {
    QStringList arguments;
    const char* text;
};

class WrongServerOptionsTest : public ::testing::TestWithParam<WrongRow> {};

TEST_P(WrongServerOptionsTest, AreNamed) {
    const auto result = read(GetParam().arguments);
    ASSERT_FALSE(result.has_value());
    EXPECT_TRUE(result.error().isUsageError);
    EXPECT_THAT(result.error().text.toStdString(), HasSubstr(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Usages, WrongServerOptionsTest,
    ::testing::Values(
        WrongRow{{"--nothing"}, "nothing"}, WrongRow{{"render", "in"}, "render FILE OUT.gif"},
        WrongRow{{"serve"}, "render FILE OUT.gif"},
        WrongRow{{"render", "in", "out.gif", "--detail", "3"}, "--detail takes 1, 2 or 4"},
        WrongRow{{"render", "in", "out.gif", "--detail="}, "--detail takes a value"},
        WrongRow{{"--detail", "2"}, "--detail goes with render or --publish"},
        WrongRow{{"--publish", "d", "--detail", "3"}, "--detail takes 1, 2 or 4"},
        WrongRow{{"--publish", "d", "--detail", "x2"}, "--detail takes 1, 2 or 4"},
        WrongRow{{"--publish", "d", "--detail", "-2"}, "--detail takes 1, 2 or 4"},
        WrongRow{{"--sample", "--level3", "d"}, "exclude"}, WrongRow{{"--hours", "49"}, "0 to 48"},
        WrongRow{{"--hours", "x"}, "0 to 48"}, WrongRow{{"--hours", "-1"}, "0 to 48"},
        WrongRow{{"--hours", "0"}, "--level3"}, WrongRow{{"--once"}, "--publish"},
        WrongRow{{"--sites", "LWX"}, "--publish"},
        WrongRow{{"--publish", "d", "--sites", "LWX,XXX"}, "no site XXX"},
        WrongRow{{"--listen", "8155"}, "ADDRESS:PORT"}, WrongRow{{"--help-all"}, "help-all"},
        WrongRow{{"--level3", ""}, "--level3 takes a value."},
        WrongRow{{"--publish="}, "--publish takes a value."},
        WrongRow{{"--cache", "", "--quiet"}, "--cache takes a value."},
        WrongRow{{"--live", "--sample"}, "--sample and --live exclude"},
        WrongRow{{"--live", "--level3", "d"}, "--level3 and --live exclude"},
        WrongRow{{"--live", "--hours", "0"}, "--level3"},
        WrongRow{{"--live", "--publish", "d"}, "needs --sites"},
        WrongRow{{"--live-frames", "http://a"}, "needs --live"},
        WrongRow{{"--replay", "2021-12-11T02:00Z"}, "needs --live"},
        WrongRow{{"--sample", "--replay", "2021-12-11T02:00Z"}, "needs --live"},
        WrongRow{{"--live", "--replay", "yesterday"}, "takes a time like 2021-12-11T02:00Z"},
        WrongRow{{"--live", "--replay", "2021-12-11T02:00Zx61"}, "from 1 to 60"},
        WrongRow{{"--live", "--replay", "2019-12-31T23:59Z"}, "between 2020 and now"},
        WrongRow{{"--live", "--replay", "2999-01-01T00:00Z"}, "between 2020 and now"},
        WrongRow{{"--contact", "a"}, "needs --live"},
        WrongRow{{"--live", "--live-frames", "ftp://a"}, "begins with http://"},
        WrongRow{{"--live", "--live-warnings", "http://"}, "begins with http://"},
        WrongRow{{"--live", "--live-fallback", "off"}, "the word none"}
    )
);

TEST(ListenAddressTest, TakesAddressAndPort) {
    EXPECT_EQ(readListenAddress("127.0.0.1:8155"), (ListenAddress{"127.0.0.1", 8155}));
    EXPECT_EQ(readListenAddress("[::1]:0"), (ListenAddress{"::1", 0}));
    EXPECT_EQ(readListenAddress("radar.home:65535"), (ListenAddress{"radar.home", 65535}));
}

TEST(ListenAddressTest, TakesNothingElse) {
    for (const char* text :
         {"", ":", ":80", "a:", "a", "a:65536", "a:-1", "a:x", "::1:80", "[]:80", "a: 80x"}) {
        EXPECT_FALSE(readListenAddress(text)) << text;
    }
}

} // namespace
} // namespace raincast
