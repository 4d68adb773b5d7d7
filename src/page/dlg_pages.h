// SPDX-License-Identifier: MIT
#pragma once

#include "page/app_paged.h"
#include "window/dialog.h"

class QListWidget;

namespace raincast {

/// Lets the user order, rename, switch on and off, add and delete the application's pages, restore
/// the default ones, and choose the page to show. It changes the list at once: only the choice of
/// the page depends on how it ends, and is up to the caller: with kOk ("Show") it is
/// selectedPage(). After "Add..." and "Restore default", which show a page by themselves, it ends
/// with kCancel like a dialog that was left.
class CAppPaged::CDlgPages : public Dialog {
public:
    static constexpr int kTemplate = 114;

    explicit CDlgPages(CAppPaged& application);

    /// The page of the selected row, null for none.
    [[nodiscard]] Page* selectedPage() const { return m_selected; }
    /// Whether there was no page left to choose from: the user must be offered to add one.
    [[nodiscard]] bool pageWanted() const { return m_pageWanted; }

    bool onInitialise() override;
    void onOk() override;
    void onSize(int width, int height) override;
    void onDialogCommand(int id, QWidget* control, int notification) override;

private:
    [[nodiscard]] QListWidget& list() const;
    void fill();
    void showPutBack();
    /// -1 for none.
    [[nodiscard]] int selectedRow() const;
    void readSelection();
    void updateButtons();
    void edit(int id);
    void toggleEnabled();
    void rename();
    void moveUp();
    void moveDown();
    void deletePage();
    void addPage();
    void restoreDefault();

    CAppPaged& m_application;
    Page* m_selected = nullptr;
    bool m_pageWanted = false;
};

} // namespace raincast
