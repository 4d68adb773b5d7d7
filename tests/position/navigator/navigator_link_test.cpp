// SPDX-License-Identifier: MIT
#include "position/navigator/fake_navigator.h"
#include "position/navigator/navigator_link.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFind[] = "find WCE_QVTrekkoMainWnd";
constexpr char kMutex[] = "mutex Quorvane-API-mutex";

class NavigatorLinkTest : public testing::Test {
protected:
    void registerCommand(
        const QString& command, RegistryStore::Branch branch = RegistryStore::Branch::user
    ) {
        RegistryStore store = RegistryStore::inStandardFolders();
        store.setString(
            branch, QStringLiteral("Software/Classes/QVNavObj/Shell/Open/Command"), QString(),
            command
        );
        ASSERT_TRUE(store.save(branch));
    }
    [[nodiscard]] QString program(const QString& name = QStringLiteral("bin/navigator")) {
        const QString path = navigator.home.path(name);
        writeFile(path);
        return path;
    }
    [[nodiscard]] std::vector<std::string> started() const {
        std::vector<std::string> found;
        for (const std::string& call : navigator.calls) {
            if (call.rfind("start ", 0) == 0) {
                found.push_back(call.substr(6));
            }
        }
        return found;
    }
    [[nodiscard]] auto sleeps() const {
        return std::count(navigator.calls.begin(), navigator.calls.end(), "sleep 200");
    }

    FakeNavigator navigator;
    NavigatorLink link;
};

TEST_F(NavigatorLinkTest, AWindowTheMutexAndTheFileMakeALink) {
    navigator.runs = true;
    EXPECT_EQ(ConnectNavigator(link, false), kNavigatorSuccess);
    EXPECT_THAT(navigator.calls, ElementsAre(kFind, kMutex));
    EXPECT_TRUE(link.window);
    EXPECT_TRUE(link.mutex);
    EXPECT_EQ(link.file, navigator.home.sharedFile());
}

TEST_F(NavigatorLinkTest, WhatDoesNotRunIsAbsentUnlessItIsToBeStarted) {
    registerCommand(program());
    EXPECT_EQ(ConnectNavigator(link, false), kNavigatorAbsent);
    EXPECT_THAT(navigator.calls, ElementsAre(kFind));
}

TEST_F(NavigatorLinkTest, WithoutAMutexThereIsNoLink) {
    navigator.runs = true;
    navigator.hasMutexes = false;
    EXPECT_EQ(ConnectNavigator(link, false), kNavigatorNoMutex);
}

TEST_F(NavigatorLinkTest, AMissingOrEmptyFolderIsStatus1) {
    navigator.runs = true;
    ASSERT_EQ(ConnectNavigator(link, false), kNavigatorSuccess);
    navigator.home.setFolder({});
    EXPECT_EQ(ConnectNavigator(link, false), kNavigatorNoFolder);
    navigator.home.forgetFolder();
    EXPECT_EQ(ConnectNavigator(link, false), kNavigatorNoFolder);
    EXPECT_EQ(link.file, "");
    EXPECT_FALSE(QFile::exists(navigator.home.userRegistry())) << "reading makes nothing";
}

TEST_F(NavigatorLinkTest, TheFolderOfEverybodyDoesNotCount) {
    navigator.runs = true;
    navigator.home.forgetFolder();
    RegistryStore store = RegistryStore::inStandardFolders();
    store.setString(
        RegistryStore::Branch::machine, QStringLiteral("Software/Quorvane"),
        QStringLiteral("temp_folder"), "/tmp"
    );
    ASSERT_TRUE(store.save(RegistryStore::Branch::machine));
    EXPECT_EQ(ConnectNavigator(link, false), kNavigatorNoFolder);
}

TEST_F(NavigatorLinkTest, PathsKeepToTheirLongestLength) {
    const struct {
        int folder;
        NavigatorStatus status;
        int path;
    } rows[] = {
        {249, kNavigatorSuccess, 260},
        {250, kNavigatorSuccess, 260},
        {259, kNavigatorSuccess, 260},
        {260, kNavigatorNoFolder, 0},
    };
    navigator.runs = true;
    for (const auto& row : rows) {
        const QString folder = "/" + QString(row.folder - 1, 'f');
        navigator.home.setFolder(folder);
        EXPECT_EQ(ConnectNavigator(link, false), row.status) << row.folder;
        EXPECT_EQ(link.file, (folder + "/QVAPI2.dat").left(row.path)) << row.folder;
    }
}

TEST_F(NavigatorLinkTest, LinkingAgainUnlinksFirstAndClosesNothing) {
    navigator.runs = true;
    ASSERT_EQ(ConnectNavigator(link, false), kNavigatorSuccess);
    navigator.runs = false;
    navigator.takeCalls();
    EXPECT_EQ(ConnectNavigator(link, false), kNavigatorAbsent);
    EXPECT_THAT(navigator.calls, ElementsAre(kFind));
    EXPECT_FALSE(link.window);
    EXPECT_FALSE(link.mutex);
}

