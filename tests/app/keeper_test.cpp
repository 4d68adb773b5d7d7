// SPDX-License-Identifier: MIT
// Pages and settings from run to run, as the user of a whole viewer meets them.
#include "app/background_save.h"
#include "app/keeper.h"
#include "app/viewer_harness.h"
#include "app/window_place.h"
#include "core/user_change.h"
#include "persist/registry_store.h"
#include "support/dialog_script.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/serial_bytes.h"
#include "weather/dialog_controls.h"

#include <QLabel>
#include <QMessageBox>
#include <QMetaMethod>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace raincast {
namespace {

using test::DialogScript;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr auto kBox = "Raincast";
constexpr qsizetype kPageBytes = 8 + 4 + 4 + 4 + 4 + 1 + 4; // with an empty name and no item

class KeeperTest : public test::ViewerHarness {
protected:
    /// The bytes of a file of blank pages with these names.
    QByteArray fileOf(const QStringList& names) const {
        CAppPaged pages;
        for (const QString& name : names) {
            pages.append(std::make_unique<CPageDisplay>()).setName(name);
        }
        const QString path = home.path("made.cfg");
        EXPECT_TRUE(PageFile(path, examinePages<CAppPaged>).save(pages));
        const QByteArray bytes = readFile(path);
        QFile::remove(path);
        return bytes;
    }
    static std::string namesOf(const Viewer& viewer) {
        QStringList names;
        for (const auto& page : viewer.application().pages()) {
            names.append(page->name());
        }
        return names.join(u' ').toStdString();
    }
    QByteArray pages() const { return readFile(home.pageFile()); }
    QByteArray backup() const { return readFile(home.pageFile() + ".bak"); }
    void putPages(const QByteArray& bytes) const { writeFile(home.pageFile(), bytes); }
    void putBackup(const QByteArray& bytes) const { writeFile(home.pageFile() + ".bak", bytes); }

    static std::string textOf(QDialog& box) {
        return static_cast<QMessageBox&>(box).text().toStdString();
    }
    /// Reads a box, and presses a button of it.
    void expectBox(const testing::Matcher<std::string>& text, const char* button) {
        script.expect(kBox, [text, button](QDialog& box) {
            EXPECT_THAT(textOf(box), text);
            test::press(box, button);
        });
    }
    /// Runs until the user closes the window.
    int runAndClose() {
        return run([](Viewer& viewer) { choose(viewer, {"Menu", "Exit"}); });
    }
    /// Runs until the program is asked to end while a box is open.
    int runAndEndInBox() {
        Viewer* running = nullptr;
        script.expect(kBox, [&running](QDialog&) { running->requestEnd(); });
        forgetRun();
        Viewer viewer(options);
        running = &viewer;
        return viewer.run();
    }
    /// Runs until a signal ends it.
    int runAndEnd() {
        return run([](Viewer& viewer) { viewer.requestEnd(); });
    }
    /// Renames the page that is shown, so that there is something to save.
    static void renameTo(Viewer& viewer, const QString& name) {
        viewer.application().current()->setName(name);
    }
    /// The desktop asks to save, since the session ends.
    static void logOut() {
        const int signal = qApp->metaObject()->indexOfSignal("commitDataRequest(QSessionManager&)");
        ASSERT_GE(signal, 0);
        int nobodyLooksAtIt = 0;
        void* arguments[] = {nullptr, &nobodyLooksAtIt};
        QMetaObject::activate(qApp, signal, arguments);
    }

    /// What the program has said since CaptureStderr(); Qt's remarks are left out.
    static std::string said() {
        std::string lines;
        const QString all = QString::fromStdString(testing::internal::GetCapturedStderr());
        for (const QString& line : all.split(u'\n')) {
            lines += line.startsWith(u"raincast: ") ? line.toStdString() + '\n' : std::string();
        }
        return lines;
    }

