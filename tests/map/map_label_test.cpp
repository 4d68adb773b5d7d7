// SPDX-License-Identifier: MIT
#include "map/map_label.h"
#include "support/qt_app.h"

#include <QImage>
#include <QPainter>

namespace raincast {
namespace {

class MapLabelTest : public test::GuiTest {
protected:
    static QImage drawn(const QString& text, const QColor& ground = Qt::black, int dpi = 96) {
        QImage picture(800, 60, QImage::Format_RGB32);
        picture.setDotsPerMeterX(qRound(dpi / 0.0254));
        picture.setDotsPerMeterY(qRound(dpi / 0.0254));
        picture.fill(ground);
        QPainter painter(&picture);
        drawMapLabel(painter, {10, 30}, text);
        return picture;
    }
    static QRect changedIn(const QImage& picture) {
        const QRgb ground = picture.pixel(0, 0);
        QRect changed;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != ground) {
                    changed |= QRect(x, y, 1, 1);
                }
            }
        }
        return changed;
    }
    static int count(const QImage& picture, int least, int most) {
        int pixels = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const int shade = qGray(picture.pixel(x, y));
                pixels += least <= shade && shade <= most ? 1 : 0;
            }
        }
        return pixels;
    }
};

TEST_F(MapLabelTest, IsDarkInALightHaloOnAnyGround) {
    EXPECT_GT(count(drawn(QStringLiteral("Harbour"), Qt::black), 240, 255), 100);
    EXPECT_GT(count(drawn(QStringLiteral("Harbour"), Qt::white), 0, 60), 60);
    const QImage grey = drawn(QStringLiteral("Harbour"), QColor(128, 128, 128));
    EXPECT_GT(count(grey, 240, 255), 100);
    EXPECT_GT(count(grey, 0, 60), 60);
}

TEST_F(MapLabelTest, StartsAtItsPlaceInTheMiddleOfItsLine) {
    const QRect changed = changedIn(drawn(QStringLiteral("HHH")));
    EXPECT_GE(changed.left(), 10);
    EXPECT_LE(changed.left(), 14);
    EXPECT_NEAR(changed.center().y(), 30, 2);
}

TEST_F(MapLabelTest, GrowsWithTheDotsPerInch) {
    const QRect small = changedIn(drawn(QStringLiteral("Harbour")));
    const QRect large = changedIn(drawn(QStringLiteral("Harbour"), Qt::black, 192));
    EXPECT_NEAR(large.width(), 2 * small.width(), 10);
}

TEST_F(MapLabelTest, NoTextIsNothing) {
    EXPECT_TRUE(changedIn(drawn({})).isEmpty());
    EXPECT_TRUE(changedIn(drawn(QStringLiteral(" \n\t"))).isEmpty());
}

TEST_F(MapLabelTest, ATextIsDrawnAgainAsItWas) {
    EXPECT_EQ(drawn(QStringLiteral("Pier")), drawn(QStringLiteral("Pier")));
    EXPECT_NE(drawn(QStringLiteral("Pier")), drawn(QStringLiteral("Peer")));
    EXPECT_EQ(drawn(QStringLiteral("a\nb")), drawn(QStringLiteral(" a  b ")));
}

TEST_F(MapLabelTest, ItsRoughSizeIsNearThatOfItsPicture) {
    QImage picture(10, 10, QImage::Format_RGB32);
    const QPainter painter(&picture);
    for (const char* const text : {"Mark 12345", "Harbour of Refuge"}) {
        const QString line = QString::fromLatin1(text);
        const QSize real = mapLabelPicture(painter, line).size();
        const QSize rough = roughLabelSize(painter, line);
        EXPECT_EQ(rough.height(), real.height()) << text;
        EXPECT_NEAR(rough.width(), real.width(), real.width() / 3) << text;
    }
    EXPECT_LT(roughLabelSize(painter, QString(1000000, u'm')).width(), 1000) << "it is cut";
}

TEST_F(MapLabelTest, ALongTextIsCut) {
    const QImage cut = drawn(QString(1000000, u'm'));
    EXPECT_EQ(cut, drawn(QString(41, u'm')));
    EXPECT_NE(cut, drawn(QString(40, u'm')));
    EXPECT_LT(changedIn(cut).width(), 700);
}

} // namespace
} // namespace raincast
