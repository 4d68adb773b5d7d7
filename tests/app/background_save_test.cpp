// SPDX-License-Identifier: MIT
#include "app/background_save.h"
#include "app/raincast_app.h"
#include "page/page_display.h"
#include "support/dialog_script.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/manual_timers.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"

#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class BackgroundSaveTest : public test::GuiTest {
protected:
    BackgroundSaveTest() {
        QDir().mkpath(home.programFolder());
        rename("One");
    }

    void rename(const QString& name) {
        if (application.pages().empty()) {
            application.append(std::make_unique<CPageDisplay>());
        }
        application.pages().front()->setName(name);
    }
    void load() { keeper.loadPages(nullptr); }
    void begin() {
        saving.emplace(
            keeper, timers,
            BackgroundSave::Callbacks{
                [this] { ++begun; },
                [this](const QStringList& problems) {
                    ++ended;
                    reported = problems;
                }}
        );
    }
    /// Fires the alarm that is due next, and waits for the save that this begins.
    void fireAndSave() {
        const int before = ended;
        EXPECT_GT(timers.fire(), 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return ended > before; }));
    }
    QByteArray pages() const { return readFile(home.pageFile()); }
    bool savedAs(const QString& name) const {
        const auto units = reinterpret_cast<const char*>(name.utf16());
        return pages().contains(QByteArray(units, name.size() * 2));
    }

    test::TemporaryHome home;
    ManualTimers timers;
    CRaincastApp application;
    CGlobals::Persistant settings;
    Keeper keeper{application, settings, home.pageFile()};
    std::optional<BackgroundSave> saving;
    int begun = 0;
    int ended = 0;
    QStringList reported;
};

TEST_F(BackgroundSaveTest, AChangeIsSavedASecondLater) {
    load();
    rename("One");
    begin();
    EXPECT_THAT(timers.running(), IsEmpty());
    UserChange::announce();
    EXPECT_THAT(timers.running(), ElementsAre(1000, 2000));
    fireAndSave();
    EXPECT_EQ(timers.now(), std::chrono::seconds(1));
    EXPECT_THAT(timers.running(), IsEmpty());
    EXPECT_TRUE(savedAs("One"));
    EXPECT_TRUE(readFile(home.userRegistry()).contains("CGlobals"));
    EXPECT_EQ(begun, 1);
    EXPECT_THAT(reported, IsEmpty());
}

TEST_F(BackgroundSaveTest, ChangesThatDoNotStopAreSavedAfterTwoSeconds) {
    load();
    begin();
    std::unique_ptr<Alarm> user;
    user = timers.make([&] {
        UserChange::announce();
        user->start(std::chrono::milliseconds(300));
    });
    UserChange::announce();
    user->start(std::chrono::milliseconds(300));
    for (int fired = 0; begun == 0 && fired < 20; ++fired) {
        timers.fire();
    }
    EXPECT_EQ(timers.now(), std::chrono::seconds(2));
}

TEST_F(BackgroundSaveTest, WhatIsChangedDuringASaveIsSavedByTheNext) {
    load();
    begin();
    UserChange::announce();
    timers.fire(); // the first one is under way
    rename("Two");
    UserChange::announce();
    timers.fire();
    EXPECT_TRUE(QTest::qWaitFor([&] { return ended == 2; }));
    EXPECT_TRUE(savedAs("Two"));
}

TEST_F(BackgroundSaveTest, PagesThatAreInTheFileAreNotWrittenAgain) {
    load();
    rename("One");
    begin();
    UserChange::announce();
    fireAndSave();
    QFile::remove(home.pageFile());
    UserChange::announce();
    fireAndSave();
    EXPECT_FALSE(QFile::exists(home.pageFile()));
    rename("Two");
    UserChange::announce();
    fireAndSave();
    EXPECT_TRUE(savedAs("Two"));
}

TEST_F(BackgroundSaveTest, TheFirstSaveKeepsTheLoadedFileAndNoLaterOneTouchesIt) {
    ASSERT_TRUE(PageFile(home.pageFile(), examinePages<CRaincastApp>).save(application));
    const QByteArray loaded = pages();
    load();
    begin();
    for (const char* name : {"Two", "Three"}) {
        rename(name);
        UserChange::announce();
        fireAndSave();
        EXPECT_EQ(readFile(home.pageFile() + ".bak"), loaded) << name;
    }
    EXPECT_TRUE(savedAs("Three"));
}

TEST_F(BackgroundSaveTest, AFailureIsReportedAndTriedAgainEachTenSeconds) {
    load();
    rename("One");
    begin();
    UserChange::announce();
    {
        const FullDisk disk(10);
        fireAndSave();
        ASSERT_EQ(reported.size(), 2);
        EXPECT_EQ(reported[0], "The pages and marks cannot be saved: File too large.");
        EXPECT_EQ(reported[1], "The settings cannot be saved: File too large.");
        EXPECT_THAT(timers.running(), ElementsAre(10'000));
        fireAndSave();
        EXPECT_EQ(reported.size(), 2);
    }
    EXPECT_FALSE(QFile::exists(home.pageFile()));
    EXPECT_THAT(timers.running(), ElementsAre(10'000));
    fireAndSave();
    EXPECT_THAT(reported, IsEmpty());
    EXPECT_TRUE(savedAs("One"));
    EXPECT_THAT(timers.running(), IsEmpty());
}

TEST_F(BackgroundSaveTest, NothingIsSavedBeforeThePagesAreLoaded) {
    begin();
    UserChange::announce();
    timers.fire();
    EXPECT_EQ(begun, 0);
    load();
    rename("One");
    fireAndSave();
    EXPECT_TRUE(savedAs("One"));
}

TEST_F(BackgroundSaveTest, AFileThatMustStayAsItIsStays) {
    QDir().mkpath(home.pageFile());
    test::DialogScript script;
    script.expect("Raincast");
    load();
    begin();
    UserChange::announce();
    fireAndSave();
    EXPECT_THAT(reported, IsEmpty()) << "the user has read so at the start";
    EXPECT_FALSE(QFile::exists(home.userRegistry()));
}

TEST_F(BackgroundSaveTest, SettlingWaitsAndLeavesTheRestToTheCaller) {
    load();
    rename("One");
    begin();
    UserChange::announce();
    timers.fire();
    rename("Two");
    UserChange::announce();
    saving->settle();
    EXPECT_TRUE(savedAs("One"));
    EXPECT_EQ(ended, 0);
    EXPECT_THAT(timers.running(), IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(ended, 0);
    keeper.savePages(Keeper::Audience::nobody, nullptr);
    EXPECT_TRUE(savedAs("Two"));
}

} // namespace
} // namespace raincast
