// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "weather/picture_texts.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

namespace raincast {
namespace {

constexpr QRgb kGround = 0xFF336699;
const QRect kArea(10, 20, 300, 200);

class PictureTextsTest : public test::GuiTest {
protected:
    QImage drawn(const PictureTexts& texts, const QRect& area = kArea) {
        QImage picture(320, 240, QImage::Format_RGB32);
        picture.fill(kGround);
        QPainter painter(&picture);
        m_height = painter.fontMetrics().height();
        drawPictureTexts(painter, area, texts);
        return picture;
    }
    /// What is not ground, empty where nothing was drawn.
    static QRect changed(const QImage& picture, const QRect& within) {
        QRect result;
        for (int y = within.top(); y <= within.bottom(); ++y) {
            for (int x = within.left(); x <= within.right(); ++x) {
                if (picture.pixel(x, y) != kGround) {
                    result |= QRect(x, y, 1, 1);
                }
            }
        }
        return result;
    }

    int m_height = 0;
};

TEST_F(PictureTextsTest, NothingIsDrawnWithoutTexts) {
    EXPECT_TRUE(changed(drawn({}), QRect(0, 0, 320, 240)).isEmpty());
}

TEST_F(PictureTextsTest, TheTimeStandsAtTheBottomLeft) {
    const QRect box = changed(drawn({.time = "5:54"}), QRect(0, 0, 320, 240));
    EXPECT_EQ(box.left(), kArea.left() + 2);
    EXPECT_EQ(box.bottom(), kArea.bottom());
    EXPECT_EQ(box.height(), m_height);
}

TEST_F(PictureTextsTest, TheStatusIsCentredEightPixelsBelowTheTop) {
    const QRect box = changed(drawn({.status = "one\na longer line\n"}), QRect(0, 0, 320, 240));
    EXPECT_EQ(box.top(), kArea.top() + 8);
    EXPECT_NEAR(box.center().x(), kArea.center().x(), 1);
    EXPECT_GT(box.height(), m_height + m_height / 2);
}

TEST_F(PictureTextsTest, AStatusLineThatIsTooWideIsBroken) {
    const QString path = "/home/user/.local/share/somewhere/deep/below/many/folders/of/long/names";
    const QImage picture = drawn({.status = "Could not write to\n" + path + "\nend\n"});
    const QRect box = changed(picture, QRect(0, 0, 320, 240));
    EXPECT_GE(box.left(), kArea.left() + 3);
    EXPECT_LE(box.right(), kArea.right() - 3);
    const int lines = (box.height() + m_height / 2) / m_height;
    EXPECT_GE(lines, 4);
    EXPECT_LE(lines, 6);
    // An empty line is as high as any.
    const QRect apart = changed(drawn({.status = "a\n\nb"}), QRect(0, 0, 320, 240));
    EXPECT_NEAR(apart.height(), 3 * m_height, 4);
    // A line that fits stays one.
    const QRect one = changed(drawn({.status = "Could not write to\n"}), QRect(0, 0, 320, 240));
    EXPECT_EQ(one.height(), m_height);
}

TEST_F(PictureTextsTest, TheAgeComesFirstWhereThereIsNotRoomForBoth) {
    const QRect narrow(10, 20, 150, 200);
    const PictureTexts both{"5:54", "MUX 2019-05-19", {"Image is 2 days old"}, {}};
    const PictureTexts ageOnly{"5:54", {}, {"Image is 2 days old"}, {}};
    EXPECT_EQ(drawn(both, narrow), drawn(ageOnly, narrow));
    const QRect line = changed(drawn(both), QRect(0, 0, 320, 240));
    EXPECT_EQ(line.height(), 2 * m_height);
    EXPECT_GT(line.width(), changed(drawn(ageOnly), QRect(0, 0, 320, 240)).width());
}

TEST_F(PictureTextsTest, TheAgeKeepsItsLineWithoutATimeAndBesideAStatus) {
    const QRect all(0, 0, 320, 240);
    const ImageAge age = {"Image is 2 days old"};
    const QRect line = changed(drawn({.age = age}), all);
    EXPECT_EQ(line.height(), m_height);
    EXPECT_EQ(line.bottom(), kArea.bottom() - m_height) << "above the time's";
    const QRect lower(0, 120, 320, 120);
    EXPECT_EQ(changed(drawn({.age = age, .status = "Could not"}), lower), line);
}

TEST_F(PictureTextsTest, AnAgeStandsOnAmberAndAfterAnHourOnRed) {
    const auto ground = [this](const ImageAge& age) {
        const QImage picture = drawn({.age = age});
        return QColor(picture.pixel(kArea.left() + 2, kArea.bottom() + 1 - 2 * m_height));
    };
    EXPECT_EQ(ground({"Image is 43 minutes old", false}), QColor(255, 191, 0));
    EXPECT_EQ(ground({"Image is 2 days old", true}), QColor(192, 0, 0));
    // What the picture is about stays white beside it.
    const QImage both = drawn({.about = "MUX", .age = {"Image is 2 days old", true}});
    EXPECT_EQ(both.pixel(kArea.left() + 2, kArea.bottom() + 1 - 2 * m_height), 0xFFFFFFFF);
}

TEST_F(PictureTextsTest, NothingLeavesTheArea) {
    const QRect small(100, 100, 30, 30);
    const QImage picture =
        drawn({"5:54", "about", {"age"}, "a status that is far too long\n"}, small);
    EXPECT_TRUE(small.contains(changed(picture, QRect(0, 0, 320, 240))));
}

TEST_F(PictureTextsTest, TheBarFillsWithTheProgress) {
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(kGround);
    QPainter painter(&picture);
    drawProgress(painter, kArea, 0, 0);
    EXPECT_TRUE(changed(picture, QRect(0, 0, 320, 240)).isEmpty());
    drawProgress(painter, kArea, 1, 2);
    const QRect bar = changed(picture, QRect(0, 0, 320, 240));
    EXPECT_EQ(bar.bottom(), kArea.bottom());
    EXPECT_EQ(bar.width(), kArea.width());
    EXPECT_LT(bar.height(), 12);
    EXPECT_NE(picture.pixel(kArea.left() + 10, kArea.bottom()), 0xFFFFFFFF);
    EXPECT_EQ(picture.pixel(kArea.right() - 10, kArea.bottom()), 0xFFFFFFFF);
}

} // namespace
} // namespace raincast
