// SPDX-License-Identifier: MIT
#pragma once

#include "page/page.h"
#include "page/page_type.h"
#include "support/qt_app.h"
#include "window/command_set.h"
#include "window/commands.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace raincast::test {

using Log = std::vector<std::string>;

/// What the pages of a test were asked, as "NAME operation ...".
inline Log& pageLog() {
    static Log log;
    return log;
}

/// A page that notes what it is asked, and takes the command 40017, the key A and zooming.
class SamplePage : public CAppPaged::Page {
public:
    static constexpr std::uint32_t kTypeId = 4711;

    explicit SamplePage(const QString& name = {}, bool enabled = true) {
        setName(name);
        setEnabled(enabled);
    }
    ~SamplePage() override { note("destroyed"); }

    std::uint32_t GetTypeId() const override { return kTypeId; }

    bool activate(QWidget& parent, bool flag) override {
        note("activate " + std::to_string(parent.width()) + (flag ? " 1" : " 0"));
        EXPECT_TRUE(active());
        return true;
    }
    void deactivate() override {
        EXPECT_FALSE(active());
        note("deactivate");
    }
    bool command(int id, int notification) override {
        note("command " + std::to_string(id) + " " + std::to_string(notification));
        return id == 40017;
    }
    void contentChanged() override { note("changed"); }
    void size(int width, int height) override {
        note("size " + std::to_string(width) + " " + std::to_string(height));
    }
    bool keyDown(int key) override {
        note("key " + std::to_string(key));
        return key == Qt::Key_A;
    }
    bool character(char16_t unit) override {
        note("character " + std::to_string(unit));
        return false;
    }
    void menuPopUp(QMenu& menu) override { note("menu " + menu.title().toStdString()); }
    bool zoom(int steps, const QPoint& place) override {
        note(
            "zoom " + std::to_string(steps) + " " + std::to_string(place.x()) + " " +
            std::to_string(place.y())
        );
        return true;
    }

    void note(const std::string& text) { pageLog().push_back(name().toStdString() + " " + text); }
};

/// An application whose default page is called "Default".
class SampleApp : public CAppPaged {
public:
    SamplePage& add(const QString& name, bool enabled = true) {
        return static_cast<SamplePage&>(append(std::make_unique<SamplePage>(name, enabled)));
    }

    [[nodiscard]] Log names() const {
        Log names;
        for (const auto& page : pages()) {
            names.push_back(page->name().toStdString());
        }
        return names;
    }

    /// The current page's name, "-" for none.
    [[nodiscard]] std::string shown() const {
        return current() != nullptr ? current()->name().toStdString() : "-";
    }

protected:
    void createDefaultPages() override { add(QStringLiteral("Default")); }
};

inline constexpr MenuRow kSettingsRows[] = {menuEntry(kSettingsPlace, "settings")};
inline constexpr MenuRow kMenuRows[] = {
    menuEntry(kPageEntriesPlace, "-"),
    menuSeparator(),
    menuEntry(kPreviousPage, "Previous Page"),
    menuEntry(kNextPage, "Next Page"),
    menuEntry(kPages, "Pages..."),
    menuEntry(kPageListPlace, "pages"),
    menuSeparator(),
    subMenu("Settings", kSettingsRows),
    menuEntry(40010, "Exit")};
inline constexpr MenuRow kBarRows[] = {subMenu("Menu", kMenuRows)};

/// The text of an entry without the mark of its letter.
inline QString textOf(const QAction& entry) {
    static const QRegularExpression letter(QStringLiteral("&(?=[^&])(?<!&&)"));
    return entry.text().remove(letter);
}

/// The entries of a menu that are seen: "|" for separators, "*" behind the marked one, "(...)" of
/// greyed ones, ">" behind submenus.
inline Log seenEntries(const QMenu& menu) {
    Log entries;
    for (const QAction* entry : menu.actions()) {
        if (!entry->isVisible()) {
            continue;
        }
        static const QRegularExpression letter(QStringLiteral("&(?=[^&])(?<!&&)"));
        std::string text = entry->isSeparator() ? "|" : entry->text().remove(letter).toStdString();
        text += entry->menu<QMenu*>() != nullptr ? ">" : entry->isChecked() ? "*" : "";
        entries.push_back(entry->isEnabled() || entry->isSeparator() ? text : "(" + text + ")");
    }
    return entries;
}

/// A main window of 400 by 300 with a page menu and an application attached to it.
class PagedTest : public GuiTest {
protected:
    QMainWindow window;
    CommandSet commands{window};
    QMenu* menu = nullptr;
    SampleApp app;

    PagedTest() {
        commands.fill(*window.menuBar(), kBarRows);
        menu = firstSubmenu(*window.menuBar());
        window.setCentralWidget(new QWidget);
        window.resize(400, 300);
        app.attach(window, *window.centralWidget(), commands, *menu);
        show(window);
        pageLog().clear();
    }

    ~PagedTest() override { app.clear(); }

    QWidget& client() { return *window.centralWidget(); }

    void choose(int command) { commands.action(command).trigger(); }

    /// Opens the page menu and closes it.
    void openMenu() {
        menu->popup(window.mapToGlobal(QPoint()));
        menu->close();
    }

    QAction* entry(const QString& text) {
        for (QAction* action : menu->actions()) {
            if (textOf(*action) == text) {
                return action;
            }
        }
        return nullptr;
    }

    /// The pages A, B, C ...; an underscore in front stands for a disabled one.
    void addPages(std::initializer_list<const char16_t*> names) {
        for (const char16_t* name : names) {
            const bool disabled = *name == u'_';
            app.add(QString::fromUtf16(name + (disabled ? 1 : 0)), !disabled);
        }
    }
};

} // namespace raincast::test
