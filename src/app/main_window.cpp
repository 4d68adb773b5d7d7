// SPDX-License-Identifier: MIT
#include "app/main_window.h"

#include "app/dlg_about.h"
#include "app/drawn_icon.h"
#include "app/globals.h"
#include "app/keys_dialog.h"
#include "core/heartbeat.h"
#include "core/text.h"
#include "core/user_change.h"
#include "window/commands.h"
#include "window/screen_style.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QMetaObject>
#include <QToolBar>

#include <utility>

namespace raincast {

namespace {

constexpr MenuRow kSettingsRows[] = {menuEntry(kSettingsPlace, "-")};

constexpr MenuRow kMenuRows[] = {
    menuEntry(kPageEntriesPlace, "-"),
    menuSeparator(),
    menuEntry(kPreviousPage, Text::marked("&Previous page"), "PgUp"),
    menuEntry(kNextPage, Text::marked("&Next page"), "PgDown"),
    menuEntry(kPages, Text::marked("Pa&ges...")),
    menuSeparator(),
    menuEntry(kPageListPlace, "-"),
    menuSeparator(),
    subMenu(Text::marked("&Settings"), kSettingsRows),
    menuEntry(kFullScreen, Text::marked("&Full screen")),
    menuEntry(kShowKeys, Text::marked("&Keys...")),
    menuEntry(kAbout, Text::marked("&About...")),
    menuEntry(kExit, Text::marked("E&xit")),
};

constexpr MenuRow kBarRows[] = {subMenu(Text::marked("&Menu"), kMenuRows)};

constexpr AcceleratorRow kKeys[] = {
    {"F5", kUpdate},   {"Esc", kStop},    {"F11", kFullScreen},
    {"Ctrl+Q", kExit}, {"F1", kShowKeys}, {"F10", kOpenMenu},
};

struct Tool {
    int command;
    const char* text;
    const char* key;
    QIcon (*icon)();
};

constexpr Tool kTools[] = {
    {kZoomIn, Text::marked("Zoom in"), "+", zoomInIcon},
    {kZoomOut, Text::marked("Zoom out"), "-", zoomOutIcon},
    {kUpdate, Text::marked("Update"), "F5", updateIcon},
};
// In the update's place while one runs for longer than these beats.
constexpr int kStopAfterBeats = 5;
constexpr Tool kStopTool = {kStop, Text::marked("Stop"), "Esc", stopIcon};

QAction& toolAction(CommandSet& commands, const Tool& tool) {
    QAction& action = commands.action(tool.command);
    const QString text = Text::of(tool.text);
    action.setText(text);
    action.setToolTip(QStringLiteral("%1 (%2)").arg(text, Text::of(tool.key)));
    action.setIcon(tool.icon());
    action.setIconVisibleInMenu(false);
    return action;
}

// The buttons stand at the end of the menu's line: a small screen has no room for another line.
QToolBar* makeToolBar(CommandSet& commands) {
    auto* const bar = new QToolBar;
    for (const Tool& tool : kTools) {
        if (!bar->actions().isEmpty()) {
            bar->addSeparator();
        }
        bar->addAction(&toolAction(commands, tool));
    }
    return bar;
}

// The menu's title takes the whole height of the line, as the buttons do.
void fillHeight(QMenuBar& bar, int height) {
    auto* const style = new ScreenStyle(makeDesktopStyle(), height);
    style->setParent(&bar);
    bar.setStyle(style);
}

} // namespace

MainWindow::MainWindow(Callbacks callbacks)
    : m_callbacks(std::move(callbacks)), m_frame(new QMainWindow), m_commands(*m_frame) {
    m_frame->setWindowTitle(CGlobals::title());
    m_frame->setWindowIcon(programIcon());
    m_frame->setContextMenuPolicy(Qt::NoContextMenu); // Qt's own would hide the tool buttons
    auto* const client = new QWidget;
    client->setBackgroundRole(QPalette::Base);
    client->setAutoFillBackground(true);
    m_frame->setCentralWidget(client);
    makeBar();
    attach(*m_frame, client);
    startTimer(kHeartbeatTimer, kHeartbeatMilliseconds);
}

MainWindow::~MainWindow() {
    destroy();
}

void MainWindow::makeBar() {
    QMenuBar& bar = *m_frame->menuBar();
    // If the desktop showed the bar elsewhere, the buttons would lose their line.
    bar.setNativeMenuBar(false);
    m_commands.fill(bar, kBarRows);
    m_commands.addKeys(kKeys);
    m_commands.action(kFullScreen).setCheckable(true);
    toolAction(m_commands, kStopTool).setEnabled(false);
    m_tools = makeToolBar(m_commands);
    bar.setCornerWidget(m_tools);
    fillHeight(bar, m_tools->sizeHint().height());
}

QWidget* MainWindow::client() const {
    return m_frame ? m_frame->centralWidget() : nullptr;
}

QMenu* MainWindow::pageMenu() const {
    return m_frame ? firstSubmenu(*m_frame->menuBar()) : nullptr;
}

void MainWindow::showNow() {
    m_frame->show();
    m_frame->repaint();
}

void MainWindow::bringToFront(const QByteArray& token) {
    if (!m_frame) {
        return;
    }
    if (!token.isEmpty()) {
        // Qt's code for the window system looks for it there.
        qputenv("XDG_ACTIVATION_TOKEN", token);
    }
    m_frame->setWindowState(m_frame->windowState() & ~Qt::WindowMinimized);
    m_frame->show();
    m_frame->raise();
    QWidget* const dialog = QApplication::activeModalWidget();
    QWidget& front = dialog != nullptr ? *dialog : *m_frame;
    front.raise();
    front.activateWindow();
}

void MainWindow::destroy() {
    if (m_frame) {
        destroyWindow(*m_frame);
    }
}

void MainWindow::onCommand(int id, QWidget* /*control*/, int /*notification*/) {
    switch (id) {
    case kExit:
        m_callbacks.endRequested();
        break;
    case kAbout:
        CDlgAbout::show(m_frame);
        break;
    case kFullScreen:
        toggleFullScreen();
        break;
    case kShowKeys:
        KeysDialog().run(m_frame);
        break;
    case kOpenMenu:
        openMenu();
        break;
    default: // the page's
        break;
    }
}

void MainWindow::openMenu() {
    QMenuBar& bar = *m_frame->menuBar();
    bar.setActiveAction(bar.actions().constFirst());
}

// Alt gives the keyboard to the menu bar, and takes it back. That has happened when this is done.
void MainWindow::altReleased() {
    QMetaObject::invokeMethod(
        m_frame,
        [this] {
            if (m_frame && m_frame->menuBar()->hasFocus() &&
                QApplication::activePopupWidget() == nullptr) {
                openMenu();
            }
        },
        Qt::QueuedConnection
    );
}

void MainWindow::followCaption() {
    const QString caption = m_callbacks.caption ? m_callbacks.caption() : QString();
    const QString title = CGlobals::title();
    m_frame->setWindowTitle(caption.isEmpty() ? title : caption + QStringLiteral(" - ") + title);
}

// Until it was painted it is being put in its place.
void MainWindow::followPlace(QEvent::Type event) {
    if (event == QEvent::Paint) {
        m_painted = true;
    }
    const bool moves =
        event == QEvent::Resize || event == QEvent::Move || event == QEvent::WindowStateChange;
    if (m_painted && moves) {
        UserChange::announce();
    }
}

// Not at once: the second click of two must not stop what the first one began, and what is quick
// needs no other button.
void MainWindow::followLoading() {
    m_loadingBeats = m_callbacks.loading && m_callbacks.loading() ? m_loadingBeats + 1 : 0;
    const bool loading = m_loadingBeats > kStopAfterBeats;
    QAction& update = m_commands.action(kUpdate);
    QAction& stop = m_commands.action(kStop);
    if (loading == stop.isEnabled()) {
        return;
    }
    // The keys follow: one at a time is meant.
    update.setEnabled(!loading);
    stop.setEnabled(loading);
    m_tools->insertAction(loading ? &update : &stop, loading ? &stop : &update);
    m_tools->removeAction(loading ? &update : &stop);
}

void MainWindow::toggleFullScreen() {
    m_frame->setWindowState(m_frame->windowState() ^ Qt::WindowFullScreen);
}

void MainWindow::onTimer(int id) {
    if (id == kHeartbeatTimer) {
        CHeartbeat::program().Beat();
        if (m_frame) {
            followCaption();
            followLoading();
        }
    }
}

void MainWindow::onDestroy() {
    m_callbacks.destroyed();
    m_frame->setMenuBar(nullptr);
}

bool MainWindow::windowProcedure(QEvent& event) {
    if (event.type() == QEvent::Close) {
        // Hiding the window is not enough: it is destroyed when all that is under way has returned.
        event.ignore();
        m_callbacks.endRequested();
        return true;
    }
    if (event.type() == QEvent::WindowStateChange) {
        m_commands.action(kFullScreen).setChecked(m_frame->isFullScreen());
    }
    if (event.type() == QEvent::KeyRelease &&
        static_cast<const QKeyEvent&>(event).key() == Qt::Key_Alt) {
        altReleased();
    }
    followPlace(event.type());
    return Window::windowProcedure(event);
}

} // namespace raincast
