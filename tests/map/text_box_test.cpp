// SPDX-License-Identifier: MIT
#include "map/text_box.h"
#include "support/qt_app.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

namespace raincast {
namespace {

class TextBoxTest : public test::GuiTest {};

TEST_F(TextBoxTest, IsBlackOnAWhiteBoxOfTheTextsSize) {
    QImage picture(200, 60, QImage::Format_RGB32);
    for (const QColor& ground : {QColor(0, 160, 0), QColor(Qt::black), QColor(253, 253, 253)}) {
        picture.fill(ground);
        QPainter painter(&picture);
        const QString text = QStringLiteral("41°30.000'N");
        drawTextBox(painter, {10, 20}, text);
        const QRect box(
            10, 20, painter.fontMetrics().horizontalAdvance(text), painter.fontMetrics().height()
        );
        painter.end();
        EXPECT_EQ(picture.pixelColor(box.topLeft()), QColor(Qt::white));
        EXPECT_EQ(picture.pixelColor(box.bottomRight()), QColor(Qt::white));
        EXPECT_EQ(picture.pixelColor(box.left() - 1, box.top()), ground);
        EXPECT_EQ(picture.pixelColor(box.right() + 1, box.bottom() + 1), ground);
        int dark = 0;
        for (int y = box.top(); y <= box.bottom(); ++y) {
            for (int x = box.left(); x <= box.right(); ++x) {
                dark += picture.pixelColor(x, y).lightness() < 60 ? 1 : 0;
            }
        }
        EXPECT_GT(dark, 50);
    }
}

TEST_F(TextBoxTest, ATextIsWrittenAgainAsItWasAndEachInItsColours) {
    QImage target(10, 10, QImage::Format_RGB32);
    QPainter painter(&target);
    const TextBoxColours red{{192, 0, 0}, {255, 255, 255}};
    const QString text = QStringLiteral("5:54");
    const QImage first = textBoxPicture(painter, text);
    EXPECT_EQ(textBoxPicture(painter, text), first);
    EXPECT_NE(textBoxPicture(painter, QStringLiteral("5:55")), first);
    EXPECT_NE(textBoxPicture(painter, text, red), first);
    EXPECT_EQ(textBoxPicture(painter, text, red).pixelColor(0, 0), QColor(192, 0, 0));
    QFont large = painter.font();
    large.setPixelSize(40);
    painter.setFont(large);
    EXPECT_GT(textBoxPicture(painter, text).height(), first.height());
    EXPECT_TRUE(textBoxPicture(painter, {}).isNull());
}

} // namespace
} // namespace raincast
