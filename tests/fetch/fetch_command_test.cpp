// SPDX-License-Identifier: MIT
// Runs the program itself against a server, as a script would.
#include "fetch/fetch_command.h"
#include "support/files.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/loopback.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>

namespace raincast {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr int kDeadlineMilliseconds = 60'000;

struct Result {
    int status = -1;
    std::string output;
    std::string errors;
};

class FetchCommandTest : public ::testing::Test {
protected:
    /// Runs raincast-fetch with its files below the test's folder.
    Result run(const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TZ", "UTC0");
        environment.insert("XDG_DATA_HOME", m_folder.filePath("data"));
        environment.insert("XDG_CACHE_HOME", m_folder.filePath("caches"));
        environment.insert("RAINCAST_CARD_ROOT", m_folder.filePath("cards"));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        process.setChildProcessModifier([this] {
            const rlimit limit{m_mostBytesOfAFile, m_mostBytesOfAFile};
            setrlimit(RLIMIT_FSIZE, &limit);
        });
        process.start(QStringLiteral(RAINCAST_FETCH_PROGRAM), arguments);
        EXPECT_TRUE(process.waitForFinished(kDeadlineMilliseconds));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {
            process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
    }
    Result fetch(QStringList arguments) {
        arguments << "--radar-server" << m_server.host() << "--cache"
                  << "cache";
        return run(arguments);
    }
    void publish(const QStringList& names) {
        const QString listing = "/ridge/RadarImg/N0R/MUX/";
        m_server.serve(listing, '"' + names.join("\" \"").toLatin1() + '"');
        for (const QString& name : names) {
            m_server.serve(listing + name, makeGif({.screen = {600, 550}}));
        }
    }
    [[nodiscard]] std::string cached(const QString& name) const {
        return m_folder.filePath("cache/MUX/" + name).toStdString();
    }

    /// What is said of a cache that cannot be written.
    [[nodiscard]] std::string cacheFailure(int error) const {
        return "Could not write to\nthe cache folder\n" + m_folder.filePath("cache").toStdString() +
               ":\n" + qt_error_string(error).toStdString() + ".\n";
    }

    rlim_t m_mostBytesOfAFile = RLIM_INFINITY; ///< a small one is a full disk
    QTemporaryDir m_folder;
    HttpServer m_server;
};

TEST_F(FetchCommandTest, PrintsTheFramesOldestFirst) {
    publish({"MUX_20190519_0542_N0R.gif", "MUX_20190519_0554_N0R.gif"});
    const Result result = fetch({"MUX", "N0R", "--frames", "2"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(
        result.output, cached("MUX_20190519_0542_N0R.gif") + "\t5:42\n" +
                           cached("MUX_20190519_0554_N0R.gif") + "\t5:54\n"
    );
    EXPECT_EQ(result.errors, "Updating radar image...\n");
    EXPECT_TRUE(QFile::exists(QString::fromStdString(cached("MUX_20190519_0554_N0R.gif"))));
}

TEST_F(FetchCommandTest, OfQtItNeedsTheCoreAlone) {
    // The system's loader names the libraries instead of starting the program.
    QProcess loader;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_TRACE_LOADED_OBJECTS", "1");
    loader.setProcessEnvironment(environment);
    loader.start(QStringLiteral(RAINCAST_FETCH_PROGRAM), {});
    ASSERT_TRUE(loader.waitForFinished(kDeadlineMilliseconds));
    const QByteArray libraries = loader.readAllStandardOutput();
    EXPECT_EQ(libraries.count("libQt6"), libraries.count("libQt6Core."));
    EXPECT_TRUE(libraries.contains("libQt6Core."));
}

TEST_F(FetchCommandTest, ASecondRunDownloadsNoFrameAgain) {
    publish({"MUX_20190519_0554_N0R.gif"});
    const std::string first = fetch({"MUX"}).output;
    EXPECT_EQ(fetch({"MUX"}).output, first);
    EXPECT_EQ(m_server.count("/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif"), 1);
    EXPECT_EQ(m_server.count("/ridge/Warnings/Short/MUX_Warnings_0.gif"), 2);
}

TEST_F(FetchCommandTest, PicturesAreKnownOutsideOfTheCacheAndDefectiveOnesAreFetchedAgain) {
    const QString name = "MUX_20190519_0554_N0R.gif";
    const QString path = "/ridge/RadarImg/N0R/MUX/" + name;
    publish({name});
    const std::string first = fetch({"MUX"}).output;
    const QByteArray index = readFile(m_folder.filePath("caches/raincast-fetch/pictures"));
    EXPECT_TRUE(index.endsWith(' ' + QByteArray::fromStdString(cached(name)) + '\n'));
    // Not even decoded: nobody sees what a known file is by now.
    EXPECT_EQ(fetch({"MUX"}).output, first);
    EXPECT_EQ(readFile(m_folder.filePath("caches/raincast-fetch/pictures")), index);
    const QString file = QString::fromStdString(cached(name));
    const QByteArray good = readFile(file);
    writeFile(file, QByteArray(good.size(), 'x'));
    EXPECT_EQ(fetch({"MUX"}).output, first);
    EXPECT_EQ(m_server.count(path), 2);
    EXPECT_EQ(readFile(file), good);
}

TEST_F(FetchCommandTest, SomeFramesAreStatusThree) {
    publish({"MUX_20190519_0554_N0R.gif"});
    const Result result = fetch({"MUX", "--frames", "2"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, cached("MUX_20190519_0554_N0R.gif") + "\t5:54\n");
    EXPECT_EQ(result.errors, "Updating radar image...\nCould not get\nall images.\n");
}

TEST_F(FetchCommandTest, NoFrameIsStatusOne) {
    const RefusingPort refusing;
    const Result result = run({"MUX", "--radar-server", refusing.host(), "--cache", "cache"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "Updating radar image...\nCould not access server.\n");
}

TEST_F(FetchCommandTest, WrongUsageIsStatusTwo) {
    const Result result = run({"MUY"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("There is no site MUY."));
    EXPECT_EQ(m_server.count(), 0);
}

TEST_F(FetchCommandTest, AServerIsHostAndPortOnly) {
    for (const QString& server :
         {"http://" + m_server.host(), m_server.host() + "/ridge", QStringLiteral("127.0.0.1:0"),
          QStringLiteral("127.0.0.1:65536"), QStringLiteral("127.0.0.1:"), QStringLiteral("a b")}) {
        const Result result = run({"MUX", "--radar-server", server, "--cache", "cache"});
        EXPECT_EQ(result.status, 2) << server.toStdString();
        EXPECT_EQ(
            result.errors, "raincast-fetch: --radar-server takes HOST or HOST:PORT, the port 1 to "
                           "65535.\nTry raincast-fetch --help.\n"
        );
        EXPECT_FALSE(QFile::exists(m_folder.filePath("cache"))) << server.toStdString();
    }
    EXPECT_EQ(m_server.count(), 0);
}

TEST_F(FetchCommandTest, QuietPrintsTheFramesOnly) {
    publish({"MUX_20190519_0554_N0R.gif"});
    const Result result = fetch({"MUX", "--frames", "2", "--quiet"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.output, EndsWith("\t5:54\n"));
    EXPECT_EQ(result.errors, "");
    // The URLs are asked for by an option of their own.
    EXPECT_THAT(fetch({"MUX", "--quiet", "--verbose"}).errors, StartsWith("http://"));
}

TEST_F(FetchCommandTest, VerboseNamesEachUrlWithItsOutcome) {
    publish({"MUX_20190519_0554_N0R.gif"});
    const Result result = fetch({"MUX", "--verbose"});
    const std::string server = "http://" + m_server.host().toStdString();
    EXPECT_THAT(result.errors, HasSubstr(server + "/ridge/RadarImg/N0R/MUX/ 200\n"));
    EXPECT_THAT(result.errors, HasSubstr("/MUX_20190519_0554_N0R.gif 200\n"));
    EXPECT_THAT(result.errors, HasSubstr("/ridge/Warnings/Short/MUX_Warnings_0.gif 404\n"));

    const RefusingPort refusing;
    const Result refused =
        run({"MUX", "--verbose", "--radar-server", refusing.host(), "--cache", "cache"});
    EXPECT_THAT(refused.errors, HasSubstr("Couldn't connect to server"));
}

TEST_F(FetchCommandTest, NoWarningsAsksForNone) {
    publish({"MUX_20190519_0554_N0R.gif"});
    EXPECT_EQ(fetch({"MUX", "--no-warnings"}).status, 0);
    EXPECT_EQ(m_server.count("/ridge/Warnings/Short/MUX_Warnings_0.gif"), 0);
}

TEST_F(FetchCommandTest, TheDefaultCacheIsTheApplicationsOwn) {
    publish({"MUX_20190519_0554_N0R.gif"});
    const Result result = run({"MUX", "--radar-server", m_server.host()});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(
        result.output, HasSubstr("/data/Quorvane/Temp/Weather/MUX/MUX_20190519_0554_N0R.gif\t")
    );
}

TEST_F(FetchCommandTest, ACardThatHasTheFolderIsTheDefaultCache) {
    ASSERT_TRUE(QDir(m_folder.path()).mkpath("cards/one"));
    ASSERT_TRUE(QDir(m_folder.path()).mkpath("cards/two/Quorvane"));
    publish({"MUX_20190519_0554_N0R.gif"});
    const Result result = run({"MUX", "--radar-server", m_server.host()});
    EXPECT_THAT(result.output, HasSubstr("/cards/two/Quorvane/Temp/Weather/MUX/"));
}

TEST_F(FetchCommandTest, FramesThatCannotBeToldAreNoSuccess) {
    publish({"MUX_20190519_0554_N0R.gif"});
    QProcess process;
    process.setStandardOutputFile("/dev/full");
    process.start(
        QStringLiteral(RAINCAST_FETCH_PROGRAM),
        {"MUX", "--radar-server", m_server.host(), "--cache", m_folder.filePath("cache")}
    );
    ASSERT_TRUE(process.waitForFinished(kDeadlineMilliseconds));
    EXPECT_EQ(process.exitCode(), 1);
}

TEST_F(FetchCommandTest, HelpThatCannotBeToldIsNoSuccess) {
    QProcess process;
    process.setStandardOutputFile("/dev/full");
    process.start(QStringLiteral(RAINCAST_FETCH_PROGRAM), {"--help"});
    ASSERT_TRUE(process.waitForFinished(kDeadlineMilliseconds));
    EXPECT_EQ(process.exitCode(), 1);
}

TEST_F(FetchCommandTest, WithoutAFolderForTheCacheNothingIsAskedFor) {
    QFile inTheWay(m_folder.filePath("data"));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    const Result result = run({"MUX", "--radar-server", m_server.host()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "There is no folder for the image cache.\n");
    EXPECT_EQ(m_server.count(), 0);
    EXPECT_EQ(run({"MUX", "--quiet", "--radar-server", m_server.host()}).errors, "");
}

TEST_F(FetchCommandTest, ACacheFolderThatCannotBeWrittenIsNamed) {
    publish({"MUX_20190519_0554_N0R.gif"});
    writeFile(m_folder.filePath("cache"), "a file where the folder should be");
    const Result result = fetch({"MUX"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "Updating radar image...\n" + cacheFailure(ENOTDIR));
    EXPECT_EQ(fetch({"MUX", "--quiet"}).errors, "");

    ASSERT_TRUE(QFile::remove(m_folder.filePath("cache")));
    m_mostBytesOfAFile = 10;
    const Result full = fetch({"MUX", "--verbose"});
    EXPECT_EQ(full.status, 1);
    // The warnings' 404 may come before or behind it.
    EXPECT_THAT(full.errors, HasSubstr(cacheFailure(EFBIG)));
    EXPECT_THAT(
        full.errors,
        HasSubstr("_0554_N0R.gif 200, not written: " + qt_error_string(EFBIG).toStdString())
    );
    EXPECT_FALSE(QFile::exists(QString::fromStdString(cached("MUX_20190519_0554_N0R.gif"))));
}

TEST_F(FetchCommandTest, AnOlderFrameForWantOfRoomIsSomeFrames) {
    publish({"MUX_20190519_0542_N0R.gif"});
    EXPECT_EQ(fetch({"MUX"}).status, 0);
    publish({"MUX_20190519_0542_N0R.gif", "MUX_20190519_0554_N0R.gif"});
    m_mostBytesOfAFile = 10;
    const Result result = fetch({"MUX"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, cached("MUX_20190519_0542_N0R.gif") + "\t5:42\n");
    EXPECT_EQ(result.errors, "Updating radar image...\n" + cacheFailure(EFBIG));
}

TEST_F(FetchCommandTest, ALogInPageIsNoFrame) {
    publish({"MUX_20190519_0554_N0R.gif"});
    const QString frame = "/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif";
    m_server.serve(frame, "<html>Please log in</html>");
    const Result result = fetch({"MUX", "--verbose"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr(frame.toStdString() + " 200, no GIF image\n"));
    EXPECT_THAT(result.errors, HasSubstr("\nCould not download\nany radar images.\n"));
    EXPECT_FALSE(QFile::exists(QString::fromStdString(cached("MUX_20190519_0554_N0R.gif"))));

    publish({"MUX_20190519_0554_N0R.gif"});
    EXPECT_EQ(fetch({"MUX"}).status, 0);
}

TEST_F(FetchCommandTest, QuietSaysNothingOfADefectiveFrame) {
    // A JPEG's start, frame header and end, but no picture.
    const QByteArray defective =
        QByteArray::fromHex("FFD8 FFC0000B080010001001011100 FFDA0008010100003F00 FFD9");
    writeFile(QString::fromStdString(cached("MUX_20190519_0554_N0R.gif")), defective);
    publish({"MUX_20190519_0554_N0R.gif"});
    m_server.serve("/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif", defective);
    const Result result = fetch({"MUX", "--quiet"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "");
}

TEST_F(FetchCommandTest, HelpAndVersionGoToStandardOutput) {
    EXPECT_EQ(run({"--version"}).output, "raincast-fetch " RAINCAST_VERSION "\n");
    const Result help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("--radar-server"));
}

} // namespace
} // namespace raincast
