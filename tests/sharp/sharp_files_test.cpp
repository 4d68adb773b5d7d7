// SPDX-License-Identifier: MIT
#include "radar/cache.h"
#include "radar/file_kinds.h"
#include "sharp/sharp_files.h"
#include "support/fault_server.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"
#include "support/test_clock.h"
#include "support/transfers.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>

namespace raincast {
namespace {

const QString kPath = "/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif";
const QString kOther = "/ridge/RadarImg/N0R/MUX/MUX_20190519_0544_N0R.gif";
const QString kTopo = "/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg";
constexpr FileKind kWholeGif{
    "GIF image", 6, [](QByteArrayView first) { return first.startsWith("GIF8"); }, true};

QString onServer(const QString& path, int detail) {
    return QString(path).insert(7, QStringLiteral("x%1/").arg(detail));
}

class SharpFilesTest : public testing::Test {
protected:
    struct Came {
        SharpFiles::Outcome outcome;
        SharpPicture picture;
    };

    /// The cache has the described picture.
    SharpSource source(const QString& path) const {
        const QString file = m_folder.filePath("MUX/" + QFileInfo(path).fileName());
        EXPECT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        if (!QFileInfo::exists(file)) {
            writeFile(file, test::columnGif(200));
        }
        SharpSource source{path, file, kWholeGif};
        if (path == kTopo) {
            source.use = SharpSource::Use::layer;
        }
        return source;
    }
    Came fetch(const QString& path, int detail, int above = 1) {
        std::optional<Came> came;
        m_files.fetch(
            source(path), detail, above,
            [&](SharpFiles::Outcome outcome, SharpPicture picture) {
                came = {outcome, std::move(picture)};
            }
        );
        EXPECT_TRUE(m_transfers.loop().until([&] { return came.has_value(); }));
        return came.value_or(Came{SharpFiles::Outcome::failed, {}});
    }
    SharpPicture look(const QString& path, int detail) {
        return m_transfers.loop().resultOf<SharpPicture>([&](const SharpFiles::Looked& done) {
            m_files.look(source(path), detail, done);
        });
    }
    QString file(const QString& path, int detail) {
        return sharpCacheFile(source(path).file, detail);
    }
    void serve(const QString& path, int detail, const QByteArray& bytes) {
        m_server.serve(onServer(path, detail), bytes);
    }

    TestClock m_clock;
    const ScopedHttp m_shortWaits;
    QTemporaryDir m_folder;
    HttpServer m_server;
    Transfers m_transfers;
    SharpServers m_known;
    SharpFiles m_files{m_transfers.downloads(), {m_server.host(), m_server.host()}, m_known};
};

using Outcome = SharpFiles::Outcome;

TEST_F(SharpFilesTest, FetchesAPictureAndFindsItInTheCacheFromThenOn) {
    serve(kPath, 2, test::sharpColumnGif(2, 401));
    EXPECT_FALSE(look(kPath, 2));
    const Came came = fetch(kPath, 2);
    EXPECT_EQ(came.outcome, Outcome::came);
    ASSERT_TRUE(came.picture.unpacked());
    EXPECT_EQ(came.picture.unpacked()->size(), QSize(1200, 1100));
    EXPECT_EQ(came.picture.unpacked()->pixel(401, 7), 0xFFFF0000);
    EXPECT_TRUE(QFileInfo(m_folder.filePath("MUX/x2/MUX_20190519_0554_N0R.gif")).isFile());

    const SharpPicture found = look(kPath, 2);
    ASSERT_TRUE(found);
    EXPECT_EQ(*found.unpacked(), *came.picture.unpacked());
    EXPECT_EQ(m_server.count(), 1);
}

TEST_F(SharpFilesTest, ASharpPictureOfOtherBytesOfTheFrameIsNotTaken) {
    serve(kPath, 2, test::sharpColumnGif(2, 401));
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::came);
    QFile described(source(kPath).file);
    ASSERT_TRUE(described.open(QIODevice::ReadWrite));
    ASSERT_TRUE(described.setFileTime(
        QFileInfo(described).lastModified().addSecs(60), QFileDevice::FileModificationTime
    ));
    described.close();
    EXPECT_FALSE(look(kPath, 2));
    // The new one takes its place.
    serve(kPath, 2, test::sharpColumnGif(2, 500));
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::came);
    EXPECT_EQ(look(kPath, 2).unpacked()->pixel(500, 7), 0xFFFF0000);
}

TEST_F(SharpFilesTest, WhereTheFinestIsMissingASmallerOneDoes) {
    serve(kPath, 2, test::sharpColumnGif(2, 401));
    const Came came = fetch(kPath, 4);
    EXPECT_EQ(came.outcome, Outcome::came);
    EXPECT_EQ(came.picture.detail(), 2);
    EXPECT_EQ(look(kPath, 4).detail(), 2);
    // Who has the smaller one only asks for the finest.
    EXPECT_EQ(fetch(kPath, 4, 2).outcome, Outcome::absent);
    EXPECT_EQ(m_server.count(onServer(kPath, 4)), 1);
    EXPECT_EQ(m_server.count(onServer(kPath, 2)), 1);
}

