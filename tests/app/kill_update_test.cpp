// SPDX-License-Identifier: MIT
// Programs are killed at any moment of an update: what was in the cache stays there, and nothing
// that was cut is taken for whole.
#include "app/killing.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QMap>

namespace raincast {
namespace {

constexpr int kFrames = 24;

class KillTestUpdating : public test::GuiTest {
protected:
    KillTestUpdating() {
        test::publishLayers(server, "MUX");
        server.serve("/ridge/Warnings/Short/MUX_Warnings_0.gif", test::columnGif(50));
        server.serve("/ridge/Warnings/Short/MUX_Warnings_0.json", R"({"warnings":[]})");
    }

    /// Frames of a day, which no other day has.
    void publish(int day) {
        stamps.clear();
        for (int i = 0; i < kFrames; ++i) {
            const QDateTime time =
                QDate(2019, 5, 19).startOfDay(Qt::UTC).addDays(day).addSecs(i * qint64{300});
            stamps += time.toString(QStringLiteral("yyyyMMdd_HHmm"));
        }
        test::publishFrames(server, stamps, "MUX");
    }
    [[nodiscard]] QString cache() const { return home.path("data/Quorvane/Temp/Weather"); }

    void start(QProcess& process, bool viewer) const {
        QStringList arguments{"MUX",        "N0R",   "--radar-server", server.host(),
                              "--cache",    cache(), "--frames",       QString::number(kFrames),
                              "--interval", "1"};
        if (viewer) {
            arguments =
                QStringList{"--site",           "MUX",        "--radar-server", server.host(),
                            "--basemap-server", server.host()};
        }
        auto environment = home.environment();
        environment.insert("ASAN_OPTIONS", "detect_leaks=0");
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile(QProcess::nullDevice());
        test::startForKill(
            process,
            viewer ? QStringLiteral(RAINCAST_PROGRAM) : QStringLiteral(RAINCAST_FETCH_PROGRAM),
            arguments
        );
    }
    /// How long a whole update takes, in milliseconds.
    int wholeTime() {
        publish(0);
        QElapsedTimer timer;
        timer.start();
        QProcess process;
        start(process, false);
        EXPECT_TRUE(process.waitForFinished(test::Killing::kDeadline));
        EXPECT_EQ(process.exitCode(), 0);
        return static_cast<int>(timer.elapsed());
    }

    /// The frames of the cache; each is what the server has, or had.
    QSet<QString> frames() const {
        QSet<QString> names;
        QDirIterator images(cache(), {"*_N0R.gif"}, QDir::Files, QDirIterator::Subdirectories);
        while (images.hasNext()) {
            images.next();
            const QString minutes = images.fileName().mid(13, 4);
            const int number = (minutes.left(2).toInt() * 60 + minutes.right(2).toInt()) / 5;
            EXPECT_EQ(readFile(images.filePath()), test::columnGif(200 + number))
                << images.fileName().toStdString();
            names += images.fileName();
        }
        return names;
    }
    void checkOtherFiles() const {
        for (const auto& [name, bytes] :
             {std::pair{"Warnings_0.gif", test::columnGif(50)},
              {"City_Short.gif", test::columnGif(40)}}) {
            const QString file = cache() + "/MUX/MUX_" + name;
            EXPECT_TRUE(!QFile::exists(file) || readFile(file) == bytes) << name;
        }
        QDirIterator texts(cache(), {"*.json"}, QDir::Files, QDirIterator::Subdirectories);
        while (texts.hasNext()) {
            const QString name = texts.next();
            EXPECT_TRUE(QJsonDocument::fromJson(readFile(name)).isObject()) << name.toStdString();
        }
    }
    QSet<QString> listed() const {
        QSet<QString> names;
        for (const QString& stamp : stamps) {
            names += "MUX_" + stamp + "_N0R.gif";
        }
        return names;
    }

    test::TemporaryHome home;
    HttpServer server;
    QStringList stamps;
};

TEST_F(KillTestUpdating, WhatHadComeStaysAndNothingIsCut) {
    test::Killing killing(8, 200);
    const int time = wholeTime();
    int partly = 0;
    for (int day = 1; killing.goesOn(); ++day) {
        SCOPED_TRACE(killing.done());
        if (killing.oneIn(3)) {
            publish(day);
        }
        const bool isViewer = killing.oneIn(4);
        const QSet<QString> before = frames() & listed();
        QProcess process;
        start(process, isViewer);
        killing.pause(isViewer ? 5 * time : time);
        killing.kill(process);
        const QSet<QString> after = frames();
        EXPECT_TRUE(after.contains(before)) << "a frame that was there is lost";
        const auto have = (after & listed()).size();
        partly += 0 < have && have < kFrames ? 1 : 0;
        checkOtherFiles();
    }
    killing.expectSome(partly, "a part of the frames had come");

    // And the next update brings all.
    QProcess process;
    start(process, false);
    EXPECT_TRUE(process.waitForFinished(test::Killing::kDeadline));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(frames(), listed());
}

} // namespace
} // namespace raincast
