// SPDX-License-Identifier: MIT
// Every entry of every menu, tool button and key of the main window, on every kind of page, chosen
// with the mouse and with keys; each dialog that opens is cancelled and accepted.
#include "app/viewer_harness.h"
#include "map/mark_manager.h"
#include "page/image.h"
#include "persist/page_file.h"
#include "persist/serial_writer.h"
#include "support/any_dialog.h"
#include "support/dialog_script.h"
#include "support/files.h"
#include "support/pointer.h"
#include "weather/dialog_controls.h"
#include "window/bottom_rows.h"
#include "window/commands.h"
#include "window/modal.h"

#include <QBuffer>
#include <QToolBar>

#include <algorithm>
#include <memory>
#include <ostream>
#include <tuple>

namespace raincast {
namespace {

using test::AnyDialog;
using test::DialogScript;
using test::Hand;

/// Only what a page file holds.
class Pages : public CAppPaged {
public:
    CPageDisplay& add(const QString& name, bool enabled = true) {
        auto page = std::make_unique<CPageDisplay>();
        page->setName(name);
        page->setEnabled(enabled);
        return static_cast<CPageDisplay&>(append(std::move(page)));
    }
};

void addTexture(CPageDisplay& page) {
    page.addItem(std::make_unique<CPageDisplay::CImage>()).setRectangle({0, 0, 300, 300});
}

/// What is shown when an entry is chosen: how the page file is written, whether a site of radar is
/// there from the start, and what is done first.
struct Kind {
    const char* name;
    void (*write)(Pages& pages); ///< null: there is no page file
    bool hasSite;
    void (*prepare)(Viewer& viewer);
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

QMenuBar& barOf(Viewer& viewer) {
    return *viewer.window()->frame()->menuBar();
}

void deleteFirstPage(Viewer& viewer) {
    DialogScript script;
    script.expect("Pages", [](QDialog& dialog) { test::press(dialog, "Delete"); });
    if (viewer.application().pages().size() == 1) {
        script.expect("Select Page Type");
    }
    test::chooseInMenu(barOf(viewer), {"Menu", "Pages..."});
    ASSERT_EQ(viewer.application().current(), nullptr);
}

constexpr Kind kKinds[] = {
    {"TheWeather", nullptr, true, nullptr},
    {"TheWeatherWithoutASite", nullptr, false, nullptr},
    {"ABlankPage",
     [](Pages& pages) {
         pages.add("Blank");
         pages.add("Other");
     },
     false, nullptr},
    {"AnImage",
     [](Pages& pages) {
         addTexture(pages.add("Image"));
         pages.add("Other");
     },
     false, nullptr},
    {"AMapAmongOthers",
     [](Pages& pages) {
         addTexture(pages.add("Image"));
         pages.swapWithNext(0);
         pages.add("Other");
     },
     true,
     [](Viewer& viewer) {
         test::chooseInMenu(barOf(viewer), {"Menu", "Next page"});
     }},
    {"NoPage", [](Pages& pages) { pages.add("Blank"); }, false, deleteFirstPage},
    {"NoPageThatIsEnabled",
     [](Pages& pages) {
         pages.add("Blank");
         pages.add("Other", false);
     },
     false, deleteFirstPage},
};

/// All that choosing an entry may change.
struct State {
    QByteArray pages;
    const void* current = nullptr;
    bool layoutMode = false;
    bool itemSelected = false;
    bool fullScreen = false;