TEST_F(SharpFilesTest, AServerWithoutAnyIsAskedForTwoPictures) {
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::absent);
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::absent);
    EXPECT_EQ(m_server.count(), 1);
    EXPECT_EQ(fetch(kTopo, 2).outcome, Outcome::absent);
    EXPECT_EQ(m_server.count(), 2);
    EXPECT_EQ(fetch(kOther, 2).outcome, Outcome::absent);
    EXPECT_EQ(m_server.count(), 2);
    // Another object of the same run knows as much.
    SharpServers nothing;
    SharpFiles others(m_transfers.downloads(), m_files.servers(), nothing);
    bool ended = false;
    others.fetch(source(kOther), 2, 1, [&ended](Outcome, const SharpPicture&) { ended = true; });
    EXPECT_TRUE(m_transfers.loop().until([&ended] { return ended; }));
    EXPECT_EQ(m_server.count(), 2);
    EXPECT_TRUE(m_files.mayFetchFrom(SharpSource::Server::radar));
}

// Yesterday's frames are gone from the server when the viewer starts.
TEST_F(SharpFilesTest, OldFramesThatAServerLacksDoNotSpeakForItsOthers) {
    const QString third = "/ridge/RadarImg/N0R/MUX/MUX_20190519_0534_N0R.gif";
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::absent);
    EXPECT_EQ(fetch(kOther, 2).outcome, Outcome::absent);
    serve(third, 2, test::sharpColumnGif(2, 401));
    EXPECT_EQ(fetch(third, 2).outcome, Outcome::came);
}

TEST_F(SharpFilesTest, WhatTheCacheHasTellsThatTheServerHasSome) {
    serve(kPath, 2, test::sharpColumnGif(2, 401));
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::came);
    m_known = {};
    EXPECT_TRUE(look(kPath, 2));
    const QString third = "/ridge/RadarImg/N0R/MUX/MUX_20190519_0534_N0R.gif";
    EXPECT_EQ(fetch(kTopo, 2).outcome, Outcome::absent);
    EXPECT_EQ(fetch(third, 2).outcome, Outcome::absent);
    serve(kOther, 2, test::sharpColumnGif(2, 401));
    EXPECT_EQ(fetch(kOther, 2).outcome, Outcome::came);
}

TEST_F(SharpFilesTest, AServerThatLacksSomeIsAskedForOthers) {
    serve(kTopo, 2, test::sharpColumnGif(2, 3));
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::absent);
    EXPECT_EQ(fetch(kTopo, 2).outcome, Outcome::came);
    EXPECT_EQ(fetch(kOther, 2).outcome, Outcome::absent);
    serve(kOther, 4, test::sharpColumnGif(4, 3));
    EXPECT_EQ(fetch(kOther, 4).picture.detail(), 4);
}

TEST_F(SharpFilesTest, APictureOfAnotherSizeIsAsGoodAsNone) {
    const QByteArray wrong[] = {
        test::columnGif(3),
        test::sharpColumnGif(4, 3),
        makeGif({.screen = {1200, 1000}}),
        gifThatClaims({60'000, 60'000}),
        makeGif({.screen = {1200, 1100}, .place = {0, 0}, .image = {8, 8}}),
        QByteArray("GIF89a")};
    for (const QByteArray& bytes : wrong) {
        Transfers transfers;
        SharpServers known;
        SharpFiles files(transfers.downloads(), m_files.servers(), known);
        serve(kPath, 2, bytes);
        const int before = m_server.count();
        for (int i = 0; i < 2; ++i) {
            std::optional<Outcome> outcome;
            files.fetch(source(kPath), 2, 1, [&](Outcome is, const SharpPicture& picture) {
                outcome = is;
                EXPECT_FALSE(picture);
            });
            EXPECT_TRUE(transfers.loop().until([&] { return outcome.has_value(); }));
            EXPECT_EQ(outcome, Outcome::absent);
        }
        EXPECT_EQ(m_server.count(), before + 1);
        EXPECT_FALSE(QFileInfo::exists(file(kPath, 2)));
    }
}

