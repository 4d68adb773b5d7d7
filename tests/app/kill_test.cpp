// SPDX-License-Identifier: MIT
// The viewer is killed at any moment of its use, while it saves and while it moves its cache: what
// it had written can be read, and what the user had changed two seconds before is in it.
#include "app/killing.h"
#include "app/raincast_app.h"
#include "image/image_file.h"
#include "map/mark_manager.h"
#include "persist/page_bytes.h"
#include "radar/cache.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"

#include <QDirIterator>
#include <QJsonDocument>
#include <QProcess>
#include <QSet>
#include <QTest>

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>

namespace raincast {
namespace {

// After two seconds the save begins; the rest is for a machine that is busy with other tests.
constexpr qint64 kSavedAfter = 2'000 + 1'500;
constexpr int kLongestLife = 5'000;

qint64 milliseconds() {
    using namespace std::chrono;
    return duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

class KillTest : public test::GuiTest {
protected:
    KillTest() {
        test::publishLayers(server, "MUX");
        test::publishFrames(server, {"20190519_0534", "20190519_0544", "20190519_0554"}, "MUX");
        QDir().mkpath(home.path("cards/card"));
    }

    /// Starts the program with a user, who has all sorts of things to do or one task.
    void start(QProcess& process, unsigned userSeed, const QString& task = {}) {
        auto environment = home.environment();
        environment.insert("LD_PRELOAD", QStringLiteral(RANDOM_USER_LIBRARY));
        environment.insert("RANDOM_USER_SEED", QString::number(userSeed & 0x7FFFFFFF));
        environment.insert("RANDOM_USER_LOG", log());
        environment.insert("RANDOM_USER_TASK", task);
        environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
        process.setProcessEnvironment(environment);
        test::startForKill(
            process, QStringLiteral(RAINCAST_PROGRAM),
            {"--site", "MUX", "--radar-server", server.host(), "--basemap-server", server.host()}
        );
    }
    /// Kills it after so many milliseconds of its use.
    void runAndKill(test::Killing& killing, int life) {
        QProcess process;
        start(process, killing.number());
        static_cast<void>(process.waitForFinished(life));
        killed = milliseconds();
        ASSERT_TRUE(killing.kill(process)) << "it has ended by itself";
    }
    QString log() const { return home.path("marks.log"); }

    /// The names of the marks that are in the page file.
    QSet<QString> checkPages() const {
        QSet<QString> names;
        for (const QString& name : {home.pageFile() + ".bak", home.pageFile()}) {
            names.clear();
            const QByteArray bytes = readFile(name);
            if (!QFile::exists(name)) {
                continue;
            }
            CRaincastApp application;
            const PageBytes examined{bytes};
            CSerialReader reader(examined.span());
            EXPECT_TRUE(application.Read(reader) && reader.whole()) << name.toStdString();
            EXPECT_GT(reader.wholeObjects(), 0U) << name.toStdString();
            for (const COverlayMark& mark : application.marks().marks()) {
                names.insert(mark.name);
            }
        }
        return names;
    }
    void checkSettings() const {
        if (QFile::exists(home.userRegistry())) {
            EXPECT_TRUE(QJsonDocument::fromJson(readFile(home.userRegistry())).isObject());
        }
    }
    /// The images of the cache, wherever it is, a move under way included.
    void checkImages() const {
        QDirIterator images(home.root(), {"*.gif"}, QDir::Files, QDirIterator::Subdirectories);
        while (images.hasNext()) {
            const QString name = images.next();
            EXPECT_TRUE(LoadImageFile(name, 1'000'000)) << name.toStdString();
        }
    }
    /// The marks that were added so long ago that they must be saved.
    QSet<QString> marksOfOld() const {
        QSet<QString> names;
        for (const QByteArray& line : readFile(log()).split('\n')) {
            const auto words = line.split(' ');
            if (words.size() == 2 && words[0].toLongLong() + kSavedAfter < killed) {
                names.insert(QString::fromLatin1(words[1]));
            }
        }
        return names;
    }

    test::TemporaryHome home;
    HttpServer server;
    qint64 killed = 0;
};

TEST_F(KillTest, LosesAtMostTheLastTwoSeconds) {
    test::Killing killing(16, 200);
    QSet<QString> kept;
    qsizetype proven = 0;
    while (killing.goesOn()) {
        SCOPED_TRACE(killing.done());
        runAndKill(killing, killing.below(kLongestLife));
        const QSet<QString> names = checkPages();
        EXPECT_TRUE(names.contains(kept)) << "a mark of an earlier run is lost";
        const QSet<QString> due = marksOfOld();
        EXPECT_TRUE(names.contains(due))
            << (due - names).values().join(u' ').toStdString() << " lost";
        proven += due.size();
        kept = names;
        checkSettings();
        checkImages();
    }
    std::cout << kept.size() << " marks kept, " << proven << " of them had to be\n";
    EXPECT_GT(kept.size(), 0);
}

// It is killed when it has just touched a file of pages or settings.
TEST_F(KillTest, WhatIsSavedIsTheOldOrTheNew) {
    test::Killing killing(4, 200);
    QSet<QString> kept;
    while (killing.goesOn()) {
        SCOPED_TRACE(killing.done());
        const test::FolderWatch files({home.programFolder(), home.path("config/Quorvane")});
        QProcess process;
        start(process, killing.number(), QStringLiteral("marks"));
        files.await(1 + killing.below(5));
        killing.pause(0.3);
        ASSERT_TRUE(killing.kill(process));
        const QSet<QString> names = checkPages();
        EXPECT_TRUE(names.contains(kept)) << "a mark of an earlier run is lost";
        kept = names;
        checkSettings();
    }
    EXPECT_GT(kept.size(), 0);
}

class KillTestMoving : public KillTest {
protected:
    /// Puts pictures of sites that nobody looks at into the cache.
    void fillCache() {
        const QString root = home.path("data/Quorvane/Temp/Weather");
        for (const char* site : {"DAX", "HNX", "LWX"}) {
            for (int i = 0; i < kFrames; ++i) {
                const auto name = QStringLiteral("/%1/%1_20190519_%2_N0R.gif")
                                      .arg(QLatin1String(site))
                                      .arg(i, 4, 10, QLatin1Char('0'));
                writeFile(root + name, test::columnGif(i));
            }
        }
    }
    /// Each is whole at one of its places, or at several.
    void checkMoved() const {
        QSet<QString> found;
        QDirIterator images(home.root(), {"*_N0R.gif"}, QDir::Files, QDirIterator::Subdirectories);
        while (images.hasNext()) {
            images.next();
            if (!images.fileName().startsWith(QLatin1String("MUX"))) {
                const int column = images.fileName().mid(13, 4).toInt();
                EXPECT_EQ(readFile(images.filePath()), test::columnGif(column))
                    << images.filePath().toStdString();
                found += images.fileName();
            }
        }
        EXPECT_EQ(found.size(), 3 * kFrames);
    }

    static constexpr int kFrames = 80;
};

TEST_F(KillTestMoving, EachCachedFileIsWholeAtOneOfItsPlaces) {
    test::Killing killing(4, 200);
    fillCache();
    const QString old = home.path("data/Quorvane/Temp/Weather");
    const QString card = home.path("cards/card/Quorvane/Temp/Weather");
    const QString first = QStringLiteral("/DAX/DAX_20190519_0000_N0R.gif");
    const QString last = QStringLiteral("/LWX/LWX_20190519_00%1_N0R.gif").arg(kFrames - 1);
    int split = 0;
    while (killing.goesOn()) {
        SCOPED_TRACE(killing.done());
        const QString& from = QFile::exists(old + first) ? old : card;
        const QString& to = &from == &old ? card : old;
        QProcess process;
        start(process, killing.number(), QStringLiteral("move"));
        // Until the first file has come to the other place.
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return QFile::exists(to + first); }, test::Killing::kDeadline)
        );
        killing.pause(12);
        ASSERT_TRUE(killing.kill(process));
        split += QFile::exists(from + last) ? 1 : 0;
        checkMoved();
        checkPages();
        checkSettings();
    }
    killing.expectSome(split, "in the middle of a move");
}

} // namespace
} // namespace raincast
