// SPDX-License-Identifier: MIT
#pragma once

#include "persist/serializable.h"
#include "window/bottom_rows.h"
#include "window/undo.h"
#include "window/window.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

class QLabel;
class QMenu;

namespace raincast {

class CommandSet;
class EmptyHint;
class PageMenu;
class ZoomInput;

/// An application that shows one page at a time out of a list of pages, which the user orders,
/// renames, switches off, adds and deletes. It owns the pages, keeps their commands in the page
/// menu while they are current, and hands them what happens in its window: commands, keys,
/// characters, menus that open, sizes and zooming.
///
/// It is bound to the main window by attach(); until then it holds pages but must not show one.
class CAppPaged : public Window, public CSerializable {
public:
    class Page;               ///< page/page.h
    class PageType;           ///< page/page_type.h
    class GlobalSettingsType; ///< page/global_settings_type.h
    class CDlgPages;          ///< page/dlg_pages.h

    using PageList = std::vector<std::unique_ptr<Page>>;
    using Position = std::size_t; ///< in the page list

    CAppPaged();
    /// Destroys the pages; one that is current is deactivated first.
    ~CAppPaged() override;

    /// Binds the application to its main window, whose pages are shown in `client` (the central
    /// widget of a main window, or the window itself). `pageMenu` is the menu that holds the
    /// entries of window/commands.h; those that are missing are done without. All four are
    /// borrowed and must live until the window is destroyed.
    void attach(QWidget& window, QWidget& client, CommandSet& commands, QMenu& pageMenu);

    [[nodiscard]] const PageList& pages() const { return m_pages; }
    [[nodiscard]] Page* current() const { return m_current; }
    [[nodiscard]] std::optional<Position> positionOf(const Page* page) const;

    /// Adds a page at the end of the list; it is not shown by that. Every page comes this way.
    virtual Page& append(std::unique_ptr<Page> page);

    /// Shows a page, enabled or not; none (or no position of the list) shows no page. The page
    /// shown until now is deactivated first, even if it is the same one.
    void select(std::optional<Position> position);

    /// The enabled page that follows the current one, none at the end of the list. Without a
    /// current page it is the first enabled one.
    [[nodiscard]] std::optional<Position> nextEnabled() const;
    /// The enabled page before the current one; none at the start, or without a current page.
    [[nodiscard]] std::optional<Position> previousEnabled() const;

    /// Show those; without one nothing changes.
    void nextPage();
    void previousPage();
    /// Shows the first enabled page behind the current one, from the start of the list behind its
    /// end; nothing changes if no other page is enabled. Without a current page: the first one.
    void nextEnabledWithWrap();

    /// Destroys all pages. No page is current afterwards.
    void clear();

    /// Destroys all pages, has the default ones created and shows the first enabled one.
    void restoreDefaultPages();

    /// Lets the user choose a page type over `parent`, and appends and shows a page of it. False,
    /// with the list as it was, if the user chose none or the page could not be created.
    bool addPage(QWidget* parent);

    /// What puts back what the user deletes; null without a window.
    [[nodiscard]] Undo* undo() const { return m_undo; }

    /// As the user wants it: shows no page, and takes one out of the list. It can be put back.
    void deletePage(Position position);
    /// The same for all pages, in whose place the default ones come.
    void replaceByDefaultPages();

    /// Swaps a page with its neighbour behind it; nothing without one.
    void swapWithNext(Position position);
    /// Destroys a page and takes it out of the list. If it is the current one, none is current
    /// then.
    void remove(Position position);

    /// Destroys the pages that there are, takes those of another one, which shows none, and shows
    /// the first of them, enabled or not.
    void takeFrom(CAppPaged& other);

    /// Destroys the pages that there are, reads the list and what stands behind it (of which it
    /// knows nothing: see CSerialReader::readInto), and shows its first page, enabled or not.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;

    /// Adds a line at the window's bottom, not shown at first; `pressed` is called when its button
    /// is. The caller deletes it, and keeps it in a QPointer: the window may take it along. Null
    /// without a window. A page ends above a line that lasts.
    [[nodiscard]] ActionRow* addRow(BottomRows::Stay stay, std::function<void()> pressed);

    /// Shows a text below whatever page is shown; an empty one takes it away. Needs the window.
    void setNotice(const QString& text);
    /// The same with a button "Try again", which calls `again`.
    void setRetryNotice(const QString& text, std::function<void()> again);

    void onCommand(int id, QWidget* control, int notification) override;
    void onSize(int width, int height) override;
    bool windowProcedure(QEvent& event) override;

protected:
    /// Appends the default pages to the list, which is empty. The default appends none.
    virtual void createDefaultPages();

private:
    void runPagesDialog();
    void onKey(int key);
    void onMenuPopup(QMenu& menu);
    [[nodiscard]] bool onZoom(QEvent& event);
    void deactivateCurrent();
    void fitPage();
    void showState();
    void putBack(std::unique_ptr<Page> page, Position position, const Page* shownBefore);
    void putBack(PageList pages, const std::vector<const Page*>& instead, const Page* shownBefore);
    void dropUndo();

    PageList m_pages;
    Page* m_current = nullptr;
    QPointer<QWidget> m_client;
    QPointer<BottomRows> m_rows;
    QPointer<QLabel> m_notice;
    QPointer<ActionRow> m_retryNotice;
    std::function<void()> m_again; ///< what the button of that does
    QPointer<Undo> m_undo;
    CommandSet* m_commands = nullptr;
    QPointer<QMenu> m_menu;
    std::unique_ptr<PageMenu> m_pageMenu;
    std::unique_ptr<EmptyHint> m_hint;
    std::unique_ptr<ZoomInput> m_zoomInput;
};

} // namespace raincast
