// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace raincast {

/// Draws a list's rows as wide as the list, so that nothing must be scrolled to sideways: a text
/// without room is cut with three dots, and a remark stands at the right edge like a second column.
class RowDelegate : public QStyledItemDelegate {
public:
    /// The remark of an item, a text.
    static constexpr int kRemarkRole = Qt::UserRole + 1;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index)
        const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace raincast
