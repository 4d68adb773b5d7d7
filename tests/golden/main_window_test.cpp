// SPDX-License-Identifier: MIT
// What the main window, its menus and message boxes look like.
#include "../weather/dialog_controls.h"
#include "core/text.h"
#include "golden_test.h"
#include "map/item_map_view.h"
#include "page/page_pointer.h"
#include "player/loop_setting.h"
#include "reading/reading_setting.h"
#include "sample_viewer.h"
#include "stations/site_change_line.h"
#include "support/dialog_script.h"
#include "support/manual_timers.h"
#include "support/menu.h"
#include "support/pointer.h"
#include "warnings/warning_watch.h"
#include "window/commands.h"
#include "window/events.h"
#include "window/message_box.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QWindow>

#include <vector>

namespace raincast::test {
namespace {

class MainWindowLooks : public GoldenTest {
protected:
    /// The menu that opens when its title in the bar is clicked.
    QMenu* openMenu() {
        QMenuBar& bar = *viewer.frame().menuBar();
        click(bar, bar.actionGeometry(bar.actions().constFirst()).center());
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    static QAction* entry(const QMenu& menu, const QString& text) {
        for (QAction* action : menu.actions()) {
            if (action->text().remove(u'&') == text) {
                return action;
            }
        }
        ADD_FAILURE() << "no entry " << qPrintable(text);
        return nullptr;
    }
    /// Looks at the menu at the end of a way: {"&Weather", "&Product"}.
    void lookAtSubmenu(const std::vector<const char*>& way, const QString& name) {
        QMenu* menu = openMenu();
        for (const char* text : way) {
            ASSERT_NE(menu, nullptr);
            menu->setActiveAction(entry(*menu, said(text)));
            QTest::keyClick(menu, Qt::Key_Right);
            ASSERT_NE(QApplication::activePopupWidget(), menu);
            menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        }
        ASSERT_NE(menu, nullptr);
        look(name, *menu);
        while (QWidget* const open = QApplication::activePopupWidget()) {
            open->close();
        }
    }
    /// Has several frames loaded, and stops at the one before the newest.
    void loadLoop() {
        DialogScript script;
        script.expect(said("Animation"), [](QDialog& dialog) {
            check(dialog, said("&Enable Animation"), true);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        viewer.command(kAnimation);
        viewer.finish();
        viewer.command(kPlayLoop);
        viewer.command(kStepBack);
    }

    SampleViewer viewer;
};

TEST_F(MainWindowLooks, WithAWeatherPage) {
    look("main_window", viewer.frame());
}

TEST_F(MainWindowLooks, InLayoutMode) {
    viewer.command(kToggleLayout);
    QWidget& page = *viewer.page().widget();
    click(page, QPoint(40, 110) / page.devicePixelRatioF());
    look("layout_mode", viewer.frame());
}

TEST_F(MainWindowLooks, WithoutAnyPage) {
    viewer.application().clear();
    viewer.beat();
    look("no_pages", viewer.frame());
}

TEST_F(MainWindowLooks, WithNoneOfItsPagesShown) {
    viewer.application().select(std::nullopt);
    viewer.beat();
    look("no_page_shown", viewer.frame());
}

TEST_F(MainWindowLooks, WithItsMenuOpen) {
    QMenu* const menu = openMenu();
    ASSERT_NE(menu, nullptr);
    look("menu", *menu);
    menu->close();
}

TEST_F(MainWindowLooks, WithASubmenuOpen) {
    lookAtSubmenu({"&Settings"}, "menu_settings");
    lookAtSubmenu({"&Layout"}, "menu_layout");
    lookAtSubmenu({"&Weather"}, "menu_weather");
    lookAtSubmenu({"&Reading"}, "menu_reading");
    lookAtSubmenu({"&Map"}, "menu_map");
    lookAtSubmenu({"&Weather", "&Product"}, "menu_product");
    lookAtSubmenu({"&Weather", "L&oop"}, "menu_loop");
    lookAtSubmenu({"&Weather", "Pi&ctures"}, "menu_pictures");
}

TEST_F(MainWindowLooks, WithTheBarOfALoop) {
    LoopSetting::setBar(LoopSetting::Bar::always);
    loadLoop();
    look("loop_bar", viewer.frame());
    LoopSetting::setBar(LoopSetting::Bar::whereRoomIs);
}

TEST_F(MainWindowLooks, WithAWarning) {
    ManualTimers timers;
    WarningWatch watch(viewer.application().marks(), timers, [] {});
    viewer.application().select(0);
    WarningText warning;
    warning.event = QStringLiteral("Severe Thunderstorm Warning");
    warning.end = fromCalendar({2019, 5, 19, 6, 45});
    warning.polygons = {{{{36, -124}, {36, -120}, {39, -120}, {39, -124}}}};
    const auto texts = std::make_shared<WarningTexts>(WarningTexts{false, {warning}});
    watch.take({QStringLiteral("live"), QStringLiteral("MUX"), QStringLiteral("Short"), texts, 1});
    CDataGPSPosition position;
    position.latitude = 37.5;
    position.longitude = -122.5;
    position.fixType = kFixGps;
    Listener<CDataGPSPosition>::Notify(position);
    viewer.finish();
    settle();
    look("warning_bar", viewer.frame());
}

// --- Reading the radar --------------------------------------------------------------------------

class ReadingLooks : public MainWindowLooks {
protected:
    ~ReadingLooks() override { ReadingSetting::restore(m_setting); }

    [[nodiscard]] QWidget& window() { return *viewer.page().widget(); }
    /// Off the middle by so many hundredths of the page.
    [[nodiscard]] QPoint place(int right, int down) {
        const QRect page = window().rect();
        return page.center() + QPoint(page.width() * right, page.height() * down) / 100;
    }
    QMenu* openMenuOf(const QPoint& at) {
        QWindow* const frame = viewer.frame().windowHandle();
        const QPoint inFrame = window().mapTo(&viewer.frame(), at);
        QTest::mousePress(frame, Qt::RightButton, {}, inFrame);
        QTest::mouseRelease(frame, Qt::RightButton, {}, inFrame);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    void choose(const QPoint& at, const QString& text) {
        QMenu* const menu = openMenuOf(at);
        ASSERT_NE(menu, nullptr);
        chooseInOpenMenu(*menu, text);
    }
    void rest(const QPoint& at) {
        moveTo(window(), at);
        viewer.page().stopTimer(CPageDisplay::Pointer::kRestTimer);
        TimerEvent due(CPageDisplay::Pointer::kRestTimer);
        QCoreApplication::sendEvent(&window(), &due);
    }

    /// Where a pixel of the radar's picture is in the window.
    [[nodiscard]] QPoint pixel(int column, int row) {
        for (const auto& item : viewer.page().items()) {
            if (const auto* const map = dynamic_cast<const CItemMapView*>(item.get())) {
                const PagePoint place = map->view().toPage({column, row});
                return QPoint(place.x, place.y) / window().devicePixelRatioF();
            }
        }
        ADD_FAILURE() << "no map";
        return {};
    }

    const ReadingSetting::Kept m_setting = ReadingSetting::keep();
};

TEST_F(ReadingLooks, WithAReadoutAndRings) {
    viewer.command(kRingsRoundRadar);
    ReadingSetting::showScale(true);
    rest(place(-5, -5));
    look("readout", viewer.frame());
}

TEST_F(ReadingLooks, WithTheMenuOfAPlace) {
    QMenu* const menu = openMenuOf(place(0, 0));
    ASSERT_NE(menu, nullptr);
    look("menu_place", *menu);
    menu->close();
}

TEST_F(ReadingLooks, WithAWayThatIsMeasured) {
    choose(place(-20, 10), said("&Measure From Here"));
    click(window(), place(15, -10));
    look("measuring", viewer.frame());
}

// The shower of the sample server's frames.
TEST_F(ReadingLooks, WithAStormThatIsTracked) {
    loadLoop();
    viewer.command(kTrackStorm);
    click(window(), pixel(200, 200));
    click(window(), pixel(280, 200));
    for (int i = 0; i < 3; ++i) { // the bar follows a painting
        settle();
    }
    look("tracking", viewer.frame());
}

TEST_F(MainWindowLooks, WithTheLineOfAnotherSite) {
    SiteChangeLine line;
    line.show(&viewer.application(), QStringLiteral("SOX"), QStringLiteral("MUX"), [] {});
    look("site_change", viewer.frame());
}

struct BoxRow {
    const char* name;
    QString text;
    QString caption;
    MessageIcon icon;
};

const QString kPagesFile =
    QStringLiteral("/home/skipper/.local/share/Quorvane/Raincast_1/pages.cfg");

TEST_F(MainWindowLooks, WithAMessageBox) {
    const BoxRow rows[] = {
        {"message_reinstall", Text::tr("Failed to load Res.dll\nPlease re-install the software"),
         Text::tr("Error"), MessageIcon::none},
        {"message_folder",
         Text::tr("Failed to create folder: %1")
             .arg("/media/someone/A card of a rather long name/Quorvane/Temp"),
         Text::tr("Error"), MessageIcon::none},
        {"message_unreadable",
         Text::tr("The pages in %1 cannot be read: %2. They are left as they are; nothing of this "
                  "run will be saved.")
             .arg(kPagesFile, "Input/output error"),
         "Raincast", MessageIcon::exclamation},
        {"message_fatal", Text::tr("Window not found in Window::wndProc\n"),
         Text::tr("Fatal Error"), MessageIcon::stop},
    };
    for (const BoxRow& row : rows) {
        DialogScript script;
        script.expect(row.caption, [&row](QDialog& box) { look(row.name, box); });
        messageBox(&viewer.frame(), row.text, row.caption, row.icon);
    }
}

struct QuestionRow {
    const char* name;
    QString text;
    Question question;
};

// As app/keeper.h asks them, of files whose names nobody chose for a small screen.
TEST_F(MainWindowLooks, WithAQuestionAboutWhatIsKept) {
    const QString full = QStringLiteral("No space left on device");
    const QStringList unsaved{
        Text::tr("The pages and marks cannot be saved in %1: %2.")
            .arg(kPagesFile, Text::tr("Its backup cannot be written: %1").arg(full)),
        Text::tr("The settings cannot be saved in %1: %2.")
            .arg("/home/skipper/.config/Quorvane/registry.json", full),
        Text::tr("Discard loses what this run changed in them.")};
    const QuestionRow rows[] = {
        {"message_backup",
         Text::tr("Some pages could not be read. Use the backup of %1 (%2)?")
             .arg("2019-05-19 06:00", Text::counted("%n pages", "%n page", 12)),
         Question::yesNo},
        {"message_unsaved", unsaved.join(QStringLiteral("\n\n")), Question::retryDiscard},
    };
    for (const QuestionRow& row : rows) {
        DialogScript script;
        script.expect("Raincast", [&row](QDialog& box) { look(row.name, box); });
        static_cast<void>(askQuestion(&viewer.frame(), row.text, "Raincast", row.question));
    }
}

TEST_F(MainWindowLooks, WithTheComplaintOfADialog) {
    DialogScript script;
    script.expect(said("Animation"), [](QDialog& dialog) {
        check(dialog, said("&Enable Animation"), true);
        type(dialog, 0, "0");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    script.expect("Raincast", [](QDialog& box) { look("message_animation", box); });
    viewer.command(kAnimation);
}

} // namespace
} // namespace raincast::test
