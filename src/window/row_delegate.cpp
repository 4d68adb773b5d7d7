// SPDX-License-Identifier: MIT
#include "window/row_delegate.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace raincast {

namespace {

QString remarkOf(const QModelIndex& index) {
    return index.data(RowDelegate::kRemarkRole).toString();
}

// The room that a remark takes off its row, its distance from the text included.
int remarkWidth(const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QString remark = remarkOf(index);
    const int space = option.fontMetrics.averageCharWidth();
    return remark.isEmpty() ? 0 : option.fontMetrics.horizontalAdvance(remark) + 2 * space;
}

} // namespace

void RowDelegate::paint(
    QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index
) const {
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    const QStyle& style = row.widget != nullptr ? *row.widget->style() : *QApplication::style();
    const QRect textRect = style.subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget);
    const int room = textRect.width() - remarkWidth(row, index);
    row.text = row.fontMetrics.elidedText(row.text, Qt::ElideRight, room);
    style.drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

    const bool selected = (row.state & QStyle::State_Selected) != 0;
    const QRect place = textRect.adjusted(0, 0, -row.fontMetrics.averageCharWidth(), 0);
    painter->save();
    painter->setFont(row.font);
    style.drawItemText(
        painter, place, Qt::AlignRight | Qt::AlignVCenter, row.palette,
        (row.state & QStyle::State_Enabled) != 0, remarkOf(index),
        selected ? QPalette::HighlightedText : QPalette::Text
    );
    painter->restore();
}

// A row is as wide as its list anyway.
QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return {0, QStyledItemDelegate::sizeHint(option, index).height()};
}

} // namespace raincast
