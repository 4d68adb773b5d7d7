// SPDX-License-Identifier: MIT
#include "window/command_set.h"

#include "fitting/fit_text.h"
#include "letters/give_letters.h"
#include "window/events.h"
#include "window/screen_metrics.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace raincast {

namespace {

// A shortcut of no widget but the menus themselves: it is seen, and somebody else acts on the key.
void showKey(QAction& entry, const char* key) {
    if (*key != '\0' && entry.shortcuts().isEmpty()) {
        entry.setShortcut(QKeySequence(QString::fromLatin1(key), QKeySequence::PortableText));
        entry.setShortcutContext(Qt::WidgetShortcut);
    }
}

} // namespace

QAction& CommandSet::action(int command) {
    QAction*& entry = m_actions[command];
    if (entry == nullptr) {
        entry = new QAction(&m_window);
        entry->setData(command);
        QWidget* const window = &m_window;
        QObject::connect(entry, &QAction::triggered, window, [window, command] {
            sendCommand(*window, command);
        });
    }
    return *entry;
}

void CommandSet::fill(QMenu& menu, std::span<const MenuRow> rows) {
    fillAny(menu, rows);
    watch(menu);
}

void CommandSet::fill(QMenuBar& bar, std::span<const MenuRow> rows) {
    fillAny(bar, rows);
}

template<typename Menu>
void CommandSet::fillAny(Menu& menu, std::span<const MenuRow> rows) {
    for (const MenuRow& row : rows) {
        const QString text = Text::of(row.text);
        switch (row.kind) {
        case MenuRow::Kind::command: {
            QAction& entry = action(row.command);
            if (entry.text().isEmpty()) {
                entry.setText(text);
            }
            showKey(entry, row.key);
            menu.addAction(&entry);
            break;
        }
        case MenuRow::Kind::separator:
            menu.addSeparator();
            break;
        case MenuRow::Kind::submenu:
            fill(*menu.addMenu(text), row.rows);
            break;
        }
    }
}

void CommandSet::watch(QMenu& menu) {
    // A menu filled in steps says only once that it opens.
    QObject::disconnect(&menu, &QMenu::aboutToShow, &m_window, nullptr);
    QWidget* const window = &m_window;
    QMenu* const opening = &menu;
    QObject::connect(opening, &QMenu::aboutToShow, window, [window, opening] {
        MenuPopupEvent event(*opening);
        QCoreApplication::sendEvent(window, &event);
        giveLetters(*opening);
        fitMenu(*opening, ScreenMetrics::current().available.width());
    });
}

std::unique_ptr<QMenu> CommandSet::load(int menuId) {
    auto menu = std::make_unique<QMenu>();
    fill(*menu, MenuTableRecord::find(menuId));
    return menu;
}

void CommandSet::addKeys(std::span<const AcceleratorRow> rows) {
    for (const AcceleratorRow& row : rows) {
        QAction& entry = action(row.command);
        auto keys = entry.shortcuts();
        keys.append(QKeySequence(QString::fromLatin1(row.key), QKeySequence::PortableText));
        entry.setShortcuts(keys);
        // An action takes part in shortcuts through the widgets that it was added to.
        m_window.addAction(&entry);
    }
}

int commandOf(const QAction& action) {
    return action.data().toInt();
}

QAction* findCommand(const QWidget& menu, int command) {
    for (QAction* entry : menu.actions()) {
        if (commandOf(*entry) == command && !entry->isSeparator() && !entry->menu()) {
            return entry;
        }
        const QMenu* const submenu = entry->menu<QMenu*>();
        if (QAction* const found = submenu ? findCommand(*submenu, command) : nullptr) {
            return found;
        }
    }
    return nullptr;
}

QMenu* firstSubmenu(const QWidget& menu) {
    for (const QAction* entry : menu.actions()) {
        if (auto* const submenu = entry->menu<QMenu*>()) {
            return submenu;
        }
    }
    return nullptr;
}

void enableCommand(const QWidget& menu, int command, bool enabled) {
    if (QAction* const entry = findCommand(menu, command)) {
        entry->setEnabled(enabled);
    }
}

void checkCommand(const QWidget& menu, int command, bool checked) {
    if (QAction* const entry = findCommand(menu, command)) {
        entry->setCheckable(true);
        entry->setChecked(checked);
    }
}

} // namespace raincast
