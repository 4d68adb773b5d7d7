// SPDX-License-Identifier: MIT
#include "position/navigator/fake_navigator.h"
#include "position/navigator/qv_transaction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QvTransactionTest : public testing::Test {
protected:
    QvTransactionTest() {
        navigator.runs = true;
        navigator.writesFile = false;
        EXPECT_EQ(ConnectNavigator(link, false), kNavigatorSuccess);
        navigator.takeCalls();
    }

    FakeNavigator navigator;
    NavigatorLink link;
    const QString file = navigator.home.sharedFile();
};

TEST_F(QvTransactionTest, TheMutexIsHeldFromBeforeTheParametersToAfterTheResults) {
    {
        CQV_transaction transaction(link);
        EXPECT_THAT(navigator.calls, ElementsAre("wait"));
        EXPECT_EQ(transaction.WriteUInt32(7), kNavigatorSuccess);
        EXPECT_EQ(transaction.Call(32), kNavigatorSuccess);
        std::uint32_t number = 0;
        EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorSuccess);
        EXPECT_EQ(number, 7U);
        EXPECT_THAT(navigator.calls, ElementsAre("wait", "send 32"));
    }
    EXPECT_THAT(navigator.calls, ElementsAre("wait", "send 32", "release"));
}

TEST_F(QvTransactionTest, NumbersAreLittleEndianAndWithoutGaps) {
    {
        CQV_transaction transaction(link);
        EXPECT_EQ(transaction.WriteUInt32(0x01020304), kNavigatorSuccess);
        EXPECT_EQ(transaction.WriteDouble(-2.5), kNavigatorSuccess);
        EXPECT_EQ(transaction.WriteUInt32(0), kNavigatorSuccess);
    }
    EXPECT_EQ(readFile(file).toHex(), "0403020100000000000004c000000000");
}

TEST_F(QvTransactionTest, ReadersGiveWhatIsThere) {
    writeFile(
        file, QByteArray::fromHex("0000000000000440"
                                  "000000000000f83f"
                                  "07000000"
                                  "00000000"
                                  "00010000")
    );
    CQV_transaction transaction(link);
    double latitude = 0;
    float course = 0;
    std::uint32_t number = 0;
    bool no = true;
    bool yes = false;
    EXPECT_EQ(transaction.ReadDouble(latitude), kNavigatorSuccess);
    EXPECT_EQ(transaction.ReadFloat(course), kNavigatorSuccess);
    EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorSuccess);
    EXPECT_EQ(transaction.ReadBool(no), kNavigatorSuccess);
    EXPECT_EQ(transaction.ReadBool(yes), kNavigatorSuccess);
    EXPECT_EQ(latitude, 2.5);
    EXPECT_EQ(course, 1.5F);
    EXPECT_EQ(number, 7U);
    EXPECT_FALSE(no);
    EXPECT_TRUE(yes);
}

TEST_F(QvTransactionTest, AFloatIsFiniteWhateverTheFileHolds) {
    const double infinite = std::numeric_limits<double>::infinity();
    const struct {
        double written;
        float read;
    } rows[] = {
        {1e300, 0},     {-1e300, 0},       {infinite, 0},
        {-infinite, 0}, {std::nan(""), 0}, {3.4028234663852886e38, 3.4028234663852886e38F},
        {1e-300, 0},    {-0.1, -0.1F},
    };
    for (const auto& row : rows) {
        float value = 5;
        {
            CQV_transaction transaction(link);
            EXPECT_EQ(transaction.WriteDouble(row.written), kNavigatorSuccess);
            EXPECT_EQ(transaction.ReadFloat(value), kNavigatorSuccess);
        }
        EXPECT_EQ(value, row.read) << row.written;
    }
}

TEST_F(QvTransactionTest, AShortFileIsStatus8AndLeavesTheValue) {
    for (const int size : {0, 1, 3, 4, 7}) {
        writeFile(file, QByteArray(size, '\1'));
        std::uint32_t number = 5;
        double value = 6;
        bool flag = true;
        float narrow = 7;
        EXPECT_EQ(
            CQV_transaction(link).ReadUInt32(number),
            size < 4 ? kNavigatorFileFailed : kNavigatorSuccess
        );
        EXPECT_EQ(CQV_transaction(link).ReadDouble(value), kNavigatorFileFailed);
        EXPECT_EQ(CQV_transaction(link).ReadFloat(narrow), kNavigatorFileFailed);
        EXPECT_EQ(number, size < 4 ? 5U : 0x01010101U) << size;
        EXPECT_EQ(value, 6);
        EXPECT_EQ(narrow, 7);
        EXPECT_EQ(
            CQV_transaction(link).ReadBool(flag),
            size < 4 ? kNavigatorFileFailed : kNavigatorSuccess
        );
        EXPECT_TRUE(flag);
    }
}

TEST_F(QvTransactionTest, AFileThatIsMissingIsStatus8) {
    double value = 6;
    EXPECT_EQ(CQV_transaction(link).ReadDouble(value), kNavigatorFileFailed);
    EXPECT_FALSE(QFile::exists(file)) << "a reader makes no file";
    QDir(navigator.home.path("temp")).removeRecursively();
    EXPECT_EQ(CQV_transaction(link).WriteDouble(1), kNavigatorFileFailed);
    EXPECT_FALSE(QFile::exists(navigator.home.path("temp"))) << "and a writer no folder";
}