    DialogScript script;
};

// A page file that cannot be read.

class UnreadablePagesTest : public KeeperTest {
protected:
    std::string complaint(const char* reason) const {
        return "The pages in " + home.pageFile().toStdString() + " cannot be read: " + reason +
               ". They are left as they are; nothing of this run will be saved.";
    }
    /// A run whose user reads the box, works with the default page, and leaves.
    void expectLeftAlone(const char* reason) {
        expectBox(complaint(reason), "OK");
        script.expect("Weather Station");
        EXPECT_EQ(
            run([this](Viewer& viewer) {
                EXPECT_EQ(namesOf(viewer), "Weather");
                renameTo(viewer, "Mine");
                logOut();
                choose(viewer, {"Menu", "Exit"});
            }),
            0
        );
        EXPECT_FALSE(QFile::exists(home.userRegistry()));
    }
    void makeFolder() const { QDir().mkpath(home.programFolder()); }
};

TEST_F(UnreadablePagesTest, ABrokenDiskLeavesThemAndSaysSo) {
    makeFolder();
    ASSERT_EQ(symlink("/proc/self/mem", qPrintable(home.pageFile())), 0);
    putBackup(fileOf({"One"}));
    expectLeftAlone("Input/output error");
    EXPECT_EQ(QFile::symLinkTarget(home.pageFile()), "/proc/self/mem");
    EXPECT_EQ(backup(), fileOf({"One"}));
    EXPECT_EQ(namesIn(home.programFolder()), "pages.cfg pages.cfg.bak");
}

TEST_F(UnreadablePagesTest, SoDoesAFileThatIsTooLarge) {
    putPages(fileOf({"One"}));
    ASSERT_TRUE(QFile::resize(home.pageFile(), PageBytes::kMostBytes + 1));
    expectLeftAlone("Larger than 64 MiB");
    EXPECT_EQ(QFileInfo(home.pageFile()).size(), PageBytes::kMostBytes + 1);
    EXPECT_EQ(namesIn(home.programFolder()), "pages.cfg");
}

TEST_F(UnreadablePagesTest, SoDoesAPipe) {
    makeFolder();
    ASSERT_EQ(mkfifo(qPrintable(home.pageFile()), 0600), 0);
    expectLeftAlone("Not a regular file");
    EXPECT_EQ(namesIn(home.programFolder()), "pages.cfg");
}

TEST_F(UnreadablePagesTest, SoDoesAFolder) {
    QDir().mkpath(home.pageFile());
    expectLeftAlone("Is a directory");
    EXPECT_EQ(namesIn(home.pageFile()), "");
}

TEST_F(UnreadablePagesTest, TheEndWhileTheBoxIsOpenIsToldOnStandardError) {
    QDir().mkpath(home.pageFile());
    testing::internal::CaptureStderr();
    EXPECT_EQ(runAndEndInBox(), 0);
    EXPECT_EQ(said(), "raincast: " + complaint("Is a directory") + "\n");
    EXPECT_EQ(namesIn(home.pageFile()), "");
    EXPECT_FALSE(QFile::exists(home.userRegistry()));
}

TEST_F(UnreadablePagesTest, APictureIsMadeOfTheDefaultPageAndFails) {
    QDir().mkpath(home.pageFile());
    options.pageFile = home.pageFile();
    options.screenshot = home.path("picture.png");
    testing::internal::CaptureStderr();
    forgetRun();
    EXPECT_EQ(Viewer(options).run(), 1);
    EXPECT_EQ(said(), "raincast: " + complaint("Is a directory") + "\n");
    EXPECT_TRUE(QFile::exists(options.screenshot));
    EXPECT_EQ(namesIn(home.pageFile()), "");
}

// A page file that was read in part.

class DamagedPagesTest : public KeeperTest {
protected:
    const QByteArray whole = fileOf({"One", "Two", "Three"});
    const QByteArray cut = whole.left(whole.size() - 3);
    const testing::Matcher<std::string> question =
        testing::MatchesRegex("Some pages could not be read\\. Use the backup of "
                              "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2} \\(3 pages\\)\\?");

