// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>

namespace raincast {

/// A list to choose one row of. The row that has the keyboard is always the selected one: Enter
/// acts on the row that stands out.
class RowList : public QListWidget {
public:
    explicit RowList(QWidget* parent);

protected:
    QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex& index, const QEvent* event) const override;
};

} // namespace raincast
