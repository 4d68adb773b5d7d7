// SPDX-License-Identifier: MIT
#include "core/clock.h"
#include "image/composite.h"
#include "image/image_file.h"
#include "radar/radar_update.h"
#include "radar/warning_texts.h"
#include "support/fault_server.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"
#include "support/test_clock.h"
#include "support/time_zone.h"
#include "support/transfers.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>

namespace raincast {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

const QString kUpdating = QStringLiteral("Updating radar image...\n");
const QString kNoServer = QStringLiteral("Could not access server.\n");
const QString kNoImages = QStringLiteral("No radar images found on server.\n");
const QString kNoFrame = QStringLiteral("Could not download\nany radar images.\n");
const QString kNotAll = QStringLiteral("Could not get\nall images.\n");

const QString kListing = QStringLiteral("/ridge/RadarImg/N0R/MUX/");
const QString kWarnings = QStringLiteral("/ridge/Warnings/Short/MUX_Warnings_0.gif");
const QString kTexts = QStringLiteral("/ridge/Warnings/Short/MUX_Warnings_0.json");

constexpr QRgb kEcho = 0xFF00FF00;
constexpr QRgb kWarning = 0xFFFF0000;

/// A picture of 60 × 55: one echo at (10, 10), otherwise transparent.
QByteArray frameGif() {
    return makeGif({.screen = {60, 55}, .transparent = 1, .pixel = [](int column, int row) {
                        return column == 10 && row == 10 ? 3 : 1;
                    }});
}

/// A polygon's corner at (20, 20), black and transparent elsewhere.
QByteArray warningsGif() {
    return makeGif({.screen = {60, 55}, .transparent = 0, .pixel = [](int column, int row) {
                        return column == 20 && row == 20 ? 2 : 0;
                    }});
}

/// Writes down what an update reports.
class Recorder : public RadarUpdateObserver {
public:
    void statusChanged(const QString& status) override { statuses.push_back(status); }
    void repaint() override {
        ++repaints;
        if (watch) {
            watch();
        }
    }
    void progress(int done, int wanted) override { steps.emplace_back(done, wanted); }

    std::vector<QString> statuses;
    std::vector<std::pair<int, int>> steps;
    int repaints = 0;
    std::function<void()> watch; ///< called at each repaint
};

class RadarUpdateTest : public ::testing::Test {
protected:
    RadarUpdateTest() {
        m_state.siteId = QStringLiteral("MUX");
        m_state.cacheFolder = m_folder.filePath(QStringLiteral("cache"));
        m_state.showWarnings = false;
    }

    static QString nameOf(const QString& stamp) {
        return QStringLiteral("MUX_%1_N0R.gif").arg(stamp);
    }
    [[nodiscard]] QString cached(const QString& name) const {
        return m_state.cacheFolder + QStringLiteral("/MUX/") + name;
    }

    /// Lists frames of these UTC times, "20190519_0554", and serves them.
    void publish(const QStringList& stamps) {
        QByteArray listing = "<html><body>";
        for (const QString& stamp : stamps) {
            const QString name = nameOf(stamp);
            listing += "<a href=\"" + name.toLatin1() + "\">" + name.toLatin1() + "</a>\n";
            m_server.serve(kListing + name, frameGif());
        }
        m_server.serve(kListing, listing + "</body></html>");
    }
    /// The status text of a cache that cannot be written.
    [[nodiscard]] QString cacheFailure(int error) const {
        return QStringLiteral("Could not write to\nthe cache folder\n%1:\n%2.\n")
            .arg(m_state.cacheFolder, qt_error_string(error));
    }
    void animate(int frames, int interval) {
        m_state.animate = true;
        m_state.frameCount = frames;
        m_state.frameInterval = interval;
    }
    bool update() { return updateFrom(m_server.host()); }
    bool updateFrom(const QString& host) {
        CHttpTransfer transfer(m_transfers.downloads(), host, true, false);
        RadarUpdate run(m_state, m_recorder, transfer, m_loaders);
        return m_transfers.loop().resultOf<bool>([&run](const RadarUpdate::Done& done) {
            run.UpdateRadar(done);
        });
    }
    /// Whether the warnings of the server are to be drawn.
    [[nodiscard]] bool warned() const {
        return warningsUse(m_state) == WarningsUse::drawn &&
               m_state.warnings.picture->pixel(20, 20) == kWarning;
    }
    [[nodiscard]] QStringList frameStamps() const {
        QStringList stamps;
        for (const RadarFrame& frame : m_state.frames) {
            stamps += QFileInfo(frame.path).fileName().mid(4, 13);
        }
        return stamps;
    }

    const TimeZone m_zone{"UTC0"};
    QTemporaryDir m_folder;
    HttpServer m_server;
    RadarState m_state;
    PictureLoaders m_loaders = shownPictures();
    Recorder m_recorder;
    Transfers m_transfers;
};

TEST_F(RadarUpdateTest, WithoutAnimationOneFrameIsFetchedWhateverTheCount) {
    publish({"20190519_0542", "20190519_0548", "20190519_0554"});
    m_state.frameCount = 6;
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), QStringList{"20190519_0554"});
    EXPECT_EQ(m_state.current.path, cached(nameOf("20190519_0554")));
    EXPECT_EQ(m_state.current.timeText, QStringLiteral("5:54"));
    EXPECT_EQ(m_state.current.bitmap, m_state.frames[0].bitmap);
    EXPECT_EQ(m_state.imageWidth, 60);
    EXPECT_EQ(m_state.imageHeight, 55);
    EXPECT_EQ(m_state.status, QString());
    EXPECT_TRUE(QFile::exists(m_state.current.path));
}

TEST_F(RadarUpdateTest, FramesLieAtLeastTheIntervalApart) {
    publish(
        {"20190519_0446", "20190519_0452", "20190519_0457", "20190519_0503", "20190519_0508",
         "20190519_0514", "20190519_0519", "20190519_0525", "20190519_0530", "20190519_0536",
         "20190519_0542", "20190519_0548", "20190519_0554"}
    );
    animate(6, 9);
    EXPECT_TRUE(update());
    EXPECT_EQ(
        frameStamps(), (QStringList{
                           "20190519_0457", "20190519_0508", "20190519_0519", "20190519_0530",
                           "20190519_0542", "20190519_0554"})
    );
    EXPECT_EQ(m_state.position, 5U);
    EXPECT_EQ(m_state.animationCounter, 16);
    EXPECT_EQ(m_state.current.path, m_state.frames.back().path);
    EXPECT_EQ(m_state.status, QString());
}

