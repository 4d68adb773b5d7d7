// SPDX-License-Identifier: MIT
// Runs the program itself, as a desktop or a script would.
#include "support/files.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"

#include <QFileSystemWatcher>
#include <QImage>
#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>

#include <csignal>

namespace raincast {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int kDeadline = 60'000; // milliseconds

struct Result {
    int status = -1;
    std::string output;
    std::string errors;
};

Result finish(QProcess& process) {
    EXPECT_TRUE(process.waitForFinished(kDeadline));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {
        process.exitCode(), process.readAllStandardOutput().toStdString(),
        process.readAllStandardError().toStdString()};
}

class ProgramTest : public test::GuiTest {
protected:
    test::TemporaryHome home;
    QProcessEnvironment environment = home.environment();

    void start(QProcess& process, const QStringList& arguments) const {
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(home.root());
        // Live radar without a provider: nothing is asked of another machine.
        const QStringList noProviders = {
            "--live-arguments", "--live-frames none --live-fallback none --live-warnings none"};
        process.start(QStringLiteral(RAINCAST_PROGRAM), noProviders + arguments);
        EXPECT_TRUE(process.waitForStarted(kDeadline));
    }
    Result run(const QStringList& arguments) const {
        QProcess process;
        start(process, arguments);
        return finish(process);
    }
    /// Waits until a started viewer listens: it shows its window next.
    void awaitSocket() const {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !sockets().isEmpty(); }, kDeadline));
    }
    /// Waits until a started viewer has its pages, which it does right before its event loop: a
    /// first start makes the folder for them.
    void awaitFolder() const {
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return QDir(home.programFolder()).exists(); }, kDeadline)
        );
    }
    [[nodiscard]] QStringList sockets() const {
        QStringList names = QDir(home.path("run")).entryList({"raincast-*"}, QDir::System);
        return names;
    }
    void end(QProcess& process, int signal) const {
        kill(static_cast<pid_t>(process.processId()), signal);
    }
    [[nodiscard]] QString configFileSaved() const {
        const auto registry = QJsonDocument::fromJson(readFile(home.userRegistry()));
        return registry["Software/Quorvane/Raincast_1/CGlobals"]["config_file"]["value"].toString();
    }
};

TEST_F(ProgramTest, EverySignalToEndSavesAsExitDoes) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        QProcess process;
        start(process, {});
        awaitFolder();
        end(process, signal);
        EXPECT_EQ(finish(process).status, 0) << signal;
        EXPECT_TRUE(QFile::remove(home.pageFile())) << signal;
        EXPECT_EQ(configFileSaved(), home.pageFile()) << signal;
        EXPECT_TRUE(QFile::remove(home.userRegistry()));
        QDir(home.programFolder()).removeRecursively();
    }
}

TEST_F(ProgramTest, ASignalAtAnyMomentOfTheStartEndsItInGoodOrder) {
    for (int attempt = 0; attempt < 8; ++attempt) {
        QProcess process;
        start(process, {});
        if (attempt > 0) {
            QTest::qWait(attempt * 4);
        }
        end(process, SIGTERM);
        ASSERT_TRUE(process.waitForFinished(kDeadline));
        // Before the program's first statement the signal has its usual meaning.
        if (process.exitStatus() == QProcess::NormalExit) {
            EXPECT_EQ(process.exitCode(), 0);
            EXPECT_TRUE(QFile::exists(home.pageFile()));
            EXPECT_EQ(configFileSaved(), home.pageFile());
        }
        QFile::remove(home.pageFile());
        QFile::remove(home.userRegistry());
    }
}

TEST_F(ProgramTest, ASecondStartEndsAtOnceAndTouchesNothing) {
    QProcess first;
    start(first, {});
    awaitFolder();
    const Result second = run({});
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.output, "");
    EXPECT_FALSE(QFile::exists(home.userRegistry()));
    EXPECT_FALSE(QFile::exists(home.pageFile()));
    EXPECT_EQ(first.state(), QProcess::Running);
    end(first, SIGTERM);
    EXPECT_EQ(finish(first).status, 0);
    EXPECT_TRUE(QFile::exists(home.pageFile()));
}

