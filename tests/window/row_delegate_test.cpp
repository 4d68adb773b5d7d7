// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/row_delegate.h"

#include <QListWidget>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class RowDelegateTest : public test::GuiTest {
protected:
    QListWidget list;

    RowDelegateTest() {
        list.setItemDelegate(new RowDelegate(&list));
        list.setFocusPolicy(Qt::NoFocus); // no row looks unlike the others
        list.resize(200, 120);
    }

    QListWidgetItem& add(const QString& text, const QString& remark) {
        auto* item = new QListWidgetItem(text, &list);
        item->setData(RowDelegate::kRemarkRole, remark);
        return *item;
    }

    // If not, the same text has other shades in each row.
    [[nodiscard]] bool rowsBeginOnPixels() const {
        return list.devicePixelRatio() == qRound(list.devicePixelRatio());
    }

    // How many pixels of a part of the row are not the list's background.
    int ink(QListWidgetItem& item, int fromX, int toX) {
        const QRect row = list.visualItemRect(&item);
        const QImage picture = list.viewport()->grab().toImage();
        const QRgb base = list.palette().color(QPalette::Base).rgb();
        const auto device = [this](int place) { return qRound(place * list.devicePixelRatio()); };
        int count = 0;
        for (int y = device(row.top() + 3); y < device(row.bottom() - 3); ++y) {
            for (int x = device(fromX); x < device(toX); ++x) {
                count += picture.pixel(x, y) != base ? 1 : 0;
            }
        }
        return count;
    }
};

TEST_F(RowDelegateTest, TheRemarkStandsAtTheRightEdge) {
    QListWidgetItem& with = add(QStringLiteral("ABC"), QStringLiteral("120 km"));
    QListWidgetItem& without = add(QStringLiteral("ABC"), {});
    test::show(list);
    const int right = list.viewport()->width();
    EXPECT_GT(ink(with, right - 60, right), 0);
    EXPECT_EQ(ink(without, right - 60, right), 0);
    EXPECT_EQ(ink(with, 60, right - 60), 0);
    if (rowsBeginOnPixels()) {
        EXPECT_EQ(ink(with, 0, 60), ink(without, 0, 60)) << "the text is the same";
    }
}

TEST_F(RowDelegateTest, ATextWithoutRoomIsCutBesideItsRemark) {
    QListWidgetItem& item = add(QString(60, u'I'), QStringLiteral("120 km"));
    QListWidgetItem& alone = add({}, QStringLiteral("120 km"));
    test::show(list);
    EXPECT_EQ(list.horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(list.visualItemRect(&item).width(), list.viewport()->width());
    const int right = list.viewport()->width();
    const int remark = list.fontMetrics().horizontalAdvance(QStringLiteral("120 km"));
    if (rowsBeginOnPixels()) {
        EXPECT_EQ(ink(item, right - remark - 8, right), ink(alone, right - remark - 8, right));
    }
    EXPECT_GT(ink(item, right / 2 - 40, right / 2), 0);
}

TEST_F(RowDelegateTest, ASelectedRowShowsItsRemarkInTheSelectionsColour) {
    QListWidgetItem& item = add({}, QStringLiteral("MMM"));
    test::show(list);
    const auto colours = [&] {
        const QRect row = list.visualItemRect(&item);
        const QImage picture = list.viewport()->grab(row).toImage();
        int highlighted = 0;
        const QRgb text = list.palette().color(QPalette::HighlightedText).rgb();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = picture.width() / 2; x < picture.width(); ++x) {
                highlighted += picture.pixel(x, y) == text ? 1 : 0;
            }
        }
        return highlighted;
    };
    item.setSelected(true);
    const int selected = colours();
    EXPECT_GT(selected, 0);
    EXPECT_LT(selected, list.visualItemRect(&item).width() * 5);
}

} // namespace
} // namespace raincast