TEST_F(RadarUpdateTest, AnIntervalOfOneTakesEveryListedFrame) {
    publish({"20190519_0552", "20190519_0553", "20190519_0554"});
    animate(3, 1);
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), (QStringList{"20190519_0552", "20190519_0553", "20190519_0554"}));
}

TEST_F(RadarUpdateTest, FramesAreFoundAcrossMidnightAndTheYear) {
    publish({"20191231_2355", "20200101_0004"});
    animate(2, 9);
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), (QStringList{"20191231_2355", "20200101_0004"}));
}

TEST_F(RadarUpdateTest, FramesAreFoundAcrossALeapDay) {
    publish({"20160228_2355", "20160229_0004", "20160229_2356", "20160301_0005"});
    animate(2, 9);
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), (QStringList{"20160229_2356", "20160301_0005"}));
    publish({"20160228_2355", "20160229_0004"});
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), (QStringList{"20160228_2355", "20160229_0004"}));
}

TEST_F(RadarUpdateTest, AHundredMinutesAreSearchedForEachFrame) {
    animate(2, 9);
    publish({"20190519_0406", "20190519_0554"}); // 108 minutes: the last one that is tried
    EXPECT_TRUE(update());
    EXPECT_EQ(m_state.frames.size(), 2U);

    publish({"20190519_0405", "20190519_0554"});
    EXPECT_TRUE(update());
    EXPECT_EQ(m_state.frames.size(), 1U);
    EXPECT_EQ(m_state.status, kNotAll);
}

TEST_F(RadarUpdateTest, AListingOfTheNewestFrameOnlyGivesThatAndSaysSo) {
    publish({"20190519_0554"});
    animate(6, 9);
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), QStringList{"20190519_0554"});
    EXPECT_EQ(m_state.status, kNotAll);
    EXPECT_THAT(m_recorder.statuses, ElementsAre(kUpdating, kNotAll));
}

TEST_F(RadarUpdateTest, TellsWhatItDoes) {
    publish({"20190519_0534", "20190519_0544", "20190519_0554"});
    animate(3, 9);
    EXPECT_TRUE(update());
    EXPECT_THAT(m_recorder.statuses, ElementsAre(kUpdating, QString()));
    EXPECT_THAT(
        m_recorder.steps,
        ElementsAre(std::pair(0, 3), std::pair(1, 3), std::pair(2, 3), std::pair(3, 3))
    );
    // At its start, with the newest frame, and at its end.
    EXPECT_EQ(m_recorder.repaints, 3);
}

TEST_F(RadarUpdateTest, AFailureIsShownAsItComes) {
    publish({});
    EXPECT_FALSE(update());
    ASSERT_EQ(m_recorder.statuses.size(), 2U);
    EXPECT_EQ(m_recorder.repaints, 2) << "at its start, and with what went wrong";
}

TEST_F(RadarUpdateTest, ASecondUpdateDownloadsNoFrameAgain) {
    publish({"20190519_0544", "20190519_0554"});
    animate(2, 9);
    EXPECT_TRUE(update());
    EXPECT_TRUE(update());
    EXPECT_EQ(m_server.count(kListing), 2);
    EXPECT_EQ(m_server.count(kListing + nameOf("20190519_0544")), 1);
    EXPECT_EQ(m_server.count(kListing + nameOf("20190519_0554")), 1);
    EXPECT_EQ(m_state.frames.size(), 2U);
}

/// A frame whose one echo is in another column.
QByteArray otherGif() {
    return makeGif({.screen = {60, 55}, .transparent = 1, .pixel = [](int column, int row) {
                        return column == 30 && row == 10 ? 3 : 1;
                    }});
}

/// A server whose newest frame may be replaced, as one of live radar has it.
class NewestFrameTest : public RadarUpdateTest {
protected:
    NewestFrameTest() { publish({"20190519_0544", "20190519_0554"}); }

    /// Serves the newest frame with a tag.
    void tag(const QByteArray& body, const QByteArray& tag, QByteArray control = "no-cache") {
        m_server.handle(kNewest, [=](const HttpServer::Request& request) {
            HttpServer::Response response;
            const bool isKnown = request.header("If-None-Match") == tag;
            response.status = isKnown ? 304 : 200;
            response.body = isKnown ? QByteArray() : body;
            response.headers = {{"ETag", tag}, {"Cache-Control", control}};
            return response;
        });
    }
    /// The tags that were sent with requests for the newest frame.
    [[nodiscard]] std::vector<std::string> tagsSent() const {
        std::vector<std::string> tags;
        for (const HttpServer::Request& request : m_server.requests()) {
            if (request.path == kNewest) {
                tags.push_back(request.header("If-None-Match").toStdString());
            }
        }
        return tags;
    }
    [[nodiscard]] bool showsOther() const {
        const auto isOther = [](const Bitmap& bitmap) { return bitmap->pixel(30, 10) == kEcho; };
        EXPECT_EQ(isOther(m_state.current.bitmap), isOther(m_state.frames.back().bitmap));
        return isOther(m_state.current.bitmap);
    }

    const QString kNewest = kListing + nameOf("20190519_0554");
};

TEST_F(NewestFrameTest, IsAskedForAgainByItsTagUntilALaterOneIsListed) {
    tag(frameGif(), "\"one\"");
    animate(2, 9);
    EXPECT_TRUE(update());
    EXPECT_TRUE(update());
    EXPECT_FALSE(showsOther());
    tag(otherGif(), "\"two\"");
    EXPECT_TRUE(update());
    EXPECT_TRUE(showsOther());
    EXPECT_EQ(readFile(cached(nameOf("20190519_0554"))), otherGif());
    EXPECT_EQ(m_state.status, QString());
    EXPECT_TRUE(update());
    EXPECT_THAT(tagsSent(), ElementsAre("", "\"one\"", "\"one\"", "\"two\""));
    publish({"20190519_0554", "20190519_0604"});
    tag(frameGif(), "\"three\"");
    EXPECT_TRUE(update());
    EXPECT_TRUE(update());
    EXPECT_EQ(tagsSent().size(), 4U) << "another one is the newest";
    EXPECT_EQ(m_server.count(kListing + nameOf("20190519_0544")), 1);
}

