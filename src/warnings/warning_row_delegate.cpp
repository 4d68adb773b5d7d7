// SPDX-License-Identifier: MIT
#include "warnings/warning_row_delegate.h"

#include "window/dialog_layout.h"
#include "window/screen_metrics.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace raincast {

namespace {

constexpr int kMostLines = 4; // of a headline

int gap() {
    return dialogMargin(ScreenMetrics::current().logPixelsY);
}

QFont bold(QFont font) {
    font.setBold(true);
    return font;
}

/// Breaks a text between words; the last of the most lines that there may be is cut.
QStringList linesOf(const QString& text, const QFont& font, int width) {
    QStringList lines;
    QTextLayout layout(text, font);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const bool isLast = lines.size() + 1 == kMostLines;
        const QString rest = text.mid(line.textStart(), isLast ? -1 : line.textLength());
        lines += QFontMetrics(font).elidedText(rest.trimmed(), Qt::ElideRight, width);
        if (isLast) {
            break;
        }
    }
    layout.endLayout();
    return lines;
}

/// The lines of a row: the event's, in bold type, then the others.
struct Rows {
    QStringList event;
    QStringList below;
};

Rows rowsOf(const QStyleOptionViewItem& option, const QModelIndex& index, int width) {
    Rows rows;
    rows.event = linesOf(index.data(Qt::DisplayRole).toString(), bold(option.font), width);
    for (const int role : {WarningRowDelegate::kEndRole, WarningRowDelegate::kHeadlineRole}) {
        const QString text = index.data(role).toString();
        rows.below += text.isEmpty() ? QStringList() : linesOf(text, option.font, width);
    }
    return rows;
}

int stripeWidth() {
    return 2 * gap();
}

int textWidth(int row) {
    return std::max(row - stripeWidth() - 2 * gap(), 1);
}

} // namespace

void WarningRowDelegate::paint(
    QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index
) const {
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    row.text.clear();
    const QStyle& style = row.widget != nullptr ? *row.widget->style() : *QApplication::style();
    style.drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

    painter->save();
    QRect stripe = row.rect.adjusted(0, 1, 0, -1);
    stripe.setWidth(stripeWidth());
    painter->fillRect(stripe, index.data(kColourRole).value<QColor>());
    const bool selected = (row.state & QStyle::State_Selected) != 0;
    painter->setPen(row.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const Rows rows = rowsOf(row, index, textWidth(row.rect.width()));
    const int left = row.rect.left() + stripeWidth() + gap();
    int line = row.rect.top() + gap() / 2 + row.fontMetrics.ascent();
    const auto write = [&](const QStringList& texts, const QFont& font) {
        painter->setFont(font);
        for (const QString& text : texts) {
            painter->drawText(left, line, text);
            line += row.fontMetrics.lineSpacing();
        }
    };
    write(rows.event, bold(row.font));
    write(rows.below, row.font);
    painter->restore();
}

QSize WarningRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index)
    const {
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    const auto* const view = qobject_cast<const QAbstractItemView*>(row.widget);
    const int width = view != nullptr ? view->viewport()->width() : row.rect.width();
    const Rows rows = rowsOf(row, index, textWidth(width));
    const auto lines = static_cast<int>(rows.event.size() + rows.below.size());
    const ScreenMetrics screen = ScreenMetrics::current();
    return {
        0,
        std::max(
            lines * row.fontMetrics.lineSpacing() + gap(), screen.touch ? screen.touchHeight() : 0
        )};
}

} // namespace raincast
