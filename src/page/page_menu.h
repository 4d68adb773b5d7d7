// SPDX-License-Identifier: MIT
#pragma once

#include "page/app_paged.h"

#include <QPointer>

#include <memory>

class QAction;
class QActionGroup;
class QMenu;
class QObject;

namespace raincast {

/// The application's own part of the page menu: the enabled pages, the current one marked, and the
/// settings dialogs, each at the place that its entry of MenuPlace marks; previous and next page
/// greyed without one.
class PageMenu {
public:
    /// At most this many pages are listed; the pages dialog has them all.
    static constexpr int kMostPages = 50;

    /// Both are borrowed; the menu may be destroyed first.
    PageMenu(CAppPaged& application, QMenu& menu);
    /// Takes the entries out of the menu.
    ~PageMenu();
    PageMenu(const PageMenu&) = delete;
    PageMenu& operator=(const PageMenu&) = delete;

    /// Brings all of it up to date; due whenever the menu opens, and only then: an entry may not
    /// go while it is being handled.
    void update();
    /// Greys previous and next page where there is no such page; due whenever that may have
    /// changed, since a greyed command's keys and buttons do nothing.
    void updateCycling();

private:
    void offerSettings();
    void listPages();
    [[nodiscard]] QAction* makeSettingsEntry(const CAppPaged::GlobalSettingsType& type);
    [[nodiscard]] QAction* makePageEntry(const CAppPaged::Page& page);

    CAppPaged& m_application;
    QPointer<QMenu> m_menu;
    std::unique_ptr<QActionGroup> m_pageEntries;
    std::unique_ptr<QObject> m_settingsEntries;
};

} // namespace raincast