TEST_F(SharpFilesTest, AServerThatDoesNotAnswerIsLeftAloneForAWhile) {
    FaultServer server(answers::silence());
    ScopedHttp::waitBriefly();
    SharpFiles files(m_transfers.downloads(), {server.host(), m_server.host()}, m_known);
    int ended = 0;
    for (const QString& path : {kPath, kOther, kTopo}) {
        files.fetch(source(path), 2, 1, [&ended](Outcome is, const SharpPicture&) {
            EXPECT_EQ(is, Outcome::failed);
            ++ended;
        });
    }
    EXPECT_TRUE(m_transfers.loop().until([&ended] { return ended == 3; }));
    EXPECT_FALSE(files.mayFetchFrom(SharpSource::Server::radar));
    EXPECT_TRUE(files.mayFetchFrom(SharpSource::Server::basemap));
    m_clock.advance(29 * kFileTimePerSecond);
    EXPECT_FALSE(files.mayFetchFrom(SharpSource::Server::radar));
    m_clock.advance(kFileTimePerSecond);
    EXPECT_TRUE(files.mayFetchFrom(SharpSource::Server::radar)) << "three at once count once";
    m_clock.advance(-20 * kFileTimePerSecond);
    EXPECT_FALSE(files.mayFetchFrom(SharpSource::Server::radar));
    files.tryAgain();
    EXPECT_TRUE(files.mayFetchFrom(SharpSource::Server::radar));
}

// The frame gets other bytes while its sharp picture is under way.
TEST_F(SharpFilesTest, APictureOfBytesOfBeforeIsNotKept) {
    const SharpSource described = source(kPath);
    const auto go = std::make_shared<std::atomic<bool>>(false);
    m_server.handle(onServer(kPath, 2), [go](const auto&) {
        go->wait(false);
        return HttpServer::Response{200, test::sharpColumnGif(2, 401), "image/gif", {}};
    });
    std::optional<Outcome> outcome;
    m_files.fetch(described, 2, 1, [&](Outcome is, const SharpPicture&) { outcome = is; });
    EXPECT_TRUE(m_transfers.loop().until([&] { return m_server.count() == 1; }));
    QFile file(described.file);
    EXPECT_TRUE(
        file.open(QIODevice::ReadWrite) &&
        file.setFileTime(
            QFileInfo(file).lastModified().addSecs(60), QFileDevice::FileModificationTime
        )
    );
    file.close();
    *go = true;
    go->notify_all();
    EXPECT_TRUE(m_transfers.loop().until([&] { return outcome.has_value(); }));
    EXPECT_EQ(outcome, Outcome::failed);
    EXPECT_FALSE(look(kPath, 2));
    EXPECT_FALSE(QFileInfo::exists(this->file(kPath, 2)));
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::came) << "it is asked for again";
}

TEST_F(SharpFilesTest, ACutPictureIsNotTaken) {
    const QByteArray whole = test::sharpColumnGif(2, 401);
    FaultServer server(answers::cut(whole, whole.size() / 2));
    SharpFiles files(m_transfers.downloads(), {server.host(), server.host()}, m_known);
    std::optional<Outcome> outcome;
    files.fetch(source(kPath), 2, 1, [&](Outcome is, const SharpPicture&) { outcome = is; });
    EXPECT_TRUE(m_transfers.loop().until([&] { return outcome.has_value(); }));
    EXPECT_EQ(outcome, Outcome::failed);
    EXPECT_FALSE(QFileInfo::exists(file(kPath, 2)));
}

TEST_F(SharpFilesTest, AFullDiskIsAFailure) {
    serve(kPath, 2, test::sharpColumnGif(2, 401));
    static_cast<void>(source(kPath));
    {
        const FullDisk full(100);
        EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::failed);
    }
    EXPECT_FALSE(QFileInfo::exists(file(kPath, 2)));
    EXPECT_TRUE(QFileInfo::exists(source(kPath).file));
}

TEST_F(SharpFilesTest, AFileInTheWayOfTheFolderIsAFailure) {
    serve(kPath, 2, test::sharpColumnGif(2, 401));
    static_cast<void>(source(kPath));
    writeFile(m_folder.filePath("MUX/x2"), "in the way");
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::failed);
    EXPECT_EQ(m_server.count(), 0);
}

TEST_F(SharpFilesTest, ItsEndCancelsWhatRuns) {
    std::atomic<bool> hasGone = false;
    FaultServer server([&hasGone](FaultConnection& connection) {
        connection.waitForEnd();
        hasGone = true;
    });
    auto files = std::make_unique<SharpFiles>(
        m_transfers.downloads(), RadarServers{server.host(), server.host()}, m_known
    );
    bool ended = false;
    files->fetch(source(kPath), 2, 1, [&ended](Outcome, const SharpPicture&) { ended = true; });
    EXPECT_TRUE(m_transfers.loop().until([&server] { return server.requests().size() == 1; }));
    files.reset();
    EXPECT_TRUE(m_transfers.loop().until([&hasGone] { return hasGone.load(); }));
    EXPECT_FALSE(ended);
}

TEST_F(SharpFilesTest, OneAtATimeUntilSomethingCame) {
    EXPECT_EQ(m_files.mostAtATime(source(kPath), 2), 1);
    serve(kPath, 2, test::sharpColumnGif(2, 401));
    EXPECT_EQ(fetch(kPath, 2).outcome, Outcome::came);
    EXPECT_GT(m_files.mostAtATime(source(kPath), 2), 1);
    EXPECT_EQ(m_files.mostAtATime(source(kPath), 4), 1);
}

} // namespace
} // namespace raincast
