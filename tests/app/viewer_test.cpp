// SPDX-License-Identifier: MIT
#include "app/globals.h"
#include "app/main_window.h"
#include "app/single_instance.h"
#include "app/viewer.h"
#include "app/window_place.h"
#include "cancel_dialogs.h"
#include "core/busy_guard.h"
#include "map/mark_manager.h"
#include "page/item.h"
#include "page/page.h"
#include "page/page_display.h"
#include "persist/page_file.h"
#include "persist/registry_store.h"
#include "persist/serial_reader.h"
#include "position/source/position_source_setting.h"
#include "support/dialog_script.h"
#include "support/files.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"
#include "weather/servers_setting.h"
#include "window/commands.h"
#include "window/message_box.h"
#include "window/modal.h"
#include "window/screen_metrics.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QSessionManager>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;

const QString kKey = QStringLiteral("Software/Quorvane/Raincast_1/CGlobals");
constexpr std::uint32_t kTestPageType = 9001;
constexpr std::uint32_t kTroubledItemType = 9002;

/// A page that does what a test wants when it is shown.
class TestPage : public CAppPaged::Page {
public:
    static inline std::function<void(QWidget&)> shown;
    static inline std::function<void()> gone;
    static inline int written = 0;

    ~TestPage() override {
        if (gone) {
            gone();
        }
    }
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTestPageType; }
    [[nodiscard]] bool Write(CSerialWriter& writer) const override {
        ++written;
        return Page::Write(writer);
    }
    bool activate(QWidget& parent, bool /*flag*/) override {
        if (shown) {
            shown(parent);
        }
        return true;
    }
    void deactivate() override {}
};

const SerializableType<TestPage> testPageType{kTestPageType};

/// An item that could not do what it was meant to.
class TroubledItem : public CPageDisplay::CItem {
public:
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTroubledItemType; }
    void draw(QPainter& /*painter*/) override {}
    [[nodiscard]] QString statusText() const override {
        return QStringLiteral("Could not access server.\n");
    }
};

const SerializableType<TroubledItem> troubledItemType{kTroubledItemType};

/// Stands in for a window manager, which gives a window its place when it appears.
class Placing : public QObject {
public:
    explicit Placing(const QPoint& place) : m_place(place) { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose && !std::exchange(m_placed, true)) {
            static_cast<QWindow*>(watched)->setFramePosition(m_place);
        }
        return false;
    }

private:
    QPoint m_place;
    bool m_placed = false;
};

/// Only what a page file holds.
class Pages : public CAppPaged {};

class ViewerTest : public test::GuiTest {
protected:
    test::TemporaryHome home;
    std::optional<test::CancelDialogs> nobody{std::in_place};

    // Most of these runs are not first ones, which ask for a radar site before their loop.
    ViewerTest() {
        forget();
        writePages(home.pageFile(), {"Weather"});
    }
    ~ViewerTest() override {
        forget();
        ScreenMetrics::use(std::nullopt);
    }

    static void forget() {
        WindowPlace::settings.geometry.clear();
        TestPage::shown = nullptr;
        TestPage::gone = nullptr;
        TestPage::written = 0;
        Modal::forgetEnd();
        Modal::neverAsk(false);
    }

    void forgetPages() { QDir(home.programFolder()).removeRecursively(); }

    /// A page file with pages of these names.
    static void writePages(const QString& path, const QStringList& names) {
        Pages pages;
        for (const QString& name : names) {
            pages.append(std::make_unique<TestPage>()).setName(name);
        }
        QDir().mkpath(QFileInfo(path).path());
        QFile::remove(path); // or it would be kept
        EXPECT_TRUE(PageFile(path, examinePages<Pages>).save(pages));
        TestPage::written = 0;
    }
    static QStringList namesOf(const CAppPaged& application) {
        QStringList names;
        for (const auto& page : application.pages()) {
            names.append(page->name());
        }
        return names;
    }
    static QStringList namesInFile(const QString& path) {
        Pages pages;
        PageFile file(path, examinePages<Pages>);
        file.look(pages);
        return namesOf(pages);
    }
    /// Does something in the viewer's event loop.
    static void inLoop(std::function<void()> step) { QTimer::singleShot(0, qApp, std::move(step)); }
    std::optional<QString> savedConfigFile() const {
        return RegistryStore::inStandardFolders().string(
            RegistryStore::Branch::user, kKey, QStringLiteral("config_file")
        );
    }
};

