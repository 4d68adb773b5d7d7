// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>

namespace raincast {

/// A list to choose one row of. The row that has the keyboard is the selected one, however it got
/// there: what Enter acts on is what stands out.
class RowList : public QListWidget {
public:
    explicit RowList(QWidget* parent);

protected:
    QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex& index, const QEvent* event) const override;
};

} // namespace raincast