TEST_F(ProgramTest, ACrashedInstanceIsNoObstacleForTheNext) {
    {
        QProcess crashing;
        start(crashing, {});
        awaitFolder();
        crashing.kill();
        ASSERT_TRUE(crashing.waitForFinished(kDeadline));
        EXPECT_EQ(sockets().size(), 1);
    }
    QDir(home.programFolder()).removeRecursively();
    QProcess next;
    start(next, {});
    awaitFolder();
    EXPECT_EQ(run({}).status, 0);
    EXPECT_EQ(next.state(), QProcess::Running);
    end(next, SIGTERM);
    EXPECT_EQ(finish(next).status, 0);
    EXPECT_TRUE(sockets().isEmpty());
}

// A program that cannot make any file larger: a full disk.
void startOnFullDisk(QProcess& process) {
    process.setChildProcessModifier([] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit none{0, 0};
        setrlimit(RLIMIT_FSIZE, &none);
    });
}

TEST_F(ProgramTest, ASaveThatFailsAfterASignalIsToldOnStandardErrorAndTheProgramEnds) {
    for (const int signal : {SIGTERM, SIGINT}) {
        QProcess process;
        startOnFullDisk(process);
        start(process, {});
        awaitFolder();
        end(process, signal);
        const Result result = finish(process);
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(
            result.errors, AllOf(
                               HasSubstr(
                                   "raincast: The pages and marks cannot be saved in " +
                                   home.pageFile().toStdString() + ": File too large."
                               ),
                               HasSubstr(
                                   "raincast: The settings cannot be saved in " +
                                   home.userRegistry().toStdString() + ": File too large."
                               )
                           )
        );
        EXPECT_EQ(namesIn(home.programFolder()), "");
        QDir(home.programFolder()).removeRecursively();
    }
}

TEST_F(ProgramTest, AHomeThatCannotBeWrittenIsNamedWithTheReason) {
    // Nobody can make a folder there, root included.
    environment.insert("XDG_DATA_HOME", "/proc/raincast/data");
    environment.insert("XDG_CONFIG_HOME", "/proc/raincast/config");
    QProcess process;
    start(process, {});
    awaitSocket();
    end(process, SIGTERM);
    const Result result = finish(process);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(
        result.errors,
        AllOf(
            HasSubstr("saved in /proc/raincast/data/Quorvane/Raincast_1/pages.cfg: "),
            HasSubstr("saved in /proc/raincast/config/Quorvane/registry.json: ")
        )
    );
}

/// A file of radar pages, as another run leaves it.
QByteArray pagesOfARun(const test::TemporaryHome& home) {
    const QByteArray bytes = readFile(home.pageFile());
    QFile::remove(home.pageFile());
    return bytes;
}

TEST_F(ProgramTest, UnansweredTheBackupOutlivesAnyNumberOfStarts) {
    {
        QProcess process;
        start(process, {});
        awaitFolder();
        end(process, SIGTERM);
        finish(process);
    }
    const QByteArray good = pagesOfARun(home);
    ASSERT_GT(good.size(), 100);
    writeFile(home.pageFile() + ".bak", good);
    // A kill during the save once left this.
    writeFile(home.pageFile(), {});
    for (int run = 0; run < 3; ++run) {
        QProcess process;
        start(process, {});
        awaitSocket();
        end(process, SIGTERM);
        const Result result = finish(process);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(readFile(home.pageFile()), "");
        EXPECT_EQ(readFile(home.pageFile() + ".bak"), good);
    }
}

TEST_F(ProgramTest, AKillDuringTheSaveLeavesTheOldPagesOrTheNewOnes) {
    {
        QProcess process;
        start(process, {});
        awaitFolder();
        end(process, SIGTERM);
        finish(process);
    }
    const QByteArray good = readFile(home.pageFile());
    ASSERT_GT(good.size(), 100);
    for (int kills = 1; kills <= 6; ++kills) {
        QFileSystemWatcher watcher({home.programFolder()});
        int changes = 0;
        QProcess process;
        // With the first changes of the folder it is in the middle of its save, or at its end.
        QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, [&] {
            if (++changes == kills) {
                process.kill();
            }
        });
        start(process, {});
        awaitSocket();
        end(process, SIGTERM);
        EXPECT_TRUE(QTest::qWaitFor(
            [&process] { return process.state() == QProcess::NotRunning; }, kDeadline
        ));
        EXPECT_EQ(readFile(home.pageFile()), good) << kills;
        const QByteArray backup = readFile(home.pageFile() + ".bak");
        EXPECT_TRUE(backup == good || backup == "(none)") << kills;
    }
}

