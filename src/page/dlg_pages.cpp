// SPDX-License-Identifier: MIT
#include "page/dlg_pages.h"

#include "core/user_change.h"
#include "page/page.h"
#include "window/dialog_template.h"
#include "window/dlg_rename.h"
#include "window/row_delegate.h"

#include <QCheckBox>
#include <QListWidget>
#include <QSignalBlocker>

#include <utility>

namespace raincast {

namespace {

enum Control : int {
    kShow = Dialog::kOk,
    kRestoreDefault = 1012,
    kAdd = 1038,
    kDelete = 1039,
    kUp = 1040,
    kDown = 1041,
    kEnable = 1042,
    kList = 1043,
    kRename = 1044,
};

// The column of buttons from the top, which is the order of the Tab key as well.
constexpr int kColumn[] = {kShow, kUp, kDown, kRename, kEnable, kDelete, kAdd, kRestoreDefault};

DialogControl button(int id, const QString& text, int row, ControlKind kind) {
    return {id, kind, text, {66, 2 + 16 * row, 56, 14}};
}

const DialogTemplateRecord pagesDialog{
    {CAppPaged::CDlgPages::kTemplate,
     Text::marked("Pages"),
     {124, 138},
     {
         {kList, ControlKind::listBox, Text::marked("Pages"), {2, 2, 62, 134}},
         button(kShow, Text::marked("Show"), 0, ControlKind::pushButton),
         button(kUp, Text::marked("Up"), 1, ControlKind::pushButton),
         button(kDown, Text::marked("Down"), 2, ControlKind::pushButton),
         button(kRename, Text::marked("Rename"), 3, ControlKind::pushButton),
         button(kEnable, Text::marked("Enable"), 4, ControlKind::checkBox),
         button(kDelete, Text::marked("Delete"), 5, ControlKind::pushButton),
         button(kAdd, Text::marked("Add..."), 6, ControlKind::pushButton),
         button(kRestoreDefault, Text::marked("Restore default"), 7, ControlKind::pushButton),
     },
     {124, 138}}};

} // namespace

CAppPaged::CDlgPages::CDlgPages(CAppPaged& application)
    : Dialog(kTemplate), m_application(application) {}

bool CAppPaged::CDlgPages::onInitialise() {
    m_selected = m_application.current();
    list().setItemDelegate(new RowDelegate(&list()));
    host(m_application.undo(), [this] { showPutBack(); });
    fill();
    return true;
}

// The page that is shown again, or else the one that was selected.
void CAppPaged::CDlgPages::showPutBack() {
    m_selected = m_application.current() != nullptr ? m_application.current() : m_selected;
    fill();
}

QListWidget& CAppPaged::CDlgPages::list() const {
    return *control<QListWidget>(kList);
}

void CAppPaged::CDlgPages::fill() {
    m_pageWanted = m_application.pages().empty();
    if (m_pageWanted) {
        m_selected = nullptr;
        end(kCancel);
        return;
    }
    {
        const QSignalBlocker quiet(list());
        list().clear();
        for (const auto& page : m_application.pages()) {
            auto* row = new QListWidgetItem(page->shownName(), &list());
            row->setToolTip(row->text());
        }
        const auto position = m_application.positionOf(m_selected);
        list().setCurrentRow(position ? static_cast<int>(*position) : -1);
    }
    updateButtons();
}

int CAppPaged::CDlgPages::selectedRow() const {
    const auto selected = list().selectedItems();
    return selected.isEmpty() ? -1 : list().row(selected.first());
}

void CAppPaged::CDlgPages::readSelection() {
    const int row = selectedRow();
    if (row >= 0) {
        m_selected = m_application.pages()[static_cast<Position>(row)].get();
    }
}

void CAppPaged::CDlgPages::updateButtons() {
    const int row = selectedRow();
    for (const int id : {kShow, kDelete, kRename, kEnable}) {
        control(id)->setEnabled(row >= 0);
    }
    control<QCheckBox>(kEnable)->setChecked(row >= 0 && m_selected->enabled());
    control(kUp)->setEnabled(row >= 1);
    control(kDown)->setEnabled(row < list().count() - 1);
}

void CAppPaged::CDlgPages::onDialogCommand(int id, QWidget* control, int notification) {
    readSelection();
    if (id == kList) {
        updateButtons();
        if (notification == doubleClicked) {
            onOk();
        }
    } else {
        edit(id);
    }
    Dialog::onDialogCommand(id, control, notification);
}

void CAppPaged::CDlgPages::edit(int id) {
    static constexpr std::pair<int, void (CDlgPages::*)()> kEdits[] = {
        {kEnable, &CDlgPages::toggleEnabled},
        {kRename, &CDlgPages::rename},
        {kUp, &CDlgPages::moveUp},
        {kDown, &CDlgPages::moveDown},
        {kDelete, &CDlgPages::deletePage},
        {kAdd, &CDlgPages::addPage},
        {kRestoreDefault, &CDlgPages::restoreDefault}};
    for (const auto& [command, operation] : kEdits) {
        if (command == id) {
            (this->*operation)();
        }
    }
}

void CAppPaged::CDlgPages::toggleEnabled() {
    if (m_selected != nullptr) {
        m_selected->setEnabled(!m_selected->enabled());
        UserChange::announce();
    }
    updateButtons();
}

void CAppPaged::CDlgPages::rename() {
    if (m_selected == nullptr) {
        return;
    }
    // The program's own name for a page is shown in the user's language, and stays what it is.
    CDlgRename dialog(m_selected->shownName());
    if (dialog.run(widget()) == kOk) {
        if (dialog.name() != m_selected->shownName()) {
            m_selected->setName(dialog.name());
        }
        m_selected->contentChanged();
        UserChange::announce();
        fill();
    }
}

void CAppPaged::CDlgPages::moveUp() {
    const auto position = m_application.positionOf(m_selected);
    if (position && *position > 0) {
        m_application.swapWithNext(*position - 1);
        fill();
    }
}

void CAppPaged::CDlgPages::moveDown() {
    if (const auto position = m_application.positionOf(m_selected)) {
        m_application.swapWithNext(*position);
        fill();
    }
}

void CAppPaged::CDlgPages::deletePage() {
    const auto position = m_application.positionOf(m_selected);
    if (!position) {
        return;
    }
    m_application.deletePage(*position);
    const auto& pages = m_application.pages();
    m_selected = pages.empty() ? nullptr : pages[*position > 0 ? *position - 1 : 0].get();
    fill();
}

void CAppPaged::CDlgPages::addPage() {
    if (m_application.addPage(widget())) {
        end(kCancel);
    }
}

void CAppPaged::CDlgPages::restoreDefault() {
    m_selected = nullptr;
    end(kCancel);
    m_application.replaceByDefaultPages();
}

void CAppPaged::CDlgPages::onOk() {
    if (m_selected != nullptr) {
        end(kOk);
    }
}

void CAppPaged::CDlgPages::onSize(int /*width*/, int /*height*/) {
    anchor(kShow, anchorRight | anchorTop);
    for (std::size_t i = 1; i < std::size(kColumn); ++i) {
        anchor(kColumn[i], anchorRight | anchorTop);
        placeNextTo(kColumn[i - 1], kColumn[i], below, sameColumn);
    }
    anchor(kList, anchorLeft | anchorTopAndBottom);
    placeNextTo(kShow, kList, sameRow, leftOf, false, true);
}

} // namespace raincast
