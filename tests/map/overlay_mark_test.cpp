// SPDX-License-Identifier: MIT
#include "map/map_icon.h"
#include "map/overlay_mark.h"
#include "map/placed_image.h"
#include "support/qt_app.h"
#include "support/serial_bytes.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>

#include <limits>

namespace raincast {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const QString kName = QStringLiteral("Pier");

class OverlayMarkTest : public test::GuiTest {
protected:
    static QImage ground() {
        QImage picture(160, 80, QImage::Format_RGB32);
        picture.fill(qRgb(0, 128, 0));
        return picture;
    }
    static QImage drawn(COverlayMark& mark, int zoom, const std::vector<PagePoint>& points) {
        QImage picture = ground();
        QPainter painter(&picture);
        mark.Draw(painter, ViewTransform(zoom, {}), points);
        return picture;
    }
    static QImage pinAt(QPoint tip) {
        QImage picture = ground();
        QPainter painter(&picture);
        painter.drawImage(tip - QPoint(7, 25), mapIconPicture(MapIcon::mark, false));
        return picture;
    }

    const GeoReference image = test::placedImage();
};

TEST_F(OverlayMarkTest, ANewOneIsNamelessAtZero) {
    const COverlayMark mark;
    EXPECT_EQ(mark.latitude, 0);
    EXPECT_EQ(mark.longitude, 0);
    EXPECT_TRUE(mark.name.isEmpty());
    EXPECT_EQ(mark.GetTypeId(), 20U);
    EXPECT_EQ(COverlayMark::kHotSpot, QPoint(7, 25));
}

TEST_F(OverlayMarkTest, LiesOnItsPixelOrOffTheMap) {
    const COverlayMark mark(test::positionOf(30, 40), kName);
    std::vector<ImagePixel> points{{7, 7}, {8, 8}};
    mark.Layout(points, image);
    EXPECT_THAT(points, ElementsAre(ImagePixel{30, 40}));

    const COverlayMark far({-41, -105}, kName);
    far.Layout(points, test::placedImage(1e9));
    EXPECT_THAT(points, IsEmpty());
    COverlayMark drawnFar({-41, -105}, kName);
    EXPECT_EQ(drawn(drawnFar, 0, {}), ground());
}

TEST_F(OverlayMarkTest, OutOfRangeItIsNowhere) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
    for (const GeoPosition& nowhere :
         {GeoPosition{90.5, -105}, GeoPosition{-91, -105}, GeoPosition{40, 360.5},
          GeoPosition{40, -465}, GeoPosition{kNoNumber, -105}, GeoPosition{40, kInfinity}}) {
        std::vector<ImagePixel> points{{7, 7}};
        COverlayMark(nowhere, kName).Layout(points, image);
        EXPECT_THAT(points, IsEmpty()) << nowhere.latitude << "," << nowhere.longitude;
    }
    std::vector<ImagePixel> points;
    COverlayMark({40, 255}, kName).Layout(points, image); // 105 W, written another way
    EXPECT_THAT(points, ElementsAre(ImagePixel{0, 100}));
}

TEST_F(OverlayMarkTest, ItsPinStandsOnTheSpot) {
    COverlayMark mark(test::positionOf(30, 40), QString());
    EXPECT_EQ(drawn(mark, 0, {{50, 60}}), pinAt({50, 60}));
}

TEST_F(OverlayMarkTest, ItsNameIsThereUnlessTheViewIsZoomedOut) {
    const COverlayMark mark(test::positionOf(30, 40), kName);
    for (int zoom = ViewTransform::kLeastZoom; zoom <= ViewTransform::kMostZoom; ++zoom) {
        const auto label = mark.label(ViewTransform(zoom, {}), {{50, 60}});
        ASSERT_EQ(label.has_value(), zoom <= 0) << zoom;
        if (label) {
            EXPECT_EQ(label->text, kName);
            EXPECT_EQ(label->leftMiddle, QPoint(58, 42)) << "right of the pin's head";
        }
    }
    EXPECT_FALSE(mark.label({}, {}).has_value()) << "it is off the map";
}

TEST_F(OverlayMarkTest, OfDataItIsAnOverlay) {
    const COverlayMark mark(MarkData{91, 2, kName});
    EXPECT_EQ(mark.position(), (GeoPosition{91, 2})) << "as it was, on the earth or not";
    EXPECT_EQ(mark.name, kName);
    const std::vector<const COverlayObject*> all(
        COverlayObject::all().begin(), COverlayObject::all().end()
    );
    EXPECT_THAT(all, Contains(&mark));
}

TEST_F(OverlayMarkTest, ComesBackFromItsBytes) {
    const COverlayMark mark({54.5, -11.25}, QStringLiteral("\u00DC\u20AC"));
    const auto object = test::readBlock(test::writtenBlock(mark));
    const auto* read = dynamic_cast<const COverlayMark*>(object.get());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->position(), mark.position());
    EXPECT_EQ(read->name, mark.name);
}

TEST_F(OverlayMarkTest, AFileThatPlacesItNowhereLeavesItAsItWas) {
    COverlayMark mark({1, 2}, kName);
    EXPECT_FALSE(test::read(mark, QByteArray(4, '\0')));
    EXPECT_FALSE(test::read(mark, {}));
    EXPECT_EQ(mark.position(), (GeoPosition{1, 2}));
    EXPECT_EQ(mark.name, kName);
}

TEST_F(OverlayMarkTest, AnEndlessNameIsCutUnlessItComesFromAFile) {
    COverlayMark mark;
    mark.setName(QString(5000, u'x'));
    EXPECT_EQ(mark.name.size(), 1000);
    // What a file holds is not for us to shorten.
    mark.name = QString(5000, u'x');
    COverlayMark read;
    const QByteArray bytes = test::written(mark);
    EXPECT_TRUE(test::read(read, bytes));
    EXPECT_EQ(test::written(read), bytes);
}

} // namespace
} // namespace raincast