TEST_F(NavigatorLinkTest, UnlinkingForgetsWindowAndMutex) {
    EXPECT_EQ(DisconnectNavigator(link, true), kNavigatorSuccess);
    EXPECT_THAT(navigator.calls, IsEmpty());
    navigator.runs = true;
    ASSERT_EQ(ConnectNavigator(link, false), kNavigatorSuccess);
    navigator.takeCalls();
    EXPECT_EQ(DisconnectNavigator(link, false), kNavigatorSuccess);
    EXPECT_THAT(navigator.calls, IsEmpty());
    EXPECT_FALSE(link.window);
    EXPECT_FALSE(link.mutex);
}

TEST_F(NavigatorLinkTest, TheCloseFlagEndsTheNavigator) {
    navigator.runs = true;
    ASSERT_EQ(ConnectNavigator(link, false), kNavigatorSuccess);
    navigator.takeCalls();
    EXPECT_EQ(DisconnectNavigator(link, true), kNavigatorSuccess);
    EXPECT_THAT(navigator.calls, ElementsAre("post 16"));
}

TEST_F(NavigatorLinkTest, OneThatWasStartedIsLinkedAsSoonAsItHasAWindow) {
    const QString path = program();
    registerCommand(path);
    navigator.runsAfterSleeps = 2;
    EXPECT_EQ(ConnectNavigator(link, true), kNavigatorSuccess);
    EXPECT_THAT(
        navigator.calls,
        ElementsAre(
            kFind, "start " + path.toStdString(), "sleep 200", kFind, "sleep 200", kFind, kMutex
        )
    );
}

TEST_F(NavigatorLinkTest, TheFiftiethPollIsTheLast) {
    registerCommand(program());
    navigator.runsAfterSleeps = 50;
    EXPECT_EQ(ConnectNavigator(link, true), kNavigatorSuccess);
    EXPECT_EQ(sleeps(), 50);
    DisconnectNavigator(link, false);
    navigator.runs = false;
    navigator.runsAfterSleeps = 101; // 50 were slept already
    navigator.takeCalls();
    EXPECT_EQ(ConnectNavigator(link, true), kNavigatorNotStarted);
    EXPECT_EQ(sleeps(), 50);
    EXPECT_FALSE(link.window);
}

TEST_F(NavigatorLinkTest, NothingToStartIsWaitedForAllTheSame) {
    EXPECT_EQ(ConnectNavigator(link, true), kNavigatorNotStarted);
    EXPECT_THAT(started(), IsEmpty());
    EXPECT_EQ(sleeps(), 50);
}

TEST_F(NavigatorLinkTest, ARunningOneIsNotStartedAgain) {
    registerCommand(program());
    navigator.runs = true;
    EXPECT_EQ(ConnectNavigator(link, true), kNavigatorSuccess);
    EXPECT_THAT(started(), IsEmpty());
    EXPECT_EQ(sleeps(), 0);
}

TEST_F(NavigatorLinkTest, TheProgramIsTheCommandsFirstWord) {
    const std::string plain = program().toStdString();
    const std::string blanks = program("my programs/navigator").toStdString();
    const struct {
        std::string command;
        std::string program;
    } rows[] = {
        {plain, plain},
        {plain + " %1 -x", plain},
        {'"' + plain + '"', plain},
        {'"' + blanks + "\" \"%1\"", blanks},
        {'"' + blanks, blanks},
        {blanks, ""},               // ends at its first blank: no such file
        {plain + "-missing", ""},   // no such file
        {'"' + plain + " x\"", ""}, // no such file
        {" " + plain, ""},
        {"", ""},
        {"\"\"", ""},
        {navigator.home.root().toStdString(), ""}, // a folder
        {plain + ' ' + std::string(260, 'x'), ""}, // longer than is read
        {plain + std::string(260 - plain.size(), ' '), plain},
    };
    for (const auto& row : rows) {
        registerCommand(QString::fromStdString(row.command));
        navigator.takeCalls();
        EXPECT_EQ(ConnectNavigator(link, true), kNavigatorNotStarted);
        EXPECT_EQ(
            started(), row.program.empty() ? std::vector<std::string>{} : std::vector{row.program}
        ) << row.command;
    }
}

TEST_F(NavigatorLinkTest, TheUsersCommandComesBeforeTheMachines) {
    const QString machine = program("machine");
    const QString user = program("user");
    registerCommand(machine, RegistryStore::Branch::machine);
    EXPECT_EQ(ConnectNavigator(link, true), kNavigatorNotStarted);
    registerCommand(user);
    EXPECT_EQ(ConnectNavigator(link, true), kNavigatorNotStarted);
    EXPECT_THAT(started(), ElementsAre(machine.toStdString(), user.toStdString()));
}

} // namespace
} // namespace raincast
