// SPDX-License-Identifier: MIT
#pragma once

#include "page/app_paged.h"
#include "persist/serializable.h"

#include <QPointer>
#include <QString>

#include <memory>
#include <vector>

class QMenu;
class QPoint;

namespace raincast {

class CommandSet;
class MenuMerger;

/// A page of the application: what the main window shows while the page is current. A page that
/// exists need not have a window; it has one between activate() and deactivate().
class CAppPaged::Page : public CSerializable {
public:
    /// The type is borrowed and lives as long as the program; null for a page without a type.
    explicit Page(const PageType* pageType = nullptr);
    /// Takes the page's entries out of the menu.
    ~Page() override;

    /// Reads and writes the name and the enabled flag: the record that each page's body starts
    /// with. Reading never fails; a missing field, or one that is not a boolean, keeps its value.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;

    /// The page becomes the current one: shows itself on the whole of `parent`. The flag is true.
    /// False if it could not.
    virtual bool activate(QWidget& parent, bool flag) = 0;
    /// The page stops being the current one: destroys its window.
    virtual void deactivate() = 0;
    /// A command of the main window, before anybody else. Returns whether it was this page's.
    virtual bool command(int id, int notification);
    /// Something that the page shows was changed from outside: its name.
    virtual void contentChanged();
    /// The parent's client area has this size, in logical pixels (deviceRect() of the page's
    /// window tells it in device pixels, once the window has it).
    virtual void size(int width, int height);
    /// A key went down; `key` is a Qt::Key. Returns whether the page has a use for it.
    virtual bool keyDown(int key);
    /// One UTF-16 unit of the text that was typed.
    virtual bool character(char16_t unit);
    /// A menu of the main window is about to open: the time to check and grey the page's entries.
    virtual void menuPopUp(QMenu& menu);
    /// The wheel or a pinch asks for larger (steps > 0) or smaller blocks around a place, in
    /// device pixels of the parent. Returns whether the page has a use for it.
    virtual bool zoom(int steps, const QPoint& place);

    [[nodiscard]] const QString& name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }
    /// The name or, if it is empty, the type's, as one line of a list or menu: at most 100
    /// characters, without control characters.
    [[nodiscard]] QString shownName() const;

    /// Whether the page takes part in moving to the next and the previous one.
    [[nodiscard]] bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    [[nodiscard]] const PageType* pageType() const { return m_pageType; }
    void setPageType(const PageType* pageType) { m_pageType = pageType; }

    /// The application whose page this is; null until it is appended to one.
    [[nodiscard]] CAppPaged* application() const { return m_application; }

    /// Whether this is the current page.
    [[nodiscard]] bool active() const { return m_active; }

    /// The numbers of the menus (MenuTableRecord) whose entries stand in the page menu while the
    /// page is current, in order. A number of 0 or one that is there already is not added. The
    /// menu follows at once.
    void addMenu(int menuId);
    void removeMenu(int menuId);
    [[nodiscard]] const std::vector<int>& menus() const { return m_menus; }

private:
    friend class CAppPaged;

    void mergeMenus(CommandSet& commands, QMenu& pageMenu);
    void unmergeMenus();
    void menusChanged();

    CAppPaged* m_application = nullptr;
    QString m_name;
    const PageType* m_pageType;
    bool m_enabled = true;
    bool m_active = false;
    std::vector<int> m_menus;
    CommandSet* m_commands = nullptr; // while merged
    QPointer<QMenu> m_pageMenu;       // while merged
    std::unique_ptr<MenuMerger> m_merged;
};

} // namespace raincast