    DamagedPagesTest() {
        putPages(cut);
        putBackup(whole);
    }
};

TEST_F(DamagedPagesTest, TheBackupIsLoadedIfTheUserWantsIt) {
    for (const QByteArray& damaged : {cut, QByteArray(), QByteArray(4096, '\0')}) {
        putPages(damaged);
        expectBox(question, "Yes");
        EXPECT_EQ(
            run([](Viewer& viewer) {
                EXPECT_EQ(namesOf(viewer), "One Two Three");
                choose(viewer, {"Menu", "Exit"});
            }),
            0
        );
        EXPECT_EQ(pages(), whole);
        EXPECT_EQ(backup(), whole);
    }
    EXPECT_EQ(runAndClose(), 0) << "nothing is asked any more";
}

TEST_F(DamagedPagesTest, TheQuestionComesBeforeAnyPageIsShown) {
    script.expect(kBox, [this](QDialog& box) {
        EXPECT_EQ(server.count(), 0);
        const auto shown = QApplication::topLevelWidgets();
        EXPECT_TRUE(std::any_of(shown.begin(), shown.end(), [&box](const QWidget* window) {
            return window == box.parentWidget() && window->isVisible();
        }));
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(
        run([](Viewer& viewer) {
            EXPECT_EQ(namesOf(viewer), "One Two Three");
            viewer.requestEnd();
        }),
        0
    );
}

TEST_F(DamagedPagesTest, WhatCouldBeReadIsUsedIfTheUserWantsThat) {
    putPages(cut.left(kPageBytes + 4 + 6 + 10));
    script.expect(kBox, [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(
        run([](Viewer& viewer) {
            EXPECT_EQ(viewer.application().pages().front()->name(), "One");
            EXPECT_LT(viewer.application().pages().size(), 3U);
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    EXPECT_LT(pages().size(), whole.size());
    EXPECT_EQ(backup(), whole);
    // The user has decided: the next run makes another backup.
    const QByteArray left = pages();
    EXPECT_EQ(runAndClose(), 0);
    EXPECT_EQ(backup(), left);
}

TEST_F(DamagedPagesTest, WithoutAnAnswerEverythingStays) {
    for (int start = 0; start < 3; ++start) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(runAndEndInBox(), 0);
        EXPECT_THAT(said(), HasSubstr("could not be read. It is left as"));
        EXPECT_EQ(pages(), cut);
        EXPECT_EQ(backup(), whole);
    }
    EXPECT_EQ(server.count(), 0);
}

TEST_F(DamagedPagesTest, APictureAsksNobodyAndLeavesBoth) {
    options.pageFile = home.pageFile();
    options.screenshot = home.path("picture.png");
    testing::internal::CaptureStderr();
    forgetRun();
    EXPECT_EQ(Viewer(options).run(), 1);
    EXPECT_THAT(
        said(), AllOf(HasSubstr("raincast: Some pages in "), HasSubstr("its backup of 3 pages."))
    );
    EXPECT_TRUE(QFile::exists(options.screenshot));
    EXPECT_EQ(pages(), cut);
    EXPECT_EQ(backup(), whole);
}

TEST_F(DamagedPagesTest, WithoutABackupNothingIsAsked) {
    QFile::remove(home.pageFile() + ".bak");
    EXPECT_EQ(
        run([](Viewer& viewer) {
            EXPECT_EQ(viewer.application().pages().front()->name(), "One");
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    EXPECT_EQ(backup(), cut);
}

TEST_F(DamagedPagesTest, OnePageIsOnePage) {
    putBackup(fileOf({"One"}));
    expectBox(HasSubstr("(1 page)?"), "Yes");
    EXPECT_EQ(runAndEnd(), 0);
    EXPECT_EQ(pages(), fileOf({"One"}));
}

TEST_F(DamagedPagesTest, MarksThatWereCutOffAreInTheBackup) {
    putPages(whole);
    EXPECT_EQ(
        run([](Viewer& viewer) {
            viewer.application().marks().add({54.5, 11.25}, QStringLiteral("Harbour"));
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    const QByteArray withMarks = pages();
    EXPECT_GT(withMarks.size(), whole.size());
    putPages(withMarks.left(withMarks.size() - 1));
    putBackup(withMarks);
    expectBox(HasSubstr("(3 pages)"), "Yes");
    EXPECT_EQ(
        run([](Viewer& viewer) {
            EXPECT_EQ(viewer.application().marks().marks().size(), 1U);
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    EXPECT_EQ(pages(), withMarks);
}

TEST_F(DamagedPagesTest, NothingOfTheFileIsThereWhileTheUserIsAsked) {
    CRaincastApp marked;
    marked.append(std::make_unique<CPageDisplay>());
    marked.marks().add({54.5, 11.25}, QStringLiteral("Harbour"));
    putPages(test::written(marked) + '\0');
    marked.marks().clear();
    script.expect(kBox, [](QDialog& box) {
        for (const COverlayObject* const object : COverlayObject::all()) {
            EXPECT_EQ(dynamic_cast<const COverlayMark*>(object), nullptr);
        }
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_EQ(
        run([](Viewer& viewer) {
            EXPECT_EQ(viewer.application().marks().marks().size(), 1U);
            viewer.requestEnd();
        }),
        0
    );
}

/// A page that counts how often one is made.
class CountedPage : public CPageDisplay {
public:
    static constexpr std::uint32_t kTypeId = 9012;
    static inline int made = 0;

    CountedPage() { ++made; }
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeId; }
};

const SerializableType<CountedPage> countedType{CountedPage::kTypeId};

TEST_F(KeeperTest, AWholeFileIsReadOnce) {
    CAppPaged counted;
    counted.append(std::make_unique<CountedPage>());
    putPages(test::written(counted));
    CountedPage::made = 0;
    EXPECT_EQ(runAndEnd(), 0);
    EXPECT_EQ(CountedPage::made, 1);
}

TEST_F(DamagedPagesTest, LookingAtAFileLeavesTheMarksAlone) {
    CRaincastApp application;
    application.marks().add({54.5, 11.25}, QStringLiteral("Harbour"));
    EXPECT_EQ(examinePages<CRaincastApp>(whole).wholePages, 3U);
    EXPECT_EQ(application.marks().marks().size(), 1U);
}

// While the program runs.

TEST_F(KeeperTest, AChangeIsSavedWhileTheProgramRuns) {
    putPages(fileOf({"One"}));
    const QByteArray loaded = pages();
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            EXPECT_EQ(pages(), loaded);
            EXPECT_FALSE(QFile::exists(home.userRegistry()));
            viewer.application().marks().add({54.5, 11.25}, QStringLiteral("Harbour"));
            EXPECT_TRUE(QTest::qWaitFor([&] { return pages() != loaded; }));
            EXPECT_EQ(backup(), loaded);
            EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(home.userRegistry()); }));
            EXPECT_FALSE(readFile(home.userRegistry()).contains(server.host().toUtf8()))
                << "a server of this run only";
        }),
        0
    );
    EXPECT_EQ(backup(), loaded);
}

TEST_F(KeeperTest, ARunThatMakesAPictureSavesNothingWhenItIsChanged) {
    options.screenshot = home.path("picture.png");
    bool looked = false;
    bool saves = false;
    QTimer::singleShot(0, [&] {
        looked = true;
        Listener<UserChange>::forEach([&saves](Listener<UserChange>& each) {
            saves = saves || typeid(each) == typeid(BackgroundSave);
        });
    });
    Viewer viewer(options);
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_TRUE(looked);
    EXPECT_FALSE(saves);
}

// The rule of the backup, from run to run.

TEST_F(KeeperTest, ABackupWithMorePagesStaysWhateverWasLoaded) {
    const QByteArray more = fileOf({"One", "Two", "Three"});
    putPages(fileOf({"Only"}));
    putBackup(more);
    for (int start = 0; start < 3; ++start) {
        EXPECT_EQ(start % 2 == 0 ? runAndClose() : runAndEnd(), 0);
        EXPECT_EQ(backup(), more);
    }
    EXPECT_EQ(pages(), fileOf({"Only"}));
}

TEST_F(KeeperTest, APageThatTheUserDeletedIsKeptForOneRun) {
    const QByteArray both = fileOf({"One", "Two"});
    putPages(both);
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            script.expect("Pages", [](QDialog& dialog) {
                test::press(dialog, "Delete");
                test::press(dialog, "Show");
            });
            choose(viewer, {"Menu", "Pages..."});
            EXPECT_EQ(viewer.application().pages().size(), 1U);
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    const QByteArray one = pages();
    EXPECT_LT(one.size(), both.size());
    EXPECT_EQ(backup(), both);
    EXPECT_EQ(runAndClose(), 0);
    EXPECT_EQ(backup(), one);
}

// Saves that fail.

class FailingSaveTest : public KeeperTest {
protected:
    FailingSaveTest() { putPages(old); }

    /// Puts files where the folders of pages and settings should be.
    void breakFolders() const {
        for (const char* folder : {"data/Quorvane", "config"}) {
            const QString path = home.path(folder);
            QDir().rename(path, path + ".aside");
            writeFile(path, "a file where the folder should be");
        }
    }
    void mendFolders() const {
        for (const char* folder : {"data/Quorvane", "config"}) {
            const QString path = home.path(folder);
            EXPECT_TRUE(QFile::remove(path));
            QDir().rename(path + ".aside", path);
        }
    }
    /// The user changes something and closes the window, and it cannot be saved.
    void closeBroken(Viewer& viewer) const {
        renameTo(viewer, "Mine");
        breakFolders();
        choose(viewer, {"Menu", "Exit"});
    }
    std::string pagesLost() const {
        return "The pages and marks cannot be saved in " + home.pageFile().toStdString() +
               ": Not a directory.";
    }
    std::string settingsLost() const {
        return "The settings cannot be saved in " + home.userRegistry().toStdString() +
               ": Not a directory.";
    }
    testing::Matcher<std::string> both() const {
        return AllOf(HasSubstr(pagesLost()), HasSubstr(settingsLost()));
    }

    const QByteArray old = fileOf({"One", "Two"});
};

TEST_F(FailingSaveTest, TheUserIsToldWhatIsLostAndMayTryAgain) {
    expectBox(AllOf(both(), HasSubstr("Discard loses what this run changed in them.")), "Retry");
    script.expect(kBox, [this](QDialog& box) {
        EXPECT_THAT(textOf(box), both());
        mendFolders();
        EXPECT_EQ(pages(), old);
        QTest::keyClick(&box, Qt::Key_Return); // tries again
    });
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            closeBroken(viewer);
            EXPECT_TRUE(viewer.window()->frame()->isVisible());
        }),
        0
    );
    EXPECT_EQ(pages(), fileOf({"Mine", "Two"}));
    EXPECT_EQ(backup(), old);
    EXPECT_TRUE(QFile::exists(home.userRegistry()));
}

TEST_F(FailingSaveTest, WhileTheProgramRunsItIsALineOnThePage) {
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            const auto lineShown = [&viewer] {
                for (const QLabel* label : viewer.window()->client()->findChildren<QLabel*>()) {
                    if (label->isVisible() && label->text().contains("cannot be saved")) {
                        return label->text().toStdString();
                    }
                }
                return std::string();
            };
            breakFolders();
            renameTo(viewer, "Mine");
            UserChange::announce();
            EXPECT_TRUE(QTest::qWaitFor([&] { return !lineShown().empty(); }));
            EXPECT_THAT(lineShown(), HasSubstr("The pages and marks cannot be saved: "));
            EXPECT_THAT(lineShown(), HasSubstr("The settings cannot be saved: "));
            EXPECT_THAT(lineShown(), HasSubstr("It is tried again every 10 seconds."));
            mendFolders();
            UserChange::announce();
            EXPECT_TRUE(QTest::qWaitFor([&] { return lineShown().empty(); }));
            EXPECT_EQ(pages(), fileOf({"Mine", "Two"}));
        }),
        0
    );
}

TEST_F(FailingSaveTest, WhatFailsNoMoreIsNotToldAgain) {
    expectBox(both(), "Retry");
    script.expect(kBox, [this](QDialog& box) {
        EXPECT_THAT(textOf(box), both());
        EXPECT_TRUE(QFile::remove(home.path("config")));
        test::press(box, "Retry");
    });
    script.expect(kBox, [this](QDialog& box) {
        EXPECT_THAT(textOf(box), AllOf(HasSubstr(pagesLost()), Not(HasSubstr("settings"))));
        test::press(box, "Discard");
    });
    EXPECT_EQ(run([this](Viewer& viewer) { closeBroken(viewer); }), 0);
    EXPECT_TRUE(QFile::exists(home.userRegistry()));
}

TEST_F(FailingSaveTest, AFullDiskIsToldToo) {
    std::optional<FullDisk> disk;
    script.expect(kBox, [&](QDialog& box) {
        EXPECT_THAT(textOf(box), HasSubstr("Its backup cannot be written: File too large."));
        disk.reset();
        test::press(box, "Retry");
    });
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            renameTo(viewer, "Mine");
            disk.emplace(0);
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    EXPECT_EQ(pages(), fileOf({"Mine", "Two"}));
    EXPECT_EQ(backup(), old);
}

TEST_F(FailingSaveTest, TheUserMayGiveUp) {
    testing::internal::CaptureStderr();
    expectBox(both(), "Discard");
    EXPECT_EQ(run([this](Viewer& viewer) { closeBroken(viewer); }), 0);
    EXPECT_EQ(said(), "");
    mendFolders();
    EXPECT_EQ(pages(), old);
    EXPECT_EQ(namesIn(home.programFolder()), "pages.cfg");
    EXPECT_FALSE(QFile::exists(home.userRegistry()));
}

TEST_F(FailingSaveTest, EscapeLosesNothing) {
    script.expect(kBox, [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    expectBox(both(), "Discard");
    EXPECT_EQ(run([this](Viewer& viewer) { closeBroken(viewer); }), 0);
}

TEST_F(FailingSaveTest, ASignalWhileTheUserIsAskedEndsItWithAWord) {
    Viewer* running = nullptr;
    script.expect(kBox, [&running](QDialog&) { running->requestEnd(); });
    testing::internal::CaptureStderr();
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            running = &viewer;
            closeBroken(viewer);
        }),
        0
    );
    EXPECT_THAT(said(), both());
}

TEST_F(FailingSaveTest, ASignalAsksNobody) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            renameTo(viewer, "Mine");
            breakFolders();
            viewer.requestEnd();
        }),
        0
    );
    const std::string lost = " What this run changed in them is lost.\n";
    EXPECT_EQ(said(), "raincast: " + pagesLost() + lost + "raincast: " + settingsLost() + lost);
    mendFolders();
    EXPECT_EQ(pages(), old);
}

