// SPDX-License-Identifier: MIT
#include "window/row_list.h"

namespace raincast {

// A list that gets the focus gives its first row the keyboard, and no more than that.
RowList::RowList(QWidget* parent) : QListWidget(parent) {
    connect(this, &QListWidget::currentItemChanged, this, [](QListWidgetItem* row) {
        if (row != nullptr) {
            row->setSelected(true);
        }
    });
}

// The control key, and a press below the rows, would take the selection off a row that keeps the
// keyboard.
QItemSelectionModel::SelectionFlags
RowList::selectionCommand(const QModelIndex& index, const QEvent* event) const {
    const auto command = QListWidget::selectionCommand(index, event);
    const bool takesAway = !index.isValid() || command.testFlag(QItemSelectionModel::Deselect);
    return takesAway ? QItemSelectionModel::NoUpdate : command;
}

} // namespace raincast
