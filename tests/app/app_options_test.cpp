// SPDX-License-Identifier: MIT
#include "app/app_options.h"
#include "support/files.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using testing::HasSubstr;

AppOptions good(const QStringList& arguments) {
    const auto read = readAppOptions(QStringList("raincast") + arguments);
    EXPECT_TRUE(read.has_value());
    return read.value_or(AppOptions());
}

CommandLineAnswer answer(const QStringList& arguments) {
    const auto read = readAppOptions(QStringList("raincast") + arguments);
    EXPECT_FALSE(read.has_value());
    return read ? CommandLineAnswer() : read.error();
}

TEST(AppOptionsTest, NothingIsAskedByAnEmptyCommandLine) {
    const AppOptions options = good({});
    EXPECT_TRUE(options.pageFile.isEmpty());
    EXPECT_TRUE(options.geometry.isEmpty());
    EXPECT_TRUE(options.screenshot.isEmpty());
    EXPECT_TRUE(options.nmea.isEmpty());
    EXPECT_TRUE(options.qtArguments.isEmpty());
}

TEST(AppOptionsTest, FilesBecomeAbsolute) {
    const AppOptions options = good({"--page-file", "my.cfg", "--screenshot=/tmp/a.png"});
    EXPECT_EQ(options.pageFile, QDir::current().filePath("my.cfg"));
    EXPECT_EQ(options.screenshot, "/tmp/a.png");
}

TEST(AppOptionsTest, AFileThatIsThereIsThePageFile) {
    const QTemporaryDir folder;
    const QString pages = folder.filePath("coast.raincast");
    writeFile(pages, QByteArray());
    EXPECT_EQ(good({pages, "--geometry", "240x320"}).pageFile, pages);
    EXPECT_EQ(good({QDir::current().relativeFilePath(pages)}).pageFile, pages);
}

TEST(AppOptionsTest, TheSizeIsTwoNumbers) {
    EXPECT_EQ(good({"--geometry", "240x320"}).geometry, QSize(240, 320));
    EXPECT_EQ(good({"--geometry=1920X1080"}).geometry, QSize(1920, 1080));
}

TEST(AppOptionsTest, ASiteAndAProductAreKnownByTheirNames) {
    const AppOptions options = good({"--site", "mux", "--product", "n0v"});
    EXPECT_EQ(options.siteId, "MUX");
    EXPECT_EQ(options.product, 5);
    EXPECT_EQ(good({"--site", "LWX"}).product, std::nullopt);
    EXPECT_EQ(good({"--site", "LWX", "--product", "N0R"}).product, 0);
    EXPECT_TRUE(good({}).siteId.isEmpty());
    EXPECT_EQ(good({"--welcome", "tlx"}).welcomeSiteId, "TLX");
    EXPECT_TRUE(good({"--welcome", "tlx"}).siteId.isEmpty());
    EXPECT_TRUE(answer({"--welcome", "TLY"}).isUsageError);
    EXPECT_TRUE(answer({"--welcome", "TLX", "--product", "N0R"}).isUsageError);
    EXPECT_TRUE(answer({"--site", "MUY"}).isUsageError);
    EXPECT_TRUE(answer({"--site", "MUX", "--product", "N0X"}).isUsageError);
    EXPECT_TRUE(answer({"--product", "N0V"}).isUsageError);
}

TEST(AppOptionsTest, ServersAreHosts) {
    const AppOptions options =
        good({"--radar-server", "radar.example", "--basemap-server", "127.0.0.1:8155"});
    EXPECT_EQ(options.radarServer, "radar.example");
    EXPECT_EQ(options.basemapServer, "127.0.0.1:8155");
    for (const char* host : {"http://radar.example", "radar.example:", "radar example", "a/b"}) {
        EXPECT_TRUE(answer({"--radar-server", host}).isUsageError) << host;
        EXPECT_TRUE(answer({"--basemap-server", host}).isUsageError) << host;
    }
}

TEST(AppOptionsTest, OddSizesAreComplainedOf) {
    for (const char* size :
         {"240", "x320", "240x", "99x320", "240x99", "240x320x1", "-240x320", "16385x320",
          "99999999999x320", "240 x 320", "240x320+1+1", ","}) {
        const CommandLineAnswer complaint = answer({"--geometry", size});
        EXPECT_TRUE(complaint.isUsageError) << size;
        EXPECT_THAT(
            complaint.text.toStdString(),
            HasSubstr("--geometry takes WIDTHxHEIGHT, each from 100 to 16384.")
        ) << size;
    }
}

TEST(AppOptionsTest, QtsOwnOptionsAreHandedOn) {
    const AppOptions options = good(
        {"-platform", "offscreen", "--geometry", "300x400", "--style=fusion", "-reverse", "--nmea",
         "file:gps.log"}
    );
    EXPECT_EQ(
        options.qtArguments, QStringList({"-platform", "offscreen", "-style", "fusion", "-reverse"})
    );
    EXPECT_EQ(options.geometry, QSize(300, 400));
    EXPECT_EQ(options.nmea, "file:gps.log");
}

TEST(AppOptionsTest, HelpNamesEveryOptionOfOurs) {
    for (const char* option : {"--help", "-h", "-help"}) {
        const CommandLineAnswer help = answer({option});
        EXPECT_FALSE(help.isUsageError);
        for (const char* text :
             {" [options] [FILE]", "--page-file <FILE>", "--geometry <WxH>", "--screenshot <FILE>",
              "--nmea <SOURCE>", "--version", "Qt's own options"}) {
            EXPECT_THAT(help.text.toStdString(), HasSubstr(text));
        }
        EXPECT_FALSE(help.text.contains("platformtheme"));
    }
}

TEST(AppOptionsTest, TheVersionIsOneLine) {
    for (const char* option : {"--version", "-v"}) {
        EXPECT_EQ(answer({option}).text, "raincast " RAINCAST_VERSION "\n");
        EXPECT_FALSE(answer({option}).isUsageError);
    }
}

TEST(AppOptionsTest, WrongUsageIsComplainedOf) {
    struct Row {
        QStringList arguments;
        const char* complaint;
    };
    const Row rows[] = {
        {{"--pagefile", "x"}, "Unknown option 'pagefile'."},
        {{"--page-file"}, "Missing value after '--page-file'."},
        {{"--page-file="}, "--page-file takes a value."},
        {{"--screenshot", ""}, "--screenshot takes a value."},
        {{"no/pages.cfg"}, "There is no file no/pages.cfg."},
        {{"."}, "There is no file .."},
        {{__FILE__, "pages.cfg"}, "Unexpected argument \"pages.cfg\"."},
        {{"--page-file", "my.cfg", "pages.cfg"}, "Unexpected argument \"pages.cfg\"."},
    };
    for (const Row& row : rows) {
        const CommandLineAnswer complaint = answer(row.arguments);
        EXPECT_TRUE(complaint.isUsageError);
        EXPECT_EQ(
            complaint.text.toStdString(),
            "raincast: " + std::string(row.complaint) + "\nTry raincast --help.\n"
        );
    }
}

TEST(AppOptionsTest, AnOddSourceOfPositionsIsComplainedOf) {
    const CommandLineAnswer complaint = answer({"--nmea", "carrier-pigeon"});
    EXPECT_TRUE(complaint.isUsageError);
    EXPECT_TRUE(complaint.text.startsWith("raincast: --nmea: ")) << complaint.text.toStdString();
}

} // namespace
} // namespace raincast