TEST_F(NewestFrameTest, TheTagOutlivesTheProgram) {
    tag(frameGif(), "W/\"one\"");
    EXPECT_TRUE(update());
    m_state.frames.clear();
    m_state.current = {};
    EXPECT_TRUE(update());
    EXPECT_THAT(tagsSent(), ElementsAre("", "W/\"one\""));
}

TEST_F(NewestFrameTest, IsNotAskedForAgainWhereTheServerDoesNotSayThatItMayChange) {
    const char* const controls[] = {
        "max-age=86400",
        "",
        "public, max-age=31536000, immutable",
        "max-age=30, immutable",
        "s-maxage=30",
        "max-age=3600",
        "max-age=",
        "max-age=-1",
        "max-age=30x",
    };
    for (const char* control : controls) {
        QDir(m_state.cacheFolder).removeRecursively();
        tag(frameGif(), "\"one\"", control);
        EXPECT_TRUE(update());
        EXPECT_TRUE(update());
    }
    EXPECT_THAT(tagsSent(), ::testing::AllOf(SizeIs(std::size(controls)), Each("")));
}

TEST_F(NewestFrameTest, IsAskedForAgainWhereItMayBeKeptForAMomentOnly) {
    for (const char* control : {"max-age=30", "public, MAX-AGE=0", "max-age=3599, public"}) {
        QDir(m_state.cacheFolder).removeRecursively();
        tag(frameGif(), "\"one\"", control);
        EXPECT_TRUE(update());
        EXPECT_TRUE(update());
    }
    EXPECT_THAT(tagsSent(), ElementsAre("", "\"one\"", "", "\"one\"", "", "\"one\""));
}

TEST_F(NewestFrameTest, AFileThatIsNoLongerTheTagsIsNotTakenForIt) {
    tag(otherGif(), "\"two\"");
    EXPECT_TRUE(update());
    writeFile(cached(nameOf("20190519_0554")), frameGif());
    EXPECT_TRUE(update());
    EXPECT_THAT(tagsSent(), ElementsAre("")) << "whose bytes these are is unknown";
    EXPECT_TRUE(QFile::remove(cached(nameOf("20190519_0554"))));
    EXPECT_TRUE(update());
    EXPECT_THAT(tagsSent(), ElementsAre("", ""));
}

TEST_F(NewestFrameTest, StaysAsItIsWhenNothingBetterComes) {
    const QByteArray good = otherGif();
    const QByteArray head = "ETag: \"two\"\r\nCache-Control: no-cache\r\n";
    const std::pair<const char*, answers::Answer> faults[] = {
        {"error", answers::respond(503, "busy")},
        {"gone", answers::respond(404, "none")},
        {"redirect", answers::redirect(302, "http://127.0.0.1/")},
        {"a page", answers::respond(200, "<html>log in</html>", head)},
        {"no picture", answers::respond(200, "GIF89a and nothing", head)},
        {"empty", answers::respond(200, "", head)},
        {"half", answers::cut(good, good.size() / 2)},
        {"a byte short", answers::cut(good, good.size() - 1)},
        {"reset", answers::reset(good, good.size() / 2)},
        {"nothing", answers::nothing()},
        {"stall", answers::stall(good.first(20))},
        {"silence", answers::silence()},
    };
    ScopedHttp settings;
    ScopedHttp::waitBriefly();
    for (const auto& [what, answer] : faults) {
        SCOPED_TRACE(what);
        QDir(m_state.cacheFolder).removeRecursively();
        tag(frameGif(), "\"one\"");
        EXPECT_TRUE(update());
        FaultServer server;
        server.on(kListing, answers::respond(200, "\"" + nameOf("20190519_0554").toLatin1() + '"'));
        server.on(kNewest, answer);
        EXPECT_TRUE(updateFrom(server.host()));
        EXPECT_GE(server.count(kNewest), 1) << "libcurl tries a kept connection that broke twice";
        EXPECT_EQ(m_state.status, QString());
        EXPECT_EQ(m_state.cause, QString());
        EXPECT_FALSE(showsOther());
        EXPECT_EQ(readFile(cached(nameOf("20190519_0554"))), frameGif());
    }
}

TEST_F(NewestFrameTest, ThatKeepsUsWaitingDoesNotCostTheOthers) {
    tag(frameGif(), "\"one\"");
    EXPECT_TRUE(update());
    FaultServer server;
    server.on(
        kListing,
        answers::respond(200, "\"MUX_20190519_0544_N0R.gif\" \"MUX_20190519_0554_N0R.gif\"")
    );
    server.on(kNewest, answers::silence());
    server.on(kListing + nameOf("20190519_0544"), answers::respond(200, frameGif()));
    ScopedHttp settings;
    ScopedHttp::waitBriefly();
    animate(2, 9);
    EXPECT_TRUE(updateFrom(server.host()));
    EXPECT_EQ(m_state.frames.size(), 2U);
    EXPECT_EQ(m_state.status, QString());
}

TEST_F(NewestFrameTest, ATagWithABadByteIsNotKept) {
    for (const QByteArray& bad :
         {QByteArray("\"a b\""), QByteArray(300, 'x'), QByteArray("\xFF")}) {
        QDir(m_state.cacheFolder).removeRecursively();
        tag(frameGif(), bad);
        EXPECT_TRUE(update());
        EXPECT_TRUE(update());
    }
    EXPECT_THAT(tagsSent(), ElementsAre("", "", ""));
}

TEST_F(NewestFrameTest, ADamagedNoteIsNone) {
    tag(frameGif(), "\"one\"");
    const QString note = cached("MUX_2_N0R.tag");
    for (const QByteArray& text :
         {QByteArray(), QByteArray("a b"), QByteArray(5000, 'a'),
          QByteArray("MUX_20190519_0554_N0R.gif \"x\" 0123")}) {
        EXPECT_TRUE(update());
        ASSERT_TRUE(QFile::exists(note));
        writeFile(note, text);
        EXPECT_TRUE(update());
        QDir(m_state.cacheFolder).removeRecursively();
    }
    EXPECT_THAT(tagsSent(), ElementsAre("", "", "", ""));
}

/// A server with warnings, whose texts stand beside the picture.
class WarningTextsUpdateTest : public RadarUpdateTest {
protected:
    WarningTextsUpdateTest() {
        publish({"20190519_0554"});
        m_server.serve(kWarnings, warningsGif());
        m_state.showWarnings = true;
    }
    [[nodiscard]] std::vector<std::string> events(const QString& range = "Short") const {
        std::vector<std::string> events;
        const auto texts = loadWarningTexts(m_state.cacheRoot(), "MUX", range);
        for (const WarningText& warning : texts ? texts->warnings : std::vector<WarningText>()) {
            events.push_back(warning.event.toStdString());
        }
        return events;
    }