TEST_F(QvTransactionTest, TheFirstWriterMakesTheFileAnew) {
    writeFile(file, QByteArray(100, 'x'));
    EXPECT_EQ(CQV_transaction(link).WriteUInt32(0), kNavigatorSuccess);
    EXPECT_EQ(readFile(file), QByteArray(4, '\0'));
}

TEST_F(QvTransactionTest, WritingAfterReadingMakesTheFileAnew) {
    writeFile(file, QByteArray(100, 'x'));
    CQV_transaction transaction(link);
    std::uint32_t number = 0;
    EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorSuccess);
    EXPECT_EQ(transaction.WriteUInt32(3), kNavigatorSuccess);
    EXPECT_EQ(readFile(file).size(), 4);
    EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorSuccess) << "from the beginning";
    EXPECT_EQ(number, 3U);
    EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorFileFailed);
}

TEST_F(QvTransactionTest, ACallClosesTheFileAndKeepsWhoOpenedIt) {
    CQV_transaction transaction(link);
    EXPECT_EQ(transaction.WriteUInt32(3), kNavigatorSuccess);
    EXPECT_EQ(transaction.Call(32), kNavigatorSuccess);
    EXPECT_EQ(transaction.WriteUInt32(4), kNavigatorFileFailed) << "a writer has had its turn";
    std::uint32_t number = 0;
    EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorSuccess) << "a reader has not";
    EXPECT_EQ(number, 3U);
    EXPECT_EQ(transaction.Call(31), kNavigatorSuccess);
    EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorFileFailed);
    EXPECT_EQ(transaction.WriteUInt32(5), kNavigatorSuccess);
}

TEST_F(QvTransactionTest, TheNavigatorsAnswerIsTheStatus) {
    navigator.answers[31] = 4711;
    EXPECT_EQ(CQV_transaction(link).Call(31), 4711U);
}

TEST_F(QvTransactionTest, AWindowThatHasGoneIsStatus4AndNotAsked) {
    navigator.runs = false;
    EXPECT_EQ(CQV_transaction(link).Call(31), kNavigatorGone);
    EXPECT_THAT(navigator.calls, ElementsAre("wait", "release"));
}

TEST_F(QvTransactionTest, AWindowThatGoesWithoutAnAnswerIsStatus4) {
    navigator.diesAtNextRequest = true;
    EXPECT_EQ(CQV_transaction(link).Call(31), kNavigatorGone);
    EXPECT_THAT(navigator.calls, ElementsAre("wait", "send 31", "release"));
}

TEST_F(QvTransactionTest, WithoutTheMutexNothingIsTouched) {
    navigator.mutexIsFree = false;
    writeFile(file, "what another client is at");
    {
        CQV_transaction transaction(link);
        std::uint32_t number = 0;
        EXPECT_EQ(transaction.WriteUInt32(1), kNavigatorFileFailed);
        EXPECT_EQ(transaction.ReadUInt32(number), kNavigatorFileFailed);
        EXPECT_EQ(transaction.Call(32), kNavigatorGone);
    }
    EXPECT_THAT(navigator.calls, ElementsAre("wait")) << "nor is released what is another's";
    EXPECT_EQ(readFile(file), "what another client is at");
}

TEST_F(QvTransactionTest, WithoutALinkNothingIsTouched) {
    DisconnectNavigator(link, false);
    {
        CQV_transaction transaction(link);
        EXPECT_EQ(transaction.WriteUInt32(1), kNavigatorFileFailed);
        EXPECT_EQ(transaction.Call(32), kNavigatorGone);
    }
    EXPECT_THAT(navigator.calls, IsEmpty());
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(QvTransactionTest, OnlyAPlainFileOfTheUserIsOpened) {
    const QString precious = navigator.home.path("precious");
    writeFile(precious, "precious");
    std::uint32_t number = 0;

    ASSERT_TRUE(QFile::link(precious, file));
    EXPECT_EQ(CQV_transaction(link).WriteUInt32(1), kNavigatorFileFailed);
    EXPECT_EQ(CQV_transaction(link).ReadUInt32(number), kNavigatorFileFailed);
    EXPECT_EQ(readFile(precious), "precious");
    QFile::remove(file);

    ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(CQV_transaction(link).WriteUInt32(1), kNavigatorFileFailed) << "and nobody waits";
    EXPECT_EQ(CQV_transaction(link).ReadUInt32(number), kNavigatorFileFailed);
    QFile::remove(file);

    QDir().mkdir(file);
    EXPECT_EQ(CQV_transaction(link).WriteUInt32(1), kNavigatorFileFailed);
    EXPECT_EQ(CQV_transaction(link).ReadUInt32(number), kNavigatorFileFailed);
}

TEST_F(QvTransactionTest, TheFileIsTheUsersAlone) {
    EXPECT_EQ(CQV_transaction(link).WriteUInt32(1), kNavigatorSuccess);
    constexpr auto kOthers = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup;
    EXPECT_FALSE(QFile::permissions(file) & kOthers);
}

} // namespace
} // namespace raincast
