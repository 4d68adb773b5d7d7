// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace raincast {

/// Draws a list's rows with a remark in a second column at the right edge. A text that has no room
/// beside its remark is cut with three dots.
class RemarkDelegate : public QStyledItemDelegate {
public:
    /// The remark of an item, a text.
    static constexpr int kRemarkRole = Qt::UserRole + 1;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index)
        const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace raincast