    bool operator==(const State&) const = default;
};

State stateOf(Viewer& viewer) {
    State state;
    QBuffer buffer(&state.pages);
    buffer.open(QIODevice::WriteOnly);
    CSerialWriter writer(buffer);
    EXPECT_TRUE(viewer.application().Write(writer) && writer.finish());
    state.current = viewer.application().current();
    if (const auto* page = dynamic_cast<const CPageDisplay*>(viewer.application().current())) {
        state.layoutMode = page->layoutMode();
        state.itemSelected = page->selected() != nullptr;
    }
    state.fullScreen = viewer.window()->frame()->isFullScreen();
    return state;
}

/// Something to choose, and the text that it has.
struct Choice {
    std::string name;
    QString text;
    bool asks = false; ///< opens a dialog
    std::function<void()> choose;
};

class MenuSweepTest : public test::ViewerHarness,
                      public testing::WithParamInterface<std::tuple<Kind, bool, Hand>> {
protected:
    [[nodiscard]] static const Kind& kind() { return std::get<0>(GetParam()); }
    [[nodiscard]] static bool inLayoutMode() { return std::get<1>(GetParam()); }
    [[nodiscard]] static Hand hand() { return std::get<2>(GetParam()); }

    /// As a new user finds it, with this kind's page file.
    void begin() {
        QFile::remove(home.userRegistry());
        QDir(home.programFolder()).removeRecursively();
        options.siteId = kind().hasSite && kind().write == nullptr ? "MUX" : "";
        if (kind().write == nullptr) {
            return;
        }
        Pages pages;
        if (kind().hasSite) {
            writeFile(home.pageFile(), weatherPage());
            PageFile file(home.pageFile(), examinePages<Pages>);
            ASSERT_EQ(file.look(pages), PageFile::State::whole);
            QFile::remove(home.pageFile());
        }
        kind().write(pages);
        ASSERT_TRUE(QDir().mkpath(home.programFolder()));
        ASSERT_TRUE(PageFile(home.pageFile(), examinePages<Pages>).save(pages));
    }
    /// The page file of a run that shows the radar of MUX.
    const QByteArray& weatherPage() {
        if (m_weatherPage.isEmpty()) {
            options.siteId = "MUX";
            run([](Viewer& viewer) { EXPECT_FALSE(itemOf(viewer).state().frames.empty()); });
            options.siteId.clear();
            m_weatherPage = readFile(home.pageFile());
        }
        return m_weatherPage;
    }

    static void prepare(Viewer& viewer) {
        viewer.application().marks().add({37.155, -121.898}, "Harbour");
        if (kind().prepare != nullptr) {
            kind().prepare(viewer);
        }
        if (inLayoutMode()) {
            test::chooseInMenu(barOf(viewer), {"Menu", "Layout", "Layout mode"});
        }
        // What is pressed is selected; looking for the menu of a place presses it as well.
        test::click(*viewer.window()->client(), centre(viewer));
    }
    static QPoint centre(Viewer& viewer) { return viewer.window()->client()->rect().center(); }

    static std::vector<Choice> choicesOf(Viewer& viewer) {
        std::vector<Choice> choices;
        addEntries(viewer, choices);
        hand() == Hand::mouse ? addTools(viewer, choices) : addShortcuts(viewer, choices);
        addMenuOfPlace(viewer, Qt::RightButton, choices);
        addMenuOfPlace(viewer, Qt::LeftButton, choices);
        return choices;
    }
    static void addEntries(Viewer& viewer, std::vector<Choice>& choices) {
        for (const QStringList& way : test::waysIn(barOf(viewer))) {
            const bool asks =
                way.last().endsWith("...") || (way.size() == 3 && way[1] == "Weather");
            choices.push_back({way.join(" > ").toStdString(), way.last(), asks, [&viewer, way] {
                                   test::chooseInMenu(barOf(viewer), way, hand());
                               }});
        }
    }
    static void addTools(Viewer& viewer, std::vector<Choice>& choices) {
        auto& tools = dynamic_cast<QToolBar&>(*barOf(viewer).cornerWidget());
        for (QAction* tool : tools.actions()) {
            if (!tool->isSeparator()) {
                choices.push_back(
                    {"button " + tool->text().toStdString(), tool->text(), false,
                     [&tools, tool] {
                         QWidget* const button = tools.widgetForAction(tool);
                         test::click(*button, button->rect().center());
                     }}
                );
            }
        }
    }
    static void addShortcuts(Viewer& viewer, std::vector<Choice>& choices) {
        QMainWindow& frame = *viewer.window()->frame();
        for (QAction* action : frame.actions()) {
            if (!action->isEnabled()) {
                continue; // nothing is loading that could be stopped
            }
            for (const QKeySequence& keys : action->shortcuts()) {
                choices.push_back(
                    {"key " + keys.toString().toStdString(), action->text().remove('&'), false,
                     [&frame, keys] {
                         frame.activateWindow();
                         ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
                         QTest::keyClick(
                             frame.windowHandle(), keys[0].key(), keys[0].keyboardModifiers()
                         );
                     }}
                );
            }
        }
    }
    /// A menu for a place opens only over a map, and only where items are not laid out.
    static void
    addMenuOfPlace(Viewer& viewer, Qt::MouseButton button, std::vector<Choice>& choices) {
        openMenuOfPlace(viewer, button);
        QMenu* const menu = openMenu();
        ASSERT_EQ(menu != nullptr, kind().hasSite && !inLayoutMode());
        if (menu == nullptr) {
            return;
        }
        for (const QString& text : test::choicesIn(*menu)) {
            const char* const by = button == Qt::RightButton ? "right button: " : "held press: ";
            choices.push_back(
                {by + text.toStdString(), text, text.endsWith("..."),
                 [&viewer, button, text] {
                     openMenuOfPlace(viewer, button);
                     ASSERT_NE(openMenu(), nullptr);
                     test::chooseInOpenMenu(*openMenu(), text, hand());
                 }}
            );
        }
        EXPECT_FALSE(choices.empty());
        QTest::keyClick(menu->windowHandle(), Qt::Key_Escape);
    }
    static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static void openMenuOfPlace(Viewer& viewer, Qt::MouseButton button) {
        QWidget& client = *viewer.window()->client();
        QWindow* const window = viewer.window()->frame()->windowHandle();
        const QPoint place = client.mapTo(client.window(), centre(viewer));
        QTest::mousePress(window, button, {}, place);
        auto* const page = dynamic_cast<CPageDisplay*>(viewer.application().current());
        if (button == Qt::LeftButton && page != nullptr) {
            page->stopTimer(PageStylus::kHoldTimer); // what is due comes without a wait
            for (int i = 0; i < PageStylus::kHolds; ++i) {
                TimerEvent due(PageStylus::kHoldTimer);
                QCoreApplication::sendEvent(page->widget(), &due);
            }
        }
        QTest::mouseRelease(window, button, {}, place);
    }

    /// Chooses everything that there is to choose, each in the state that prepare() leaves.
    void sweep(AnyDialog::Answer answer) {
        std::size_t next = 0;
        std::size_t count = 1;
        while (next < count && !HasFatalFailure()) {
            begin();
            AnyDialog newcomer(hand(), AnyDialog::Answer::cancel);
            const int status = run([&](Viewer& viewer) {
                prepare(viewer);
                finish(viewer);
                sweepOneRun(viewer, answer, next, count);
            });
            EXPECT_EQ(status, 0);
        }
        EXPECT_GT(count, 5U); // the application's own entries are there at least
    }
    /// As long as nothing changes.
    void
    sweepOneRun(Viewer& viewer, AnyDialog::Answer answer, std::size_t& next, std::size_t& count) {
        const State before = stateOf(viewer);
        const auto choices = choicesOf(viewer);
        count = choices.size();
        EXPECT_EQ(stateOf(viewer), before) << "looking changes nothing";
        AnyDialog person(hand(), answer);
        while (next < count && !HasFatalFailure() && !Modal::endRequested()) {
            const Choice& choice = choices[next++];
            if (!choice.asks && answer > AnyDialog::Answer::accept) {
                continue; // it would be as if it was accepted
            }
            SCOPED_TRACE(choice.name);
            take(viewer, choice, person.takeOpened());
            const QStringList opened = person.takeOpened();
            EXPECT_TRUE(!choice.asks || !opened.isEmpty());
            const State after = stateOf(viewer);
            if (choice.asks && answer == AnyDialog::Answer::cancel) {
                EXPECT_EQ(after, before) << "what is cancelled changes nothing";
            }
            if (after != before) {
                return;
            }
        }
    }
    static void take(Viewer& viewer, const Choice& choice, const QStringList& openedBefore) {
        EXPECT_TRUE(openedBefore.isEmpty());
        // Entries that are made when their menu opens are known to the menu alone.
        int ofAction = 0;
        int ofMenu = 0;
        const auto count = [&choice](const QAction* action, int& times) {
            times += action->text().remove('&') == choice.text ? 1 : 0;
        };
        QObject listening;
        for (QAction* action : viewer.window()->frame()->findChildren<QAction*>()) {
            QObject::connect(action, &QAction::triggered, &listening, [&, action] {
                count(action, ofAction);
            });
        }
        QObject::connect(&barOf(viewer), &QMenuBar::triggered, &listening, [&](QAction* action) {
            count(action, ofMenu);
        });
        choice.choose();
        if (QWidget* const menu = QApplication::activePopupWidget();
            menu == viewer.window()->pageMenu()) {
            menu->close(); // that is what F10 is for
        }
        finish(viewer);
        test::settle();
        EXPECT_EQ(std::max(ofAction, ofMenu), 1);
        expectReady(viewer);
    }
    /// The program waits for its user.
    static void expectReady(Viewer& viewer) {
        ASSERT_NE(viewer.window()->frame(), nullptr);
        EXPECT_TRUE(viewer.window()->frame()->isVisible());
        EXPECT_EQ(Modal::depth(), 0);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        // A page, or the hint that there is no page, and nothing else but rows at the bottom: of
        // what can be undone, or goes on.
        int shown = 0;
        for (const QObject* child : viewer.window()->client()->children()) {
            const auto* const widget = qobject_cast<const QWidget*>(child);
            const bool rows = dynamic_cast<const BottomRows*>(child) != nullptr;
            shown += widget != nullptr && !rows && widget->isVisible() ? 1 : 0;
        }
        EXPECT_EQ(shown, 1);
        EXPECT_FALSE(pageOf(viewer).isNull());
    }

private:
    QByteArray m_weatherPage;
};

TEST_P(MenuSweepTest, EverythingIsChosenAndCancelled) {
    sweep(AnyDialog::Answer::cancel);
}

TEST_P(MenuSweepTest, EverythingIsChosenAndAccepted) {
    sweep(AnyDialog::Answer::accept);
}

TEST_P(MenuSweepTest, EverythingIsChosenAndTheLastRowAccepted) {
    sweep(AnyDialog::Answer::acceptLast);
}

TEST_P(MenuSweepTest, EverythingIsChosenAndAllButtonsUsed) {
    sweep(AnyDialog::Answer::useAll);
}

std::string nameOf(const testing::TestParamInfo<MenuSweepTest::ParamType>& info) {
    const auto& [kind, layout, hand] = info.param;
    return std::string(kind.name) + (layout ? "LaidOut" : "") +
           (hand == Hand::mouse ? "ByMouse" : "ByKeys");
}

constexpr auto kHands = {Hand::mouse, Hand::keys};

INSTANTIATE_TEST_SUITE_P(
    Pages, MenuSweepTest,
    testing::Combine(testing::ValuesIn(kKinds), testing::Values(false), testing::ValuesIn(kHands)),
    nameOf
);
INSTANTIATE_TEST_SUITE_P(
    LaidOut, MenuSweepTest,
    testing::Combine(
        testing::ValuesIn(std::begin(kKinds), std::begin(kKinds) + 5), testing::Values(true),
        testing::ValuesIn(kHands)
    ),
    nameOf
);

} // namespace
} // namespace raincast
