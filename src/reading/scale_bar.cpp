// SPDX-License-Identifier: MIT
#include "reading/scale_bar.h"

#include "map/text_box.h"
#include "palette/nws_colours.h"
#include "reading/level_text.h"
#include "window/device_pixels.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace raincast {

namespace {

constexpr int kLevels = 15;
constexpr int kLeastRow = 4;
constexpr int kGap = 2; ///< between colour, number and edge
constexpr std::size_t kNoLevel = 0;

/// The level of a row, counted from the top: the most on top, "range folded" at the bottom.
std::size_t levelOfRow(Quantity quantity, int row) {
    const int folded = quantity == Quantity::velocity ? 1 : 0;
    return static_cast<std::size_t>(row < kLevels - folded ? kLevels - folded - row : kLevels);
}

/// Colour and number of one row.
void drawRow(QPainter& painter, const QRect& row, Product product, std::size_t level, bool marked) {
    const int colourWidth = painter.fontMetrics().height();
    const QRect colour(row.topLeft(), QSize(colourWidth, row.height()));
    painter.fillRect(row, marked ? Qt::black : Qt::white);
    painter.fillRect(colour, QColor(nwsColours(quantityOf(product))[level]));
    if (marked) {
        painter.setPen(Qt::black);
        painter.drawRect(colour.adjusted(0, 0, -1, -1));
    }
}

void drawNumber(QPainter& painter, const QRect& row, const QString& number, bool marked) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QRect text(
        row.left() + metrics.height() + kGap, row.center().y() - metrics.height() / 2,
        row.width() - metrics.height() - kGap, metrics.height()
    );
    if (marked) {
        painter.fillRect(text, Qt::black);
    }
    painter.setPen(marked ? Qt::white : Qt::black);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, number);
}

int widthOf(const QFontMetrics& metrics, Product product) {
    int widest = metrics.horizontalAdvance(levelUnit(quantityOf(product)));
    for (std::size_t level = 1; level <= kLevels; ++level) {
        widest = std::max(widest, metrics.horizontalAdvance(levelLabel(product, level)));
    }
    return metrics.height() + widest + 2 * kGap;
}

} // namespace

QImage ScaleBar::picture(
    const QPainter& painter, int rowHeight, Product product, std::size_t marked
) const {
    const QFontMetrics metrics = painter.fontMetrics();
    const int heading = metrics.height();
    const int foot = metrics.height() / 2; // the lowest number may be higher than its row
    QImage image(
        widthOf(metrics, product), heading + kLevels * rowHeight + foot, QImage::Format_RGB32
    );
    setDensity(image, painter.device()->logicalDpiY());
    image.fill(Qt::white);
    QPainter to(&image);
    to.setFont(painter.font());
    to.drawText(QRect(kGap, 0, image.width() - kGap, heading), levelUnit(quantityOf(product)));
    const auto place = [&](int row) {
        return QRect(0, heading + row * rowHeight, image.width(), rowHeight);
    };
    const int each = (metrics.height() + rowHeight - 1) / rowHeight; // rows for a number
    for (int row = 0; row < kLevels; ++row) {
        const std::size_t level = levelOfRow(quantityOf(product), row);
        drawRow(to, place(row), product, level, level == marked);
    }
    // The strongest echo is almost white.
    to.setPen(Qt::gray);
    to.drawRect(0, heading, metrics.height() - 1, kLevels * rowHeight - 1);
    for (int row = 0; row < kLevels; ++row) {
        const std::size_t level = levelOfRow(quantityOf(product), row);
        if (row % each == 0) {
            drawNumber(to, place(row), levelLabel(product, level), false);
        }
    }
    for (int row = 0; row < kLevels && marked != kNoLevel; ++row) {
        const std::size_t level = levelOfRow(quantityOf(product), row);
        if (level == marked) {
            drawNumber(to, place(row), levelLabel(product, level), true);
        }
    }
    return image;
}

void ScaleBar::draw(
    QPainter& painter, const QRect& room, Product product, std::optional<std::size_t> marked
) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int rows = room.height() - metrics.height() - metrics.height() / 2;
    const int rowHeight = std::min(metrics.height(), rows / kLevels);
    if (rowHeight < kLeastRow) {
        m_area = {};
        return;
    }
    const Shown shown{
        product,
        marked.value_or(kNoLevel),
        rowHeight,
        {painter.device()->logicalDpiY(), 0, painter.font(), levelUnit(quantityOf(product))}};
    if (shown != m_shown) {
        m_picture = picture(painter, rowHeight, product, shown.marked);
        m_shown = shown;
    }
    m_area = QRect(
        QPoint(
            room.right() + 1 - m_picture.width(),
            room.top() + (room.height() - m_picture.height()) / 2
        ),
        m_picture.size()
    );
    painter.drawImage(m_area.topLeft(), m_picture);
}

void ScaleBar::drawBadge(QPainter& painter, const QRect& room, Product product) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QString unit = levelUnit(quantityOf(product));
    const QSize size(metrics.horizontalAdvance(unit), metrics.height());
    const QPoint place(room.right() + 1 - size.width(), room.top());
    drawTextBox(painter, place, unit);
    m_area = QRect(place, size).adjusted(-size.height() / 2, 0, 0, size.height() / 2);
}

} // namespace raincast
