// SPDX-License-Identifier: MIT
// Runs the program for a file of a loop.
#include "support/http_server.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"

#include <QFile>
#include <QImage>
#include <QProcess>

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds

class LoopFileTest : public test::GuiTest {
protected:
    LoopFileTest() {
        test::publishLayers(server, "MUX");
        test::publishFrames(
            server,
            {"20190519_0504", "20190519_0514", "20190519_0524", "20190519_0534", "20190519_0544",
             "20190519_0554"},
            "MUX"
        );
    }
    /// Runs the program with more arguments; gives its exit code.
    int run(const QStringList& arguments) {
        QProcess program;
        program.setProcessEnvironment(home.environment());
        program.setWorkingDirectory(home.root());
        program.start(
            QStringLiteral(RAINCAST_PROGRAM),
            QStringList{
                "--site", "MUX", "--radar-server", server.host(), "--basemap-server", server.host(),
                "--geometry", "320x300"} +
                arguments
        );
        EXPECT_TRUE(program.waitForFinished(kDeadline));
        errors = QString::fromLocal8Bit(program.readAllStandardError());
        return program.exitCode();
    }
    [[nodiscard]] QByteArray content(const QString& name) const {
        QFile file(home.path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    HttpServer server;
    test::TemporaryHome home;
    QString errors;
};

TEST_F(LoopFileTest, TheLoopOfASiteIsSaved) {
    EXPECT_EQ(run({"--loop", "mux.gif"}), 0) << errors.toStdString();
    const QByteArray loop = content("mux.gif");
    EXPECT_TRUE(loop.startsWith("GIF89a"));
    EXPECT_EQ(loop.count(QByteArray("\x21\xF9\x04", 3)), 6) << "frames";
    EXPECT_EQ(QImage::fromData(loop).width(), 320);
    EXPECT_FALSE(QFile::exists(home.userRegistry())) << "nothing else is written";
}

TEST_F(LoopFileTest, APictureMayBeSavedBeside) {
    EXPECT_EQ(run({"--loop", "mux.gif", "--screenshot", "mux.png"}), 0) << errors.toStdString();
    EXPECT_FALSE(content("mux.gif").isEmpty());
    EXPECT_EQ(QImage::fromData(content("mux.png")).width(), 320);
}

TEST_F(LoopFileTest, AFileThatCannotBeWrittenIsSaid) {
    EXPECT_EQ(run({"--loop", "missing/mux.gif"}), 1);
    EXPECT_TRUE(errors.contains("missing/mux.gif: No such file or directory."))
        << errors.toStdString();
}

} // namespace
} // namespace raincast