TEST_F(FailingSaveTest, ALogOutAsksNobodyAndSaysItOnce) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            renameTo(viewer, "Mine");
            breakFolders();
            logOut();
            viewer.window()->frame()->close(); // as some desktops do
        }),
        0
    );
    const std::string lines = said();
    EXPECT_THAT(lines, both());
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2) << lines;
}

TEST_F(FailingSaveTest, ALogOutThatIsCalledOffIsForgotten) {
    testing::internal::CaptureStderr();
    expectBox(both(), "Discard");
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            breakFolders();
            logOut();
            keyInWindow(viewer, Qt::Key_PageDown);
            viewer.window()->frame()->close();
        }),
        0
    );
    EXPECT_NE(said(), "");
}

TEST_F(FailingSaveTest, ALogOutSaves) {
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            renameTo(viewer, "Mine");
            logOut();
            EXPECT_EQ(pages(), fileOf({"Mine", "Two"}));
            EXPECT_EQ(backup(), old);
            EXPECT_TRUE(QFile::exists(home.userRegistry()));
            QCoreApplication::quit(); // the session's end
        }),
        0
    );
    EXPECT_EQ(backup(), old);
}

TEST_F(FailingSaveTest, SettingsAloneAreToldOnceTheWindowIsGone) {
    writeFile(home.path("config"), "a file where the folder should be");
    script.expect(kBox, [this](QDialog& box) {
        EXPECT_EQ(textOf(box).find(settingsLost()), 0U) << textOf(box);
        EXPECT_THAT(textOf(box), Not(HasSubstr("pages and marks")));
        EXPECT_EQ(pages(), old);
        EXPECT_TRUE(QFile::remove(home.path("config")));
        test::press(box, "Retry");
    });
    EXPECT_EQ(runAndClose(), 0);
    EXPECT_TRUE(QFile::exists(home.userRegistry()));
}

TEST_F(FailingSaveTest, AFolderThatIsGoneIsMadeAgain) {
    EXPECT_EQ(
        run([this](Viewer& viewer) {
            QDir(home.programFolder()).removeRecursively();
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    EXPECT_EQ(pages(), old);
}

} // namespace
} // namespace raincast
