// SPDX-License-Identifier: MIT
// The program is killed at any moment of its use: what it had written can be read, and what the
// user had changed two seconds before is in it.
#include "app/raincast_app.h"
#include "map/mark_manager.h"
#include "persist/page_bytes.h"
#include "radar/cache.h"
#include "radar/image/image_file.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"

#include <QDirIterator>
#include <QJsonDocument>
#include <QProcess>
#include <QSet>

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <random>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds
// After two seconds the save begins; the rest is for a machine that is busy with other tests.
constexpr qint64 kSavedAfter = 2'000 + 1'500;
constexpr int kLongestLife = 5'000;

int kills() {
    return qEnvironmentVariableIsSet("RAINCAST_LONG") ? 200 : 20;
}

unsigned seed() {
    const QString given = qEnvironmentVariable("RAINCAST_SEED");
    return given.isEmpty() ? std::random_device()() : given.toUInt();
}

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

    /// Starts the program with a user, and kills it after so many milliseconds of its use.
    void runAndKill(unsigned userSeed, int life) {
        auto environment = home.environment();
        environment.insert("LD_PRELOAD", QStringLiteral(RANDOM_USER_LIBRARY));
        environment.insert("RANDOM_USER_SEED", QString::number(userSeed & 0x7FFFFFFF));
        environment.insert("RANDOM_USER_LOG", log());
        environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setProcessEnvironment(environment);
        process.start(
            QStringLiteral(RAINCAST_PROGRAM),
            {"--site", "MUX", "--radar-server", server.host(), "--basemap-server", server.host()}
        );
        ASSERT_TRUE(process.waitForStarted(kDeadline));
        static_cast<void>(process.waitForFinished(life));
        ASSERT_EQ(process.state(), QProcess::Running) << "it has ended by itself";
        killed = milliseconds();
        process.kill();
        ASSERT_TRUE(process.waitForFinished(kDeadline));
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
    const unsigned begin = seed();
    std::cout << "RAINCAST_SEED=" << begin << '\n';
    std::mt19937 random(begin);
    QSet<QString> kept;
    qsizetype proven = 0;
    for (int i = 0; i < kills() && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const unsigned userSeed = random();
        runAndKill(userSeed, static_cast<int>(random() % kLongestLife));
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

} // namespace
} // namespace raincast