TEST_F(ViewerTest, AFirstStartMakesItsFolderShowsTheWeatherAndSavesBoth) {
    forgetPages();
    Viewer viewer({});
    inLoop([&] {
        EXPECT_TRUE(QDir(home.programFolder()).exists());
        EXPECT_FALSE(QFile::exists(home.pageFile()));
        EXPECT_EQ(viewer.settings().configFile, home.pageFile());
        EXPECT_EQ(namesOf(viewer.application()), QStringList("Weather"));
        ASSERT_NE(viewer.application().current(), nullptr);
        EXPECT_TRUE(viewer.window()->frame()->isVisible());
        viewer.window()->commands().action(kExit).trigger();
    });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_EQ(savedConfigFile(), home.pageFile());
    EXPECT_EQ(namesInFile(home.pageFile()), QStringList("Weather"));
}

TEST_F(ViewerTest, AFirstStartAsksForASiteInTheMiddleOfItsWindow) {
    forgetPages();
    nobody.reset();
    // A former run that ended before its loop did would end the first loop of this one.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    const Placing windowManager({120, 90});
    Viewer viewer({});
    test::DialogScript script;
    script.expect(QStringLiteral("Weather Station"), [&](QDialog& dialog) {
        const QMainWindow& frame = *viewer.window()->frame();
        EXPECT_EQ(frame.pos(), QPoint(120, 90));
        EXPECT_TRUE(frame.geometry().contains(dialog.geometry()));
        const QPoint apart = dialog.geometry().center() - frame.geometry().center();
        EXPECT_LE(apart.manhattanLength(), 8) << apart.x() << "," << apart.y();
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerTest, PagesAreSavedThenDestroyedThenTheSettingsAreSaved) {
    writePages(home.pageFile(), {"One", "Two"});
    std::vector<std::string> log;
    Viewer viewer({});
    inLoop([&] {
        TestPage::gone = [&] {
            log.push_back(
                "gone, written " + std::to_string(TestPage::written) + ", settings " +
                (QFile::exists(home.userRegistry()) ? "saved" : "not yet")
            );
        };
        viewer.window()->commands().action(kExit).trigger();
    });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_THAT(
        log, ElementsAre("gone, written 2, settings not yet", "gone, written 2, settings not yet")
    );
    EXPECT_TRUE(QFile::exists(home.userRegistry()));
    EXPECT_TRUE(viewer.application().pages().empty());
}

TEST_F(ViewerTest, AConfigFileInAMissingFolderIsNeitherReadNorWritten) {
    forgetPages();
    const QString path = home.path("missing/pages.cfg");
    {
        auto store = RegistryStore::inStandardFolders();
        store.setString(RegistryStore::Branch::user, kKey, "config_file", path);
        ASSERT_TRUE(store.save(RegistryStore::Branch::user));
    }
    Viewer viewer({});
    inLoop([&] {
        EXPECT_EQ(namesOf(viewer.application()), QStringList("Weather"));
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_FALSE(QDir(home.path("missing")).exists());
    EXPECT_FALSE(QDir(home.programFolder()).exists());
    EXPECT_EQ(savedConfigFile(), path);
}

TEST_F(ViewerTest, AnEmptyPageFileCountsAsNoPages) {
    writePages(home.pageFile(), {});
    Viewer viewer({});
    inLoop([&] {
        EXPECT_EQ(namesOf(viewer.application()), QStringList("Weather"));
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerTest, WhatIsReadableOfADamagedPageFileIsShown) {
    writePages(home.pageFile(), {"One", "Two"});
    const QByteArray whole = readFile(home.pageFile());
    writeFile(home.pageFile(), whole.left(whole.size() - 3));
    Viewer viewer({});
    inLoop([&] {
        EXPECT_EQ(namesOf(viewer.application()).value(0), "One");
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_EQ(readFile(home.pageFile() + ".bak"), whole.left(whole.size() - 3));
}

TEST_F(ViewerTest, MarksAreKeptFromRunToRun) {
    for (std::size_t run = 0; run < 3; ++run) {
        Viewer viewer({});
        inLoop([&] {
            CMarkManager& marks = viewer.application().marks();
            EXPECT_EQ(namesOf(viewer.application()), QStringList("Weather"));
            EXPECT_EQ(marks.marks().size(), run);
            marks.add({54.5, 11.25}, QStringLiteral("Harbour"));
            viewer.requestEnd();
        });
        EXPECT_EQ(viewer.run(), 0);
        Modal::forgetEnd();
    }
    EXPECT_EQ(namesInFile(home.pageFile()), QStringList("Weather"));
}

TEST_F(ViewerTest, TheFirstSubmenuHoldsThePages) {
    writePages(home.pageFile(), {"One", "Two"});
    Viewer viewer({});
    inLoop([&] {
        QMenu& menu = *viewer.window()->pageMenu();
        MenuPopupEvent popup(menu);
        QCoreApplication::sendEvent(viewer.window()->frame(), &popup);
        QStringList texts;
        for (const QAction* entry : menu.actions()) {
            texts.append(entry->text());
        }
        EXPECT_TRUE(texts.contains("One")) << texts.join('|').toStdString();
        EXPECT_TRUE(texts.contains("Two")) << texts.join('|').toStdString();
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerTest, ClosingTheWindowSavesAsExitDoes) {
    Viewer viewer({});
    inLoop([&] { viewer.window()->frame()->close(); });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_EQ(namesInFile(home.pageFile()), QStringList("Weather"));
    EXPECT_TRUE(savedConfigFile());
}

TEST_F(ViewerTest, ALogOutSavesAndTheProgramGoesOnUntilItIsEnded) {
    Viewer viewer({});
    inLoop([&] {
        ASSERT_TRUE(QFile::remove(home.pageFile()));
        auto* const session = qApp->findChild<QSessionManager*>();
        ASSERT_NE(session, nullptr);
        qApp->commitDataRequest(*session); // as the desktop asks
        EXPECT_EQ(namesInFile(home.pageFile()), QStringList("Weather"));
        EXPECT_TRUE(savedConfigFile());
        EXPECT_EQ(namesOf(viewer.application()), QStringList("Weather"));
        EXPECT_TRUE(viewer.window()->frame()->isVisible());
        QCoreApplication::quit(); // the session's end
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerTest, ARequestInADialogCancelsItAndTheOnesBeneath) {
    std::vector<std::string> log;
    Viewer viewer({});
    test::DialogScript script;
    script.expect(QStringLiteral("Outer"), [&](QDialog& dialog) {
        messageBox(&dialog, QStringLiteral("text"), QStringLiteral("Inner"));
        log.emplace_back("inner ended");
    });
    script.expect(QStringLiteral("Inner"), [&](QDialog&) { viewer.requestEnd(); });
    inLoop([&] {
        messageBox(viewer.window()->frame(), QStringLiteral("text"), QStringLiteral("Outer"));
        log.emplace_back("outer ended");
        EXPECT_NE(viewer.window()->frame(), nullptr);
        EXPECT_TRUE(QFile::remove(home.pageFile())); // it is not written before the dialogs end
        messageBox(viewer.window()->frame(), QStringLiteral("text"), QStringLiteral("Too late"));
    });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_THAT(log, ElementsAre("inner ended", "outer ended"));
    EXPECT_TRUE(QFile::exists(home.pageFile()));
}

TEST_F(ViewerTest, ARequestInADialogBeforeTheLoopKeepsItFromStarting) {
    writePages(home.pageFile(), {"One"});
    Viewer viewer({});
    test::DialogScript script;
    script.expect(QStringLiteral("Station"), [&](QDialog&) { viewer.requestEnd(); });
    bool looped = false;
    QObject context;
    TestPage::shown = [&](QWidget& parent) {
        EXPECT_TRUE(parent.isVisible());
        messageBox(&parent, QStringLiteral("text"), QStringLiteral("Station"));
        QTimer::singleShot(0, &context, [&looped] { looped = true; });
    };
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_EQ(TestPage::written, 1);
    EXPECT_TRUE(savedConfigFile());
    EXPECT_FALSE(looped);
}

TEST_F(ViewerTest, ARequestDuringATransferWaitsForIt) {
    std::vector<std::string> log;
    Viewer viewer({});
    inLoop([&] {
        {
            const BusyGuard busy;
            viewer.window()->frame()->close();
            log.emplace_back("transfer goes on");
        }
        EXPECT_NE(viewer.window()->frame(), nullptr);
        log.emplace_back("transfer returned");
    });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_THAT(log, ElementsAre("transfer goes on", "transfer returned"));
}

TEST_F(ViewerTest, AnOpenMenuIsNoObstacle) {
    Viewer viewer({});
    inLoop([&] {
        viewer.window()->pageMenu()->popup(QPoint(0, 0));
        viewer.requestEnd();
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerTest, ASecondStartBringsTheFirstToTheFrontAndWritesNothing) {
    forgetPages();
    bool asked = false;
    SingleInstance first(home.pageFile());
    first.onFront([&asked](const QByteArray&) { asked = true; });
    ASSERT_TRUE(first.claim());
    Viewer viewer({});
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_EQ(viewer.window(), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&asked] { return asked; }));
    EXPECT_FALSE(QFile::exists(home.userRegistry()));
    EXPECT_FALSE(QDir(home.programFolder()).exists());
}

TEST_F(ViewerTest, AnotherStartBringsThisOneToTheFront) {
    Viewer viewer({});
    inLoop([&] {
        viewer.window()->frame()->setWindowState(Qt::WindowMinimized);
        SingleInstance second(home.pageFile());
        EXPECT_FALSE(second.claim());
        EXPECT_TRUE(QTest::qWaitFor([&] { return !viewer.window()->frame()->isMinimized(); }));
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerTest, TheWindowOpensWhereItWasLeft) {
    {
        Viewer viewer({});
        inLoop([&] {
            EXPECT_EQ(
                viewer.window()->frame()->size(),
                QSize(640, 640).boundedTo(ScreenMetrics::current().available)
            );
            viewer.window()->frame()->setGeometry(20, 30, 300, 400);
            viewer.requestEnd();
        });
        EXPECT_EQ(viewer.run(), 0);
    }
    forget();
    Viewer viewer({});
    inLoop([&] {
        EXPECT_EQ(viewer.window()->frame()->geometry(), QRect(20, 30, 300, 400));
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerTest, WhatOptionsSetHoldsForOneRun) {
    AppOptions options;
    options.geometry = QSize(310, 210);
    options.pageFile = home.path("other.cfg");
    options.nmea = QStringLiteral("file:") + home.path("missing.nmea");
    options.radarServer = QStringLiteral("radar.example");
    writePages(options.pageFile, {"Other"});
    {
        Viewer viewer(options);
        inLoop([&] {
            EXPECT_EQ(viewer.window()->frame()->size(), options.geometry);
            EXPECT_EQ(PositionSourceSetting::text(), options.nmea);
            EXPECT_EQ(ServersSetting::current().radar, options.radarServer);
            viewer.requestEnd();
        });
        EXPECT_EQ(viewer.run(), 0);
    }
    Modal::forgetEnd();
    Viewer viewer({});
    inLoop([&] {
        EXPECT_NE(viewer.window()->frame()->size(), options.geometry);
        EXPECT_EQ(PositionSourceSetting::text(), QString());
        EXPECT_EQ(ServersSetting::hosts().radar, ServersSetting::defaultHost());
        EXPECT_EQ(ServersSetting::source(), ServersSetting::defaultSource());
        EXPECT_EQ(viewer.settings().configFile, home.pageFile());
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
    const RegistryStore store = RegistryStore::inStandardFolders();
    const QString root = kKey.section(u'/', 0, -2);
    const auto saved = [&](const char* record, const char* value) {
        return store.string(
            RegistryStore::Branch::user, root + u'/' + QString::fromLatin1(record),
            QString::fromLatin1(value)
        );
    };
    EXPECT_TRUE(saved("CWindowPlace", "geometry"));
    EXPECT_EQ(saved("CServers", "radar_server"), ServersSetting::defaultHost());
    EXPECT_NE(saved("CServers", "source"), "another");
    EXPECT_EQ(saved("CGlobals", "config_file"), home.pageFile());
}

TEST_F(ViewerTest, APictureIsMadeWithoutAskingOrSavingAnything) {
    writePages(home.pageFile(), {"One"});
    const QByteArray before = readFile(home.pageFile());
    TestPage::shown = [](QWidget& parent) {
        messageBox(&parent, QStringLiteral("text"), QStringLiteral("Nobody is asked"));
    };
    AppOptions options;
    options.screenshot = home.path("picture.png");
    options.geometry = QSize(300, 200);
    Viewer viewer(options);
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_EQ(QImage(options.screenshot).size(), QSize(300, 200));
    EXPECT_EQ(TestPage::written, 0);
    EXPECT_EQ(readFile(home.pageFile()), before);
    EXPECT_EQ(namesIn(home.programFolder()), "pages.cfg");
    EXPECT_EQ(namesIn(home.root()), "data picture.png run");
}

TEST_F(ViewerTest, WhatAnItemFailedAtFailsThePicture) {
    {
        auto page = std::make_unique<CPageDisplay>();
        page->addItem(std::make_unique<TroubledItem>());
        Pages pages;
        pages.append(std::move(page));
        QDir().mkpath(home.programFolder());
        ASSERT_TRUE(PageFile(home.pageFile(), examinePages<Pages>).save(pages));
    }
    AppOptions options;
    options.screenshot = home.path("picture.png");
    Viewer viewer(options);
    EXPECT_EQ(viewer.run(), 1);
    EXPECT_FALSE(QImage(options.screenshot).isNull());
}

TEST_F(ViewerTest, AnEndBeforeThePictureIsAFailure) {
    AppOptions options;
    options.screenshot = home.path("picture.png");
    Viewer viewer(options);
    inLoop([&] { viewer.requestEnd(); });
    EXPECT_EQ(viewer.run(), 1);
    EXPECT_FALSE(QFile::exists(options.screenshot));
}

// In a process of its own, which a display that goes away ends with exit().
TEST(ViewerDeathTest, AnExitFromBelowSavesThePages) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto dying = [] {
        test::qtApp();
        static const test::TemporaryHome home;
        std::atexit([] { std::_Exit(QFile::exists(home.pageFile()) ? 42 : 43); });
        // With pages of its own: a first start would ask for a radar site before its loop.
        Pages pages;
        pages.append(std::make_unique<TestPage>());
        QDir().mkpath(home.programFolder());
        EXPECT_TRUE(PageFile(home.pageFile(), examinePages<Pages>).save(pages));
        Viewer viewer({});
        QTimer::singleShot(0, qApp, [] {
            QFile::remove(home.pageFile());
            std::exit(1);
        });
        static_cast<void>(viewer.run());
    };
    EXPECT_EXIT(dying(), testing::ExitedWithCode(42), "");
}

TEST(HighResolutionTest, ItBeginsAbove120DotsPerInch) {
    ScreenMetrics metrics;
    metrics.logPixelsY = 120;
    EXPECT_FALSE(metrics.highResolution());
    metrics.logPixelsY = 121;
    EXPECT_TRUE(metrics.highResolution());
}

} // namespace
} // namespace raincast
