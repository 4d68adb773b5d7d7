// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>

#include <memory>
#include <vector>

class QAction;
class QMenu;

namespace raincast {

/// Puts the entries of other menus into a menu, in the place of a placeholder entry, and takes
/// them out again. Owns the menus that it was given; they are destroyed once control is back in the
/// event loop that runs now, not in one of a dialog: it may be an entry of theirs that was chosen,
/// and the menu is then still busy with it.
///
/// Merges the entries of a menu's first submenu: its submenus and its commands
/// (the same actions, so that they are checked and enabled in one place) and separators, at most
/// 256 of each menu and with at most 100 characters of text each; a longer text is cut. A command
/// that stands in the menu already is not put there twice.
class MenuMerger {
public:
    static constexpr int kMostEntries = 256;
    static constexpr int kMostCharacters = 100;

    /// `placeholder`: the number of the command whose entry marks the place.
    explicit MenuMerger(int placeholder) : m_placeholder(placeholder) {}
    /// Unmerges all entries, and has the menus destroyed.
    ~MenuMerger();
    MenuMerger(const MenuMerger&) = delete;
    MenuMerger& operator=(const MenuMerger&) = delete;

    /// Takes a menu over, after those given before. Merged entries stay as they are until they
    /// are merged again.
    void add(std::unique_ptr<QMenu> menu);
    /// Unmerges, and has the menus given so far destroyed.
    void clear();

    /// Merges into the menu, or the submenu of it, that holds the placeholder. Returns whether it
    /// does; if not, or when merged already, nothing changes.
    bool merge(QMenu& target);

    /// Takes the entries out and puts the placeholder back, disabled, with the text "-". Nothing
    /// if not merged.
    void unmerge();

    [[nodiscard]] bool merged() const { return !m_target.isNull(); }

private:
    void insertEntries(const QMenu& menu, QAction* before);

    struct DeleteLater {
        void operator()(QMenu* menu) const;
    };

    int m_placeholder;
    std::vector<std::unique_ptr<QMenu, DeleteLater>> m_menus;
    QPointer<QMenu> m_target; // null when not merged
    QPointer<QAction> m_placeholderEntry;
    QPointer<QAction> m_end;                  // where the entries end in the target
    std::vector<QPointer<QAction>> m_entries; // those inserted, in order
};

} // namespace raincast
