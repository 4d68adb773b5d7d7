// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace raincast {

/// Draws a warning in a list, as wide as the list: a stripe in its colour, its event, when it ends,
/// and below those its headline, on as many lines as it needs up to four.
class WarningRowDelegate : public QStyledItemDelegate {
public:
    static constexpr int kEndRole = Qt::UserRole + 1;      ///< "until 20:15"
    static constexpr int kHeadlineRole = Qt::UserRole + 2; ///< of one line
    static constexpr int kColourRole = Qt::UserRole + 3;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index)
        const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace raincast