    static constexpr const char* kTornado = R"({"warnings": [{"event": "Tornado Warning"}]})";
};

/// A device without a battery, whose clock began in 1970.
class ClockOf1970 : public TestClock {
public:
    ClockOf1970() : TestClock(kUnixEpoch + 600 * kFileTimePerSecond) {}
    [[nodiscard]] Teller teller() const override { return Teller::nobody; }
};

TEST_F(WarningTextsUpdateTest, AreDrawnWhereNobodyKnowsTheTime) {
    const ClockOf1970 clock;
    EXPECT_TRUE(update());
    EXPECT_TRUE(warned());
    publish({"20190519_0634"});
    EXPECT_TRUE(update());
    EXPECT_TRUE(warned());
    m_server.serve(kWarnings, "none", 404);
    publish({"20190519_0714"});
    EXPECT_TRUE(update());
    EXPECT_EQ(warningsUse(m_state), WarningsUse::stale) << "these are of before";
}

TEST_F(WarningTextsUpdateTest, AreFetchedAfterThePictureAndStandBesideIt) {
    m_server.serve(kTexts, kTornado);
    EXPECT_TRUE(update());
    std::vector<QString> paths;
    for (const HttpServer::Request& request : m_server.requests()) {
        paths.push_back(request.path);
    }
    const auto picture = std::find(paths.begin(), paths.end(), kWarnings);
    EXPECT_NE(std::find(picture, paths.end(), kTexts), paths.end());
    EXPECT_TRUE(warned());
    EXPECT_EQ(m_state.status, QString());
    EXPECT_EQ(warningTextsFile(m_state.cacheRoot(), "MUX"), cached("MUX_Warnings_0.json"));
    EXPECT_EQ(readFile(cached("MUX_Warnings_0.json")), kTornado);
    EXPECT_THAT(events(), ElementsAre("Tornado Warning"));
    EXPECT_THAT(events("Long"), ElementsAre()) << "the picture is of the other range";
}

TEST_F(WarningTextsUpdateTest, AreNotAskedForAgainInARunWhereThereAreNone) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(update());
        EXPECT_EQ(m_state.status, QString());
        EXPECT_EQ(m_state.cause, QString());
        EXPECT_TRUE(warned());
    }
    EXPECT_EQ(m_server.count(kWarnings), 3);
    EXPECT_EQ(m_server.count(kTexts), 1);
    HttpServer other;
    other.serve(kListing, "\"" + nameOf("20190519_0554").toLatin1() + '"');
    other.serve(kWarnings, warningsGif());
    other.serve(kTexts, kTornado);
    EXPECT_TRUE(updateFrom(other.host()));
    EXPECT_THAT(events(), ElementsAre("Tornado Warning")) << "another server may have some";
}

TEST_F(WarningTextsUpdateTest, AreInTheStateUntilTheServerHasThemNoMore) {
    m_server.serve(kTexts, kTornado);
    EXPECT_TRUE(update());
    ASSERT_TRUE(m_state.warnings.texts);
    EXPECT_EQ(m_state.warnings.texts->warnings[0].event, "Tornado Warning");
    const auto before = m_state.warnings.texts;
    m_server.serve(kTexts, R"({"warnings": []})");
    EXPECT_TRUE(update());
    ASSERT_TRUE(m_state.warnings.texts);
    EXPECT_TRUE(m_state.warnings.texts->warnings.empty());
    EXPECT_EQ(before->warnings.size(), 1U) << "whoever has them keeps them";
    m_server.serve(kTexts, "<html>log in</html>");
    EXPECT_TRUE(update());
    EXPECT_FALSE(m_state.warnings.texts);
}

TEST_F(WarningTextsUpdateTest, AreNotAskedForWithoutThePicture) {
    m_server.serve(kTexts, kTornado);
    m_server.serve(kWarnings, "none", 404);
    EXPECT_TRUE(update());
    EXPECT_EQ(m_server.count(kTexts), 0);
}

TEST_F(WarningTextsUpdateTest, WhatIsNotTheirFormIsNotKept) {
    const QByteArray bodies[] = {
        "<html>log in</html>",
        "",
        "{}",
        "[]",
        R"({"warnings": 1})",
        QByteArray(kTornado).chopped(1),
        R"({"warnings": [")" + QByteArray(kMostWarningTextBytes, 'a') + R"("]})",
        QByteArray(100'000, '[')};
    for (const QByteArray& body : bodies) {
        SCOPED_TRACE(body.left(40).toStdString());
        m_server.serve(kTexts, kTornado);
        EXPECT_TRUE(update());
        EXPECT_THAT(events(), ElementsAre("Tornado Warning"));
        m_server.serve(kTexts, body);
        EXPECT_TRUE(update());
        EXPECT_EQ(m_state.status, QString());
        EXPECT_EQ(m_state.cause, QString());
        EXPECT_TRUE(warned());
        EXPECT_FALSE(QFile::exists(cached("MUX_Warnings_0.json")))
            << "those are of another picture";
    }
}

TEST_F(RadarUpdateTest, TheRequestsOfAnUpdateShareSixConnections) {
    publish({"20190519_0534", "20190519_0544", "20190519_0554"});
    m_server.serve(kWarnings, warningsGif());
    m_state.showWarnings = true;
    animate(3, 9);
    EXPECT_TRUE(update());
    EXPECT_EQ(m_server.count(), 6) << "the last one for the texts of the warnings";
    EXPECT_LE(m_server.connections(), 4) << "the listing's, and one for each that runs beside";
}

TEST_F(RadarUpdateTest, AFrameThatIsKnownIsTakenWithoutALookAtIt) {
    const QString known = cached(nameOf("20190519_0544"));
    writeFile(known, "not decoded");
    writeFile(cached(nameOf("20190519_0554")), "no picture");
    publish({"20190519_0544", "20190519_0554"});
    animate(2, 9);
    m_loaders.isKnown = [known](const QString& file) { return file == known; };
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), (QStringList{"20190519_0544", "20190519_0554"}));
    EXPECT_EQ(readFile(known), "not decoded");
    EXPECT_EQ(readFile(cached(nameOf("20190519_0554"))), frameGif());
    EXPECT_EQ(m_server.count(kListing + nameOf("20190519_0544")), 0);
}

TEST_F(RadarUpdateTest, WarningsThatNobodyLooksAtAreKeptAlone) {
    publish({"20190519_0554"});
    m_server.serve(kWarnings, warningsGif());
    m_state.showWarnings = true;
    m_loaders.warnings = nullptr;
    EXPECT_TRUE(update());
    EXPECT_EQ(readFile(cached("MUX_Warnings_0.gif")), warningsGif());
    EXPECT_FALSE(m_state.warnings.picture);
    EXPECT_TRUE(hasWarningsOf(m_state.cacheFolder, "MUX", "Short"));
}

TEST_F(RadarUpdateTest, AFrameThatCannotBeHadIsPassedOver) {
    publish({"20190519_0542", "20190519_0548", "20190519_0554"});
    m_server.serve(kListing + nameOf("20190519_0554"), "gone", 404);
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), QStringList{"20190519_0548"});
    EXPECT_FALSE(QFile::exists(cached(nameOf("20190519_0554"))));
}

