// SPDX-License-Identifier: MIT
#include "window/dlg_item_type_select.h"

#include "letters/type_ahead.h"
#include "window/dialog_template.h"
#include "window/row_delegate.h"

#include <QListWidget>

#include <utility>

namespace raincast {

namespace {

constexpr int kList = 1028;

const DialogTemplateRecord selectDialog{
    {CDlgItemTypeSelect::kTemplate,
     Text::marked("Select"),
     {124, 100},
     {
         {kList, ControlKind::listBox, Text::marked("Items"), {2, 2, 120, 96}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {80, 50}}};

} // namespace

CDlgItemTypeSelect::CDlgItemTypeSelect(QString caption)
    : Dialog(kTemplate), m_caption(std::move(caption)) {}

void CDlgItemTypeSelect::add(
    const QString& label, const QVariant& datum, bool select, const QString& remark
) {
    if (select) {
        m_preselected = static_cast<int>(m_rows.size());
    }
    m_rows.push_back({label, datum, remark});
}

QVariant CDlgItemTypeSelect::selectedDatum() const {
    return m_selected ? m_rows[static_cast<std::size_t>(*m_selected)].datum : QVariant();
}

bool CDlgItemTypeSelect::onInitialise() {
    m_selected.reset();
    if (!m_caption.isEmpty()) {
        setCaption(m_caption);
    }
    auto& list = *control<QListWidget>(kList);
    for (const Row& row : m_rows) {
        auto* item = new QListWidgetItem(row.label, &list);
        item->setData(RowDelegate::kRemarkRole, row.remark);
        item->setToolTip(row.label);
    }
    list.setItemDelegate(new RowDelegate(&list));
    new TypeAhead(list);
    if (m_preselected) {
        list.setCurrentRow(*m_preselected);
    }
    return true;
}

void CDlgItemTypeSelect::onSize(int /*width*/, int /*height*/) {
    anchor(kList, anchorLeftAndRight | anchorTopAndBottom);
}

void CDlgItemTypeSelect::onDialogCommand(int id, QWidget* control, int notification) {
    if (id == kList && notification == doubleClicked) {
        onOk();
    }
    Dialog::onDialogCommand(id, control, notification);
}

void CDlgItemTypeSelect::onOk() {
    auto& list = *control<QListWidget>(kList);
    const auto selected = list.selectedItems();
    m_selected = selected.isEmpty() ? std::nullopt : std::optional(list.row(selected.first()));
    Dialog::onOk();
}

} // namespace raincast