TEST_F(ProgramTest, ADiskThatFailsHalfWayThroughThePagesLeavesThem) {
    const QByteArray good = QByteArray(100'000, 'x');
    const QByteArray backup = "kept";
    for (const char* after : {"0", "1", "50000", "99999"}) {
        writeFile(home.pageFile(), good);
        writeFile(home.pageFile() + ".bak", backup);
        environment.insert("LD_PRELOAD", QStringLiteral(BROKEN_DISK_LIBRARY));
        environment.insert("BROKEN_DISK_FILE", home.pageFile());
        environment.insert("BROKEN_DISK_AFTER", after);
        // The library does not come first: it calls on to the sanitizer's read.
        environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
        QProcess process;
        start(process, {});
        awaitSocket();
        end(process, SIGTERM);
        const Result result = finish(process);
        EXPECT_EQ(
            result.errors, "raincast: The pages in " + home.pageFile().toStdString() +
                               " cannot be read: Input/output error. They are left as they are; "
                               "nothing of this run will be saved.\n"
        ) << after;
        EXPECT_EQ(readFile(home.pageFile()), good);
        EXPECT_EQ(readFile(home.pageFile() + ".bak"), backup);
        EXPECT_FALSE(QFile::exists(home.userRegistry()));
    }
}

TEST_F(ProgramTest, APageFileOfOneRunIsUsedAndNotRemembered) {
    QProcess process;
    start(process, {"--page-file", "mine.cfg", "--geometry", "300x400"});
    awaitSocket();
    // A viewer of the usual pages runs beside it.
    QProcess other;
    start(other, {});
    awaitFolder();
    end(process, SIGTERM);
    EXPECT_EQ(finish(process).status, 0);
    EXPECT_TRUE(QFile::exists(home.path("mine.cfg")));
    EXPECT_FALSE(QFile::exists(home.pageFile()));
    EXPECT_EQ(configFileSaved(), "");
    EXPECT_FALSE(readFile(home.userRegistry()).contains("geometry"));
    end(other, SIGTERM);
    EXPECT_EQ(finish(other).status, 0);
    EXPECT_EQ(configFileSaved(), home.pageFile());
}

TEST_F(ProgramTest, APictureIsAllThatAScreenshotWrites) {
    const Result result = run({"--screenshot", "picture.png", "--geometry", "300x200"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(QImage(home.path("picture.png")).size(), QSize(300, 200));
    EXPECT_EQ(namesIn(home.root()), "data picture.png run");
    EXPECT_EQ(namesIn(home.path("data/Quorvane")), "Temp"); // the image cache
    EXPECT_EQ(namesIn(home.path("run")), "");
}

TEST_F(ProgramTest, AScreenshotsOwnPageFileIsWritten) {
    const Result result = run({"--screenshot", "picture.png", "--page-file", "mine.cfg"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(namesIn(home.root()), "data mine.cfg picture.png run");
}

TEST_F(ProgramTest, AScreenshotNeedsNoDisplayAndStandsApart) {
    QProcess first;
    start(first, {});
    awaitFolder();
    environment.remove("QT_QPA_PLATFORM");
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    const Result picture = run({"--screenshot", "picture.png"});
    EXPECT_EQ(picture.status, 0) << picture.errors;
    EXPECT_FALSE(QImage(home.path("picture.png")).isNull());
    environment.insert("DISPLAY", ":4711"); // nobody's
    EXPECT_EQ(run({"--screenshot", "other.png"}).status, 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    end(first, SIGTERM);
    EXPECT_EQ(finish(first).status, 0);
}

TEST_F(ProgramTest, AScreenshotThatCannotBeWrittenFails) {
    const Result result = run({"--screenshot", "missing/picture.png"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("raincast: Cannot write "));
}

TEST_F(ProgramTest, TheScreenshotHasThePixelsOfTheDevice) {
    for (const auto& [factor, size] :
         {std::pair("2", QSize(600, 400)), std::pair("1.5", QSize(450, 300))}) {
        environment.insert("QT_SCALE_FACTOR", factor);
        EXPECT_EQ(run({"--screenshot", "picture.png", "--geometry", "300x200"}).status, 0);
        EXPECT_EQ(QImage(home.path("picture.png")).size(), size) << factor;
    }
}

TEST_F(ProgramTest, WithoutAnyDisplayOneSentenceSaysHowToGoOn) {
    environment.remove("QT_QPA_PLATFORM");
    environment.remove("WAYLAND_DISPLAY");
    for (const char* display : {"", ":4711"}) {
        environment.insert("DISPLAY", display);
        const Result result = run({});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, StartsWith("raincast: There is no display"));
        EXPECT_THAT(result.errors, HasSubstr("--screenshot FILE"));
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
        EXPECT_EQ(namesIn(home.root()), "run");
    }
}

/// Stands in for the navigator's window.
class NavigatorWindow {
public:
    explicit NavigatorWindow(const test::TemporaryHome& home) {
        EXPECT_TRUE(m_server.listen(home.path("run/WCE_QVTrekkoMainWnd")));
    }
    /// The first client.
    QLocalSocket& client() {
        if (m_client == nullptr) {
            EXPECT_TRUE(
                QTest::qWaitFor([this] { return m_server.hasPendingConnections(); }, kDeadline)
            );
            m_client = m_server.nextPendingConnection();
        }
        return *m_client;
    }
    QByteArray message() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return client().bytesAvailable() >= 12; }, kDeadline));
        return client().read(12).toHex();
    }

private:
    QLocalServer m_server;
    QLocalSocket* m_client = nullptr;
};

constexpr char kFolderForTheNavigator[] =
    R"({"Software/Quorvane": {"temp_folder": {"type": "string", "value": "/nonesuch"}}})";

TEST_F(ProgramTest, ANavigatorIsFoundAndAsked) {
    writeFile(home.userRegistry(), kFolderForTheNavigator);
    NavigatorWindow navigator(home);
    QProcess process;
    start(process, {});
    EXPECT_EQ(navigator.message(), "000400001000000004800000");
    navigator.client().write(QByteArray::fromHex("0b000000"));
    EXPECT_EQ(navigator.message(), "00040000100000001f000000");
    navigator.client().write(QByteArray::fromHex("0c000000"));
    EXPECT_EQ(navigator.message(), "000400001000000004800000") << "asked again a second later";
    end(process, SIGTERM);
    EXPECT_EQ(finish(process).status, 0) << "though it gets no answer";
    EXPECT_TRUE(QFile::exists(home.pageFile()));
}

TEST_F(ProgramTest, ItEndsInGoodOrderWhileAnotherKeepsTheNavigator) {
    writeFile(home.userRegistry(), kFolderForTheNavigator);
    const QString mutex = home.path("run/Quorvane-API-mutex");
    writeFile(mutex, "");
    QFile other(mutex);
    ASSERT_TRUE(other.open(QIODevice::ReadOnly));
    ASSERT_EQ(flock(other.handle(), LOCK_EX), 0);
    NavigatorWindow navigator(home);
    QProcess process;
    start(process, {});
    navigator.client(); // it links, and waits for the mutex
    end(process, SIGTERM);
    EXPECT_EQ(finish(process).status, 0);
    EXPECT_EQ(navigator.client().bytesAvailable(), 0);
    EXPECT_TRUE(QFile::exists(home.pageFile()));
}

TEST_F(ProgramTest, HelpAndVersionNeedNoDisplay) {
    environment.remove("QT_QPA_PLATFORM");
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    EXPECT_EQ(run({"--version"}).output, "raincast " RAINCAST_VERSION "\n");
    const Result help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: "));
}

TEST_F(ProgramTest, WrongUsageIsStatus2) {
    const Result result = run({"--geometry", "huge"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("--geometry takes WIDTHxHEIGHT"));
    EXPECT_EQ(namesIn(home.root()), "run");
}

TEST_F(ProgramTest, QtsOptionsReachQt) {
    environment.remove("QT_QPA_PLATFORM");
    environment.remove("DISPLAY");
    EXPECT_EQ(run({"-platform", "minimal", "--screenshot", "picture.png"}).status, 0);
    EXPECT_EQ(run({"-platform", "nonesuch"}).status, 1);
}

} // namespace
} // namespace raincast