TEST_F(RadarUpdateTest, AFrameThatIsNoPictureIsPassedOver) {
    const QByteArray defects[] = {
        "", "<html>Please log in</html>", frameGif().first(60), gifThatClaims({8000, 8000}),
        gifThatClaims({2000, 2001})};
    for (const QByteArray& defect : defects) {
        QDir(m_state.cacheFolder).removeRecursively();
        publish({"20190519_0542", "20190519_0548", "20190519_0554"});
        m_server.serve(kListing + nameOf("20190519_0554"), defect);
        EXPECT_TRUE(update()) << defect.toStdString();
        EXPECT_EQ(frameStamps(), QStringList{"20190519_0548"}) << defect.toStdString();
        EXPECT_EQ(m_state.status, QString());
    }
}

TEST_F(RadarUpdateTest, ABodyThatIsNoGifIsNotKept) {
    const QByteArray bodies[] = {
        "", "<html>Please log in</html>", "GIF8", QByteArray::fromHex("1F8B08") + frameGif(),
        test::topoJpeg()};
    for (const QByteArray& body : bodies) {
        publish({"20190519_0554"});
        m_server.serve(kListing + nameOf("20190519_0554"), body);
        EXPECT_FALSE(update());
        EXPECT_EQ(namesIn(m_state.cacheFolder + "/MUX"), "") << body.left(20).toStdString();

        publish({"20190519_0554"});
        EXPECT_TRUE(update());
        EXPECT_EQ(frameStamps(), QStringList{"20190519_0554"}) << body.left(20).toStdString();
        QDir(m_state.cacheFolder).removeRecursively();
    }
}

TEST_F(RadarUpdateTest, ACachedFrameThatIsNoneIsFetchedAgain) {
    publish({"20190519_0548", "20190519_0554"});
    const QString name = nameOf("20190519_0554");
    const QByteArray defects[] = {
        "", "<html>Please log in</html>", frameGif().first(60), gifThatClaims({8000, 8000})};
    int asked = 0;
    for (const QByteArray& defect : defects) {
        writeFile(cached(name), defect);
        EXPECT_TRUE(update());
        EXPECT_EQ(frameStamps(), QStringList{"20190519_0554"}) << defect.toStdString();
        EXPECT_EQ(readFile(cached(name)), frameGif()) << defect.toStdString();
        EXPECT_EQ(m_server.count(kListing + name), ++asked);
    }
    // It is passed over while it cannot be fetched.
    writeFile(cached(name), "<html>");
    m_server.serve(kListing + name, "gone", 404);
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), QStringList{"20190519_0548"});
}

TEST_F(RadarUpdateTest, ANetworkThatWantsALogInLeavesNothingBehind) {
    m_state.showWarnings = true;
    m_server.serve(kWarnings, warningsGif());
    const QByteArray page = "<html><a href=\"http://login.example/?to=/ridge/RadarImg/N0R/MUX/\">";
    const FaultServer::Answer answersOfPortal[] = {
        answers::respond(200, page), answers::redirect(302, "http://login.example/"),
        answers::redirect(307, "http://127.0.0.1:1/")};
    for (const FaultServer::Answer& answer : answersOfPortal) {
        publish({"20190519_0554"});
        const FaultServer portal(answer);
        EXPECT_FALSE(updateFrom(portal.host()));
        EXPECT_EQ(m_state.status, kNoImages);
        EXPECT_EQ(portal.requests().size(), 1U);

        EXPECT_TRUE(update());
        EXPECT_EQ(m_state.status, QString());
        EXPECT_TRUE(warned());
        QDir(m_state.cacheFolder).removeRecursively();
    }
}

TEST_F(RadarUpdateTest, APageInTheWarningsPlaceLeavesTheOldOnesInTheCache) {
    publish({"20190519_0554"});
    m_state.showWarnings = true;
    m_server.serve(kWarnings, warningsGif());
    EXPECT_TRUE(update());
    m_server.serve(kWarnings, "<html>Please log in</html>");
    EXPECT_TRUE(update());
    EXPECT_TRUE(warned()) << "they are minutes old";
    EXPECT_EQ(readFile(cached("MUX_Warnings_0.gif")), warningsGif());
}

/// What all files in a folder hold together.
qint64 bytesIn(const QString& folder) {
    qint64 sum = 0;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files)) {
        sum += file.size();
    }
    return sum;
}

