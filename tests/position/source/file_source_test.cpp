// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "position/source/file_source.h"
#include "position/source/test_sink.h"
#include "support/files.h"
#include "support/manual_timers.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr char kLog[] = "# header\n"
                        "$GPGGA,000000\r\n$GPRMC,000000\r\n$GPVTG,1\r\n"
                        "$GPGGA,000001\r\n$GPRMC,000001\r\n$GPVTG,2\r\n"
                        "$GPRMC,000003";

class FileSourceTest : public testing::Test {
protected:
    void open(const QByteArray& bytes, double rate) {
        writeFile(path, bytes);
        source.emplace(timers, path, rate);
        source->open(sink);
    }

    ManualTimers timers;
    TestSink sink;
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("log.nmea"));
    std::optional<FileSource> source;
};

TEST_F(FileSourceTest, PlaysAtItsOwnPace) {
    open(kLog, 1);
    EXPECT_EQ(sink.all, "") << "only once the event loop runs";
    EXPECT_EQ(timers.fire(), 0);
    EXPECT_THAT(sink.all, EndsWith("$GPVTG,1\r\n"));
    EXPECT_EQ(timers.fire(), 1000);
    EXPECT_THAT(sink.all, EndsWith("$GPVTG,2\r\n"));
    EXPECT_EQ(sink.finishes, 0);
    EXPECT_EQ(timers.fire(), 2000);
    EXPECT_EQ(sink.all, kLog);
    EXPECT_EQ(sink.finishes, 1);
    EXPECT_THAT(timers.running(), IsEmpty());
    EXPECT_THAT(sink.failures, IsEmpty());
}

TEST_F(FileSourceTest, PlaysFaster) {
    open(kLog, 100);
    while (timers.fire() >= 0) {
    }
    EXPECT_EQ(sink.all, kLog);
    EXPECT_EQ(timers.now().count(), 30);
}

TEST_F(FileSourceTest, PlaysAtOnceWithTurnsForOtherEvents) {
    QByteArray log;
    while (log.size() < 200'000) {
        log += kLog;
    }
    open(log, 0);
    int turns = 0;
    while (timers.fire() == 0) {
        ++turns;
    }
    EXPECT_EQ(sink.all, log.toStdString());
    EXPECT_EQ(timers.now().count(), 0);
    EXPECT_GE(turns, 3);
    EXPECT_EQ(sink.finishes, 1);
}

TEST_F(FileSourceTest, LinesOfAnyLengthArePlayed) {
    QByteArray log(300'000, 'x');
    log += "\n$GPRMC,000000\n";
    for (const double rate : {0.0, 1.0}) {
        sink = {};
        open(log, rate);
        while (timers.fire() >= 0) {
        }
        EXPECT_EQ(sink.all, log.toStdString());
        EXPECT_EQ(sink.finishes, 1);
    }
}

TEST_F(FileSourceTest, AnEmptyFileIsFinished) {
    open("", 1);
    timers.fire();
    EXPECT_EQ(sink.finishes, 1);
}

TEST_F(FileSourceTest, WhatCannotBePlayedIsBroken) {
    FileSource missing(timers, path, 1);
    missing.open(sink);
    FileSource directory(timers, folder.path(), 1);
    directory.open(sink);
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    FileSource fifo(timers, pipe, 1);
    fifo.open(sink);
    EXPECT_THAT(
        sink.failures, ElementsAre(
                           EndsWith("log.nmea: " + std::string(std::strerror(ENOENT))),
                           EndsWith(": Not a file"), EndsWith("pipe: Not a file")
                       )
    );
    EXPECT_THAT(timers.running(), IsEmpty());
}

TEST_F(FileSourceTest, AClosedSourceIsSilent) {
    open(kLog, 1);
    source->close();
    EXPECT_THAT(timers.running(), IsEmpty());

    sink.whenReceived = [this] { source->close(); };
    source->open(sink);
    timers.fire();
    EXPECT_EQ(sink.reads, 1);
    EXPECT_THAT(timers.running(), IsEmpty());
    EXPECT_EQ(sink.finishes, 0);
}

TEST_F(FileSourceTest, OpenedAgainItPlaysFromTheStart) {
    open(kLog, 1);
    timers.fire();
    source->close();
    sink.all.clear();
    source->open(sink);
    while (timers.fire() >= 0) {
    }
    EXPECT_EQ(sink.all, kLog);
}

TEST_F(FileSourceTest, NothingIsPlayedWhileTheProgramIsBusy) {
    open(kLog, 0);
    {
        const BusyGuard busy;
        timers.fire();
        EXPECT_EQ(timers.fire(), 100);
        EXPECT_EQ(sink.reads, 0);
    }
    timers.fire();
    EXPECT_EQ(sink.all, kLog);
}

} // namespace
} // namespace raincast
