// SPDX-License-Identifier: MIT
#include "app/single_instance.h"
#include "core/busy_guard.h"
#include "support/files.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QTest>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <thread>

namespace raincast {
namespace {

/// Leaves a socket that nobody listens on, as a crash does.
void leaveSocket(const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray bytes = QFile::encodeName(path);
    ASSERT_LT(static_cast<std::size_t>(bytes.size()), sizeof address.sun_path);
    std::memcpy(address.sun_path, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(descriptor, 1), 0);
    close(descriptor);
    ASSERT_TRUE(QFileInfo::exists(path));
}

class SingleInstanceTest : public test::GuiTest {
protected:
    test::TemporaryHome home;
    QString pageFile = home.path("pages.cfg");
};

TEST_F(SingleInstanceTest, TheFirstIsAskedToComeToTheFront) {
    SingleInstance first(pageFile);
    std::vector<QByteArray> tokens;
    first.onFront([&tokens](const QByteArray& token) { tokens.push_back(token); });
    EXPECT_TRUE(first.claim("mine"));
    {
        SingleInstance second(pageFile);
        EXPECT_FALSE(second.claim("token-1"));
        SingleInstance third(pageFile);
        EXPECT_FALSE(third.claim());
    }
    EXPECT_TRUE(QTest::qWaitFor([&tokens] { return tokens.size() == 2; }));
    EXPECT_EQ(tokens, std::vector<QByteArray>({"token-1", ""}));
}

TEST_F(SingleInstanceTest, NoAnswerIsAwaited) {
    SingleInstance first(pageFile);
    EXPECT_TRUE(first.claim()); // and is busy from then on
    SingleInstance second(pageFile);
    EXPECT_FALSE(second.claim("token"));
}

TEST_F(SingleInstanceTest, EveryPageFileHasItsOwn) {
    SingleInstance first(pageFile);
    EXPECT_TRUE(first.claim());
    SingleInstance other(home.path("others.cfg"));
    EXPECT_TRUE(other.claim());
}

TEST_F(SingleInstanceTest, AFileIsTheSameByWhateverPath) {
    QDir(home.root()).mkdir("folder");
    ASSERT_TRUE(QFile::link(home.path("folder"), home.path("link")));
    SingleInstance first(home.path("folder/pages.cfg"));
    EXPECT_TRUE(first.claim());
    for (const char* path : {"link/pages.cfg", "folder/../link/pages.cfg", "folder/./pages.cfg"}) {
        SingleInstance second(home.path(path));
        EXPECT_FALSE(second.claim()) << path;
    }
    // That the file appears in the meantime makes no difference.
    writeFile(home.path("folder/pages.cfg"));
    SingleInstance second(home.path("link/pages.cfg"));
    EXPECT_FALSE(second.claim());
}

TEST_F(SingleInstanceTest, ASocketLeftByACrashIsNoObstacle) {
    SingleInstance next(pageFile);
    leaveSocket(next.socketPath());
    EXPECT_TRUE(next.claim());
    SingleInstance second(pageFile);
    EXPECT_FALSE(second.claim());
}

TEST_F(SingleInstanceTest, OfSeveralThatStartTogetherOneAtATimeLooksForTheOthers) {
    SingleInstance impatient(pageFile, 0);
    {
        // Another one is between looking and listening.
        QLockFile turn(impatient.socketPath() + ".lock");
        ASSERT_TRUE(turn.tryLock(0));
        EXPECT_TRUE(impatient.claim());
        EXPECT_FALSE(QFileInfo::exists(impatient.socketPath())) << "listens out of turn";
    }
    SingleInstance next(pageFile, 0);
    EXPECT_TRUE(next.claim());
    EXPECT_TRUE(QFileInfo::exists(next.socketPath()));
}

TEST_F(SingleInstanceTest, WhoWaitedForItsTurnLooksAgain) {
    SingleInstance waiting(pageFile);
    auto turn = std::make_unique<QLockFile>(waiting.socketPath() + ".lock");
    ASSERT_TRUE(turn->tryLock(0));
    std::thread other([&] { EXPECT_FALSE(waiting.claim()); });
    QLocalServer listening;
    EXPECT_TRUE(listening.listen(waiting.socketPath()));
    turn.reset();
    other.join();
}

TEST_F(SingleInstanceTest, TheEndOfTheFirstLeavesThePlaceFree) {
    {
        SingleInstance first(pageFile);
        EXPECT_TRUE(first.claim());
        EXPECT_TRUE(QFileInfo::exists(first.socketPath()));
    }
    SingleInstance next(pageFile);
    EXPECT_FALSE(QFileInfo::exists(next.socketPath()));
    EXPECT_TRUE(next.claim());
}

TEST_F(SingleInstanceTest, OnlyTheUserMayConnect) {
    SingleInstance first(pageFile);
    EXPECT_TRUE(first.claim());
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_FALSE(QFile::permissions(first.socketPath()) & others);
}

TEST_F(SingleInstanceTest, WithoutAPlaceForASocketTheProgramStartsAllTheSame) {
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(home.path(QString(120, u'x'))));
    SingleInstance first(pageFile);
    EXPECT_TRUE(first.claim());
}

TEST_F(SingleInstanceTest, AnEndlessTokenIsCut) {
    SingleInstance first(pageFile);
    QByteArray heard = "none";
    first.onFront([&heard](const QByteArray& token) { heard = token; });
    EXPECT_TRUE(first.claim());
    SingleInstance second(pageFile);
    EXPECT_FALSE(second.claim(QByteArray(100'000, 't')));
    EXPECT_TRUE(QTest::qWaitFor([&heard] { return heard != "none"; }));
    EXPECT_EQ(heard.size(), 1024);
}

TEST_F(SingleInstanceTest, WhoeverSendsMoreThanATokenIsNotReadToTheEnd) {
    SingleInstance first(pageFile);
    QByteArray heard = "none";
    first.onFront([&heard](const QByteArray& token) { heard = token; });
    EXPECT_TRUE(first.claim());
    QLocalSocket talkative;
    talkative.connectToServer(first.socketPath());
    ASSERT_TRUE(talkative.waitForConnected());
    talkative.write(QByteArray(1'000'000, 't'));
    EXPECT_TRUE(QTest::qWaitFor([&heard] { return heard != "none"; }));
    EXPECT_EQ(heard, "");
}

TEST_F(SingleInstanceTest, ABusyProgramComesToTheFrontLater) {
    SingleInstance first(pageFile);
    int calls = 0;
    first.onFront([&calls](const QByteArray&) { ++calls; });
    EXPECT_TRUE(first.claim());
    SingleInstance second(pageFile);
    EXPECT_FALSE(second.claim());
    {
        const BusyGuard busy;
        for (int i = 0; i < 10; ++i) {
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(calls, 0);
    }
    EXPECT_TRUE(QTest::qWaitFor([&calls] { return calls == 1; }));
}

} // namespace
} // namespace raincast