TEST_F(RadarUpdateTest, AnUpdateKeepsNoMoreThanItMay) {
    const ScopedHttp http;
    httpLimits().fileBytes = 100'000;
    httpLimits().actionBytes = 500'000;
    QStringList stamps;
    for (int minute = 10; minute < 50; ++minute) {
        stamps += QStringLiteral("20190519_05%1").arg(minute);
    }
    animate(25, 1);
    publish(stamps);
    for (const QString& stamp : stamps) {
        m_server.serve(kListing + nameOf(stamp), "GIF89a" + QByteArray(90'000, '\0'));
    }
    EXPECT_FALSE(update());
    EXPECT_LE(bytesIn(m_state.cacheFolder + "/MUX"), 500'000);
    // Five more may be under way when the sixth has brought too much.
    EXPECT_LE(m_server.count(), 1 + 6 + 5);

    for (const QString& stamp : stamps) {
        m_server.serve(kListing + nameOf(stamp), "GIF89a" + QByteArray(100'000, '\0'));
    }
    QDir(m_state.cacheFolder).removeRecursively();
    EXPECT_FALSE(update());
    EXPECT_EQ(bytesIn(m_state.cacheFolder + "/MUX"), 0);
}

TEST_F(RadarUpdateTest, TheNextUpdateIsDueEightMinutesAfterTheNewestFrame) {
    publish({"20190519_0544", "20190519_0554"});
    animate(2, 9);
    EXPECT_TRUE(update());
    // The search runs half a minute beside the names' whole minutes.
    EXPECT_EQ(m_state.nextUpdate, fromCalendar({2019, 5, 19, 6, 2, 30}));

    const FileTime later = fromCalendar({2019, 5, 19, 7, 0});
    m_state.nextUpdate = later;
    EXPECT_TRUE(update());
    EXPECT_EQ(m_state.nextUpdate, later);
}

TEST_F(RadarUpdateTest, TimesAreShownOnTheLocalClock) {
    const TimeZone pacific("PST8PDT,M3.2.0,M11.1.0");
    publish({"20190519_0554"});
    EXPECT_TRUE(update());
    EXPECT_EQ(m_state.current.timeText, QStringLiteral("10:54"));
}

TEST_F(RadarUpdateTest, StaleFramesOfThatProductGoAndAllElseStays) {
    publish({"20190519_0554"});
    const QStringList stale = {"MUX_20190518_0101_N0R.gif", "MUX_20190519_0553_N0R.gif"};
    const QStringList others = {
        "MUX_20190518_0101_N0V.gif", "MUX_City_Short.gif", "MUX_Warnings_0.gif",
        "LWX_20190518_0101_N0R.gif"};
    for (const QString& name : stale + others) {
        writeFile(cached(name), "x");
    }
    const QString elsewhere =
        m_state.cacheFolder + QStringLiteral("/LWX/MUX_20190518_0101_N0R.gif");
    writeFile(elsewhere, "x");
    EXPECT_TRUE(update());
    for (const QString& name : stale) {
        EXPECT_FALSE(QFile::exists(cached(name))) << name.toStdString();
    }
    for (const QString& name : others) {
        EXPECT_TRUE(QFile::exists(cached(name))) << name.toStdString();
    }
    EXPECT_TRUE(QFile::exists(elsewhere));
    EXPECT_TRUE(QFile::exists(cached(nameOf("20190519_0554"))));
}

TEST_F(RadarUpdateTest, WarningsLieBesideTheFramesAndAreFetchedAnewEachTime) {
    TestClock clock(fromCalendar({2019, 5, 19, 6, 0}));
    Clock::use(&clock);
    publish({"20190519_0544", "20190519_0554"});
    m_server.serve(kWarnings, warningsGif());
    m_state.showWarnings = true;
    animate(2, 9);
    EXPECT_TRUE(update());
    EXPECT_TRUE(warned());
    EXPECT_EQ(m_state.warnings.fetched, clock.now());
    EXPECT_EQ(readFile(cached("MUX_Warnings_0.time")), "Short 2019-05-19T06:00:00Z\n");
    for (const RadarFrame& frame : m_state.frames) {
        EXPECT_EQ(frame.bitmap->pixel(20, 20), kTransparentWhite) << "never burnt in";
        EXPECT_EQ(frame.bitmap->pixel(10, 10), kEcho);
    }
    clock.advance(kFileTimePerMinute);
    EXPECT_TRUE(update());
    EXPECT_EQ(m_server.count(kWarnings), 2);
    EXPECT_EQ(m_state.warnings.fetched, clock.now());
    Clock::use(nullptr);
}

TEST_F(RadarUpdateTest, WithAFrameMissingStaleFramesGoAndWarningsShowAllTheSame) {
    publish({"20190519_0554"});
    m_server.serve(kWarnings, warningsGif());
    m_state.showWarnings = true;
    animate(2, 9);
    writeFile(cached("MUX_20190518_0101_N0R.gif"));
    EXPECT_TRUE(update());
    EXPECT_EQ(m_state.status, kNotAll);
    EXPECT_FALSE(QFile::exists(cached("MUX_20190518_0101_N0R.gif")));
    EXPECT_TRUE(warned());
}

TEST_F(RadarUpdateTest, LongRangeProductsHaveWarningsOfTheirOwn) {
    m_state.product = 2;
    m_state.showWarnings = true;
    const QString listing = QStringLiteral("/ridge/RadarImg/N0Z/MUX/");
    m_server.serve(listing, "\"MUX_20190519_0554_N0Z.gif\"");
    m_server.serve(listing + QStringLiteral("MUX_20190519_0554_N0Z.gif"), frameGif());
    EXPECT_TRUE(update());
    EXPECT_EQ(m_server.count(QStringLiteral("/ridge/Warnings/Long/MUX_Warnings_0.gif")), 1);
}

TEST_F(RadarUpdateTest, MissingWarningsAreNoFailure) {
    publish({"20190519_0554"});
    m_state.showWarnings = true;
    EXPECT_TRUE(update());
    EXPECT_EQ(m_state.status, QString());

    const QByteArray defects[] = {"<html>none today</html>", gifThatClaims({8000, 8000})};
    for (const QByteArray& defect : defects) {
        m_server.serve(kWarnings, defect);
        EXPECT_TRUE(update());
        EXPECT_EQ(m_state.status, QString());
        EXPECT_EQ(warningsUse(m_state), WarningsUse::none);
    }
}

TEST_F(RadarUpdateTest, WarningsThatAreSwitchedOffAreNotAskedFor) {
    publish({"20190519_0554"});
    m_server.serve(kWarnings, warningsGif());
    EXPECT_TRUE(update());
    EXPECT_EQ(m_server.count(kWarnings), 0);
    EXPECT_EQ(warningsUse(m_state), WarningsUse::none);
}

TEST_F(RadarUpdateTest, AFailedUpdateLeavesTheFramesOfBefore) {
    publish({"20190519_0544", "20190519_0554"});
    animate(2, 9);
    EXPECT_TRUE(update());
    m_state.position = 1;
    const RadarFrame shown = m_state.current;
    const RefusingPort refusing;
    EXPECT_FALSE(updateFrom(refusing.host()));
    EXPECT_EQ(m_state.status, kNoServer);
    EXPECT_EQ(m_state.cause, refusing.host() + " does not answer.");
    EXPECT_EQ(frameStamps(), (QStringList{"20190519_0544", "20190519_0554"}));
    EXPECT_EQ(m_state.current.bitmap, shown.bitmap);
    EXPECT_EQ(m_state.position, 1U);

    m_server.serve(kListing, "<html>none</html>");
    EXPECT_FALSE(update());
    EXPECT_EQ(m_state.status, kNoImages);
    EXPECT_EQ(m_state.cause, QString()) << "the server did as it was asked";
    EXPECT_EQ(m_state.frames.size(), 2U);

    m_server.serve(kListing, "\"" + nameOf("20190519_0604").toLatin1() + "\"");
    EXPECT_FALSE(update());
    EXPECT_EQ(m_state.status, kNoFrame);
    EXPECT_EQ(m_state.cause, m_server.host() + " answers with error 404.");
    EXPECT_EQ(m_state.frames.size(), 2U);
}

TEST_F(RadarUpdateTest, AnOutageOfTheSourceStandsBelowTheStatusEvenIfFramesCame) {
    publish({"20190519_0554"});
    const QByteArray listing = "\"" + nameOf("20190519_0554").toLatin1() + "\"";
    const auto outage = [&](const QByteArray& source, const QByteArray& body) {
        m_server.handle(kListing, [=](const HttpServer::Request&) {
            return HttpServer::Response{200, body, "text/html", {{"Raincast-Source", source}}};
        });
        static_cast<void>(update());
        return m_state.cause.toStdString();
    };
    const char* const kNoProduct = "This radar makes no such product.";
    EXPECT_EQ(outage("no-product", ""), kNoProduct);
    EXPECT_EQ(m_state.status, kNoImages);
    EXPECT_EQ(outage("radar-down", listing), "The radar itself is down.");
    EXPECT_EQ(m_state.status, QString());
    EXPECT_EQ(m_state.frames.size(), 1U);
    EXPECT_EQ(outage("provider", listing), "The provider does not answer.");
    EXPECT_EQ(outage("network", listing), "This machine has no network.");
    EXPECT_EQ(outage("ok", listing), "");
    EXPECT_EQ(outage("moon", ""), "");
}

TEST_F(RadarUpdateTest, TheFramesOfBeforeStayUntilTheNewestIsThere) {
    publish({"20190519_0544", "20190519_0554"});
    animate(2, 9);
    EXPECT_TRUE(update());
    publish({"20190519_0554", "20190519_0604"});
    m_recorder = {};
    std::vector<QStringList> lists;
    m_recorder.watch = [&] { lists.push_back(frameStamps()); };
    EXPECT_TRUE(update());
    const QStringList before{"20190519_0544", "20190519_0554"};
    const QStringList newest{"20190519_0604"};
    const QStringList after{"20190519_0554", "20190519_0604"};
    EXPECT_THAT(lists, ElementsAre(before, newest, after));
}

TEST_F(RadarUpdateTest, FramesOfAnotherSiteOrProductGoAtOnce) {
    publish({"20190519_0554"});
    const RefusingPort refusing;
    EXPECT_TRUE(update());
    m_state.product = 1;
    EXPECT_FALSE(updateFrom(refusing.host()));
    EXPECT_TRUE(m_state.frames.empty());
    EXPECT_FALSE(m_state.current.bitmap);
    EXPECT_EQ(m_state.position, 0U);

    m_state.product = 0;
    EXPECT_TRUE(update());
    m_state.siteId = QStringLiteral("DAX");
    EXPECT_FALSE(updateFrom(refusing.host()));
    EXPECT_TRUE(m_state.frames.empty());
}

TEST_F(RadarUpdateTest, ACacheFolderThatCannotBeMadeIsTold) {
    publish({"20190519_0554"});
    writeFile(m_state.cacheFolder, "a file where the folder should be");
    EXPECT_FALSE(update());
    EXPECT_EQ(m_state.status, cacheFailure(ENOTDIR));
    EXPECT_THAT(m_recorder.statuses, ElementsAre(kUpdating, cacheFailure(ENOTDIR)));
    EXPECT_EQ(m_server.count(), 1); // the listing
}

TEST_F(RadarUpdateTest, ACacheFolderThatCannotBeWrittenIsTold) {
    publish({"20190519_0554"});
    // Only a file is replaced.
    ASSERT_TRUE(QDir().mkpath(cached(nameOf("20190519_0554"))));
    EXPECT_FALSE(update());
    EXPECT_EQ(m_state.status, cacheFailure(EISDIR));
}

TEST_F(RadarUpdateTest, AFrameThatWasKeptBeforeIsShownWithTheWord) {
    publish({"20190519_0544", "20190519_0554"});
    writeFile(cached(nameOf("20190519_0544")), frameGif());
    m_server.serve(kWarnings, warningsGif());
    m_state.showWarnings = true;
    {
        const FullDisk disk(50);
        EXPECT_TRUE(update());
    }
    EXPECT_EQ(frameStamps(), QStringList{"20190519_0544"});
    EXPECT_EQ(m_state.status, cacheFailure(EFBIG));
    const int beside = m_server.count(kWarnings);
    EXPECT_EQ(m_server.count() - beside, 2) << "the listing, one frame and no more";
    EXPECT_TRUE(update());
    EXPECT_EQ(m_state.status, QString());
}

TEST_F(RadarUpdateTest, WithoutACacheFolderNoFrameIsAskedFor) {
    publish({"20190519_0554"});
    m_state.cacheFolder.clear();
    m_state.showWarnings = true;
    EXPECT_FALSE(update());
    EXPECT_EQ(m_state.status, QStringLiteral("There is no folder\nfor the image cache.\n"));
    EXPECT_EQ(m_server.count(), 1); // the listing
}

TEST_F(RadarUpdateTest, AFullDiskIsToldAndLeavesNoHalfFrame) {
    publish({"20190519_0554"});
    {
        const FullDisk disk(50);
        EXPECT_FALSE(update());
    }
    EXPECT_EQ(m_state.status, cacheFailure(EFBIG));
    EXPECT_EQ(namesIn(m_state.cacheFolder + "/MUX"), "");
    EXPECT_TRUE(update());
}

TEST_F(RadarUpdateTest, AFrameOfTheFutureIsNone) {
    const ManualClock clock(fromCalendar({2019, 5, 19, 6, 0}));
    Clock::use(&clock);
    publish({"20190519_0554", "20190520_0601", "29991231_2359"});
    writeFile(cached(nameOf("29991231_2359")), frameGif());
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), QStringList{"20190519_0554"});
    EXPECT_EQ(m_state.nextUpdate, fromCalendar({2019, 5, 19, 6, 2, 30}));
    EXPECT_FALSE(QFile::exists(cached(nameOf("29991231_2359")))) << "left by an earlier program";

    publish({"20190520_0600"}); // a clock may be wrong
    EXPECT_TRUE(update());
    EXPECT_EQ(frameStamps(), QStringList{"20190520_0600"});

    publish({"29991231_2359"});
    EXPECT_FALSE(update());
    EXPECT_EQ(m_state.status, kNoImages);
    Clock::use(nullptr);
}

TEST_F(RadarUpdateTest, UnlistedFramesAreNeverAskedFor) {
    m_server.serve(kListing, "\"MUX_20190519_0554_N0R.gif\" MUX_20190519_0553_N0R.gif");
    EXPECT_FALSE(update());
    EXPECT_EQ(m_server.count(), 2);
    EXPECT_EQ(m_state.status, kNoFrame);
}

/// What a server answers to the listing, and what the user then reads.
struct ListingFault {
    const char* what;
    FaultServer::Answer answer;
    QString status;
};

TEST_F(RadarUpdateTest, EveryFaultOfAListingHasItsText) {
    const QByteArray error = "<html><a href=\"/\">Not found</a></html>";
    const ListingFault faults[] = {
        {"301", answers::redirect(301, "/elsewhere/"), kNoImages},
        {"404", answers::respond(404, error), kNoImages},
        {"500", answers::respond(500, error), kNoImages},
        {"empty body", answers::respond(200, {}), kNoImages},
        {"no bytes at all", answers::nothing(), kNoServer},
        {"no HTTP", answers::raw("\x16\x03\x01nonsense\r\n\r\n"), kNoServer},
        {"a listing of 100 MB without a frame", answers::hugeListing(100 << 20), kNoImages},
        {"8-bit bytes and an odd number of quotes",
         answers::respond(200, "\"\xE4\xF6\xFC\" \"\" \"MUX_2"), kNoImages},
    };
    for (const ListingFault& fault : faults) {
        FaultServer server(fault.answer);
        EXPECT_FALSE(updateFrom(server.host())) << fault.what;
        EXPECT_EQ(m_state.status, fault.status) << fault.what;
    }
    const ScopedHttp http; // a name server may not answer
    ScopedHttp::waitBriefly();
    EXPECT_FALSE(updateFrom(QStringLiteral("no-such-host.invalid")));
    EXPECT_EQ(m_state.status, kNoServer);
}

/// What a server answers to the newest frame.
struct FrameFault {
    const char* what;
    FaultServer::Answer answer;
    bool passedOver; ///< the older frame is shown; otherwise the newest is, whole
};

TEST_F(RadarUpdateTest, EveryFaultOfAFrameLeadsToTheOneBefore) {
    const QByteArray gif = frameGif();
    const FrameFault faults[] = {
        {"302", answers::redirect(302, "/elsewhere.gif"), true},
        {"404", answers::respond(404, "gone"), true},
        {"500", answers::respond(500, "broken"), true},
        {"empty body", answers::respond(200, {}), true},
        {"HTML", answers::respond(200, "<html>Please log in</html>"), true},
        {"truncated", answers::respond(200, gif.first(gif.size() / 2)), true},
        {"cut in the middle", answers::cut(gif, gif.size() / 2), true},
        {"reset in the middle", answers::reset(gif, gif.size() / 2), true},
        {"shorter than it says", answers::wrongLength(gif, gif.size() + 100), false},
        {"longer than it says", answers::wrongLength(gif, gif.size() - 20), true},
        {"chunked", answers::chunked(gif, 7), false},
    };
    for (const FrameFault& fault : faults) {
        QDir(m_state.cacheFolder).removeRecursively();
        FaultServer server;
        server.on(
            kListing,
            answers::respond(200, "\"MUX_20190519_0554_N0R.gif\" \"MUX_20190519_0548_N0R.gif\"")
        );
        server.on(kListing + nameOf("20190519_0554"), fault.answer);
        server.on(kListing + nameOf("20190519_0548"), answers::respond(200, gif));
        EXPECT_TRUE(updateFrom(server.host())) << fault.what;
        const QString shown = fault.passedOver ? "20190519_0548" : "20190519_0554";
        EXPECT_EQ(frameStamps(), QStringList{shown}) << fault.what;
    }
}

TEST_F(RadarUpdateTest, AStalledServerCostsOneWaitForAllFrames) {
    const ScopedHttp http;
    ScopedHttp::waitBriefly();
    FaultServer server;
    server.on(
        kListing,
        answers::respond(200, "\"MUX_20190519_0554_N0R.gif\" \"MUX_20190519_0548_N0R.gif\"")
    );
    server.on(kListing + nameOf("20190519_0554"), answers::stall(frameGif().first(50)));
    server.on(kListing + nameOf("20190519_0548"), answers::respond(200, frameGif()));
    EXPECT_FALSE(updateFrom(server.host()));
    EXPECT_EQ(m_state.status, kNoFrame);
    EXPECT_EQ(server.count(kListing + nameOf("20190519_0548")), 0);
}

/// The published frames of a spring night at San Francisco, thirteen of them.
TEST(RealDataRadarUpdateTest, SixOfThirteenPublishedFrames) {
    const QString tree = qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/radar-tree");
    if (!QDir(tree).exists()) {
        GTEST_SKIP() << "no recorded images";
    }
    const TimeZone utc("UTC0");
    HttpServer server;
    server.serveFolder(tree);
    const QTemporaryDir cache;
    RadarState state;
    state.siteId = QStringLiteral("MUX");
    state.cacheFolder = cache.path();
    state.animate = true;
    Recorder recorder;
    Transfers transfers;
    CHttpTransfer transfer(transfers.downloads(), server.host(), true, false);
    RadarUpdate run(state, recorder, transfer, shownPictures());
    ASSERT_TRUE(transfers.loop().resultOf<bool>([&run](const RadarUpdate::Done& done) {
        run.UpdateRadar(done);
    }));
    std::vector<std::string> times;
    for (const RadarFrame& frame : state.frames) {
        times.push_back(frame.timeText.toStdString());
        EXPECT_EQ(frame.bitmap->size(), QSize(600, 550));
    }
    EXPECT_THAT(times, ElementsAre("4:57", "5:08", "5:19", "5:30", "5:42", "5:54"));
    EXPECT_EQ(state.status, QString());
}

} // namespace
} // namespace raincast
