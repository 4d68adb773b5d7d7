// SPDX-License-Identifier: MIT
#include "map/overlay_gps_position.h"
#include "map/placed_image.h"
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "support/qt_app.h"
#include "support/record_listeners.h"
#include "window/screen_metrics.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();
constexpr QRgb kGround = qRgb(0, 128, 0);

QImage ground() {
    QImage picture(120, 120, QImage::Format_RGB32);
    picture.fill(kGround);
    return picture;
}

/// A picture on the ground with its middle at a place.
QImage withIcon(MapIcon icon, bool large, QPoint middle) {
    QImage picture = ground();
    QPainter painter(&picture);
    const int half = positionPictureExtent(large) / 2;
    painter.drawImage(middle - QPoint(half, half), mapIconPicture(icon, large));
    return picture;
}

class OverlayGpsPositionTest : public test::GuiTest {
protected:
    ~OverlayGpsPositionTest() override {
        COverlayGPSPosition::setVectorScale(COverlayGPSPosition::kUsualVectorScale);
        ScreenMetrics::use(std::nullopt);
    }

    void place(int column, int row) {
        position.latitude = test::positionOf(column, row).latitude;
        position.longitude = test::positionOf(column, row).longitude;
        position.fixType = kFixGps;
    }
    /// Publishes what was set; twice, which leaves the icon as it was.
    void show() {
        position.publish();
        position.publish();
    }
    std::vector<ImagePixel> outlineOn(const GeoReference& on) {
        show();
        std::vector<ImagePixel> points{{7, 7}};
        position.Layout(points, on);
        return points;
    }
    std::vector<ImagePixel> outline() { return outlineOn(image); }
    QImage drawn(const std::vector<PagePoint>& points) {
        QImage picture = ground();
        QPainter painter(&picture);
        painter.setPen(Qt::blue);
        position.Draw(painter, ViewTransform(), points);
        EXPECT_EQ(painter.pen().color(), QColor(Qt::blue)) << "the pen is put back";
        return picture;
    }
    /// A screen of so many dots per inch.
    static void useScreen(int logPixelsY, double ratio = 1) {
        ScreenMetrics screen;
        screen.logPixelsY = logPixelsY;
        screen.devicePixelRatio = ratio;
        ScreenMetrics::use(screen);
    }

    COverlayGPSPosition position;
    const GeoReference image = test::placedImage();
};

TEST_F(OverlayGpsPositionTest, TheArrowsEndIsWhereTheUserWillBe) {
    place(100, 200);
    EXPECT_THAT(outline(), ElementsAre(ImagePixel{100, 200}));
    position.speed = 360; // knots: 55560 metres in five minutes, half a degree
    EXPECT_THAT(outline(), ElementsAre(ImagePixel{100, 200}, ImagePixel{100, 150}));
    position.course = 180;
    EXPECT_EQ(outline().at(1), (ImagePixel{100, 250}));
    position.course = 90;
    EXPECT_EQ(outline().at(1), (ImagePixel{164, 200})) << "degrees of longitude are shorter";
    position.course = 0;
    COverlayGPSPosition::setVectorScale(10);
    EXPECT_EQ(outline().at(1), (ImagePixel{100, 100}));
    COverlayGPSPosition::setVectorScale(0);
    EXPECT_EQ(outline().at(1), (ImagePixel{100, 200}));
}

// On an image of a metre a pixel.
TEST_F(OverlayGpsPositionTest, AKnotIsThatManyMetresAMinute) {
    const GeoReference fine = test::placedImage(1e5);
    place(100, 200); // 38.995 N, where a degree has 111017.18 m
    position.speed = 360;
    const auto points = outlineOn(fine);
    ASSERT_EQ(points.size(), 2U);
    EXPECT_NEAR(points[0].row, 200500, 1);
    EXPECT_NEAR(points[1].row, 200500 - 360 * 5 * 30.866667 / 111017.18 * 1e5, 1.5);
}

TEST_F(OverlayGpsPositionTest, AtTwoTenthsOfAKnotThereIsNoArrow) {
    place(100, 200);
    position.speed = 0.2F;
    EXPECT_EQ(outline().size(), 1U);
    position.speed = std::nextafter(0.2F, 1.0F);
    EXPECT_EQ(outline().size(), 2U);
    position.speed = 0.21F;
    EXPECT_EQ(outline().size(), 2U);
    for (const float odd : {0.0F, -5.0F, kNoNumber, -kInfinity}) {
        position.speed = odd;
        EXPECT_EQ(outline().size(), 1U) << odd;
    }
}

TEST_F(OverlayGpsPositionTest, WithoutAFixThereIsNoArrowWhateverTheSpeed) {
    place(100, 200);
    position.speed = 360;
    position.fixType = kFixNone;
    EXPECT_THAT(outline(), ElementsAre(ImagePixel{100, 200}));
    EXPECT_EQ(drawn({{60, 60}}), withIcon(MapIcon::noFix, false, {60, 60}));
}

TEST_F(OverlayGpsPositionTest, AnArrowThatEndsNowhereIsNone) {
    place(100, 200);
    for (const float speed : {kInfinity, 3e38F}) {
        position.speed = speed;
        EXPECT_EQ(outline().size(), 1U) << speed;
    }
    position.speed = 10;
    for (const float course : {kInfinity, kNoNumber}) {
        position.course = course;
        EXPECT_EQ(outline().size(), 1U) << course;
    }
    position.course = 0;
    COverlayGPSPosition::setVectorScale(std::numeric_limits<float>::max());
    EXPECT_EQ(outline().size(), 1U);
    COverlayGPSPosition::setVectorScale(COverlayGPSPosition::kUsualVectorScale);
    position.latitude = 90;
    EXPECT_EQ(outline().size(), 1U) << "the pole has no longitude";
}

TEST_F(OverlayGpsPositionTest, APositionOffTheMapShowsNothingThoughItsArrowEndsOnIt) {
    const GeoReference fine = test::placedImage(1e9);
    place(0, 0);
    position.latitude = 38; // 3e9 pixels down
    position.course = 0;
    position.speed = 3 * 110000 / (5 * 30.866667F);
    EXPECT_THAT(outlineOn(fine), IsEmpty());
    EXPECT_EQ(drawn({}), ground());

    position.latitude = 40.5; // 5e8 pixels down
    EXPECT_EQ(outlineOn(fine).size(), 1U) << "the end is off the map on the other side";
}

TEST_F(OverlayGpsPositionTest, APositionNeverKnownShowsNothing) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("image.gfw"));
    writeFile(file, "0.01\n0\n0\n-0.01\n-3.0\n2.75\n"); // the image is around 0 N, 0 E
    GeoReference around;
    ASSERT_TRUE(around.loadWorldFile(file.toStdString(), 600, 550));
    std::vector<ImagePixel> points{{7, 7}};
    position.Layout(points, around);
    EXPECT_THAT(points, IsEmpty());
    EXPECT_THAT(outlineOn(around), IsEmpty()) << "a receiver that is still looking for satellites";
    position.fixType = kFixGps;
    EXPECT_THAT(outlineOn(around), ElementsAre(ImagePixel{300, 275}));
    position.fixType = kFixNone;
    position.latitude = 0.001;
    EXPECT_EQ(outlineOn(around).size(), 1U) << "where it was last";
}

TEST_F(OverlayGpsPositionTest, TheFixIconAlternatesStartingWithB) {
    useScreen(96);
    position.fixType = kFixGps;
    for (const MapIcon icon : {MapIcon::fixB, MapIcon::fixA, MapIcon::fixB}) {
        position.publish();
        EXPECT_EQ(position.icon(), icon);
        EXPECT_EQ(drawn({{60, 60}}), withIcon(icon, false, {60, 60}));
    }
    position.fixType = kFixNone;
    position.publish();
    EXPECT_EQ(position.icon(), MapIcon::noFix);
    EXPECT_EQ(static_cast<int>(MapIcon::fixA), 121);
    EXPECT_EQ(static_cast<int>(MapIcon::fixB), 120);
    EXPECT_EQ(static_cast<int>(MapIcon::noFix), 119);
}

// A feed learns this and that between two publications; a map may be drawn at any time.
TEST_F(OverlayGpsPositionTest, WhatIsDrawnIsWhatWasPublishedLast) {
    useScreen(96);
    place(100, 200);
    position.speed = 360;
    show();
    const auto at = [this] {
        std::vector<ImagePixel> points;
        position.Layout(points, image);
        return points;
    };
    const auto published = at();
    EXPECT_EQ(published.size(), 2U);
    const QImage picture = drawn({{60, 60}, {60, 20}});
    position.fixType = kFixNone;
    position.speed = 0;
    position.latitude = 40;
    EXPECT_EQ(at(), published);
    EXPECT_EQ(position.icon(), MapIcon::fixA);
    EXPECT_EQ(drawn({{60, 60}, {60, 20}}), picture);
    COverlayGPSPosition::setVectorScale(10);
    EXPECT_EQ(at().at(0), published[0]) << "another scale does not publish";

    show();
    EXPECT_EQ(at().size(), 1U);
    position.fixType = kFixGps;
    EXPECT_EQ(position.icon(), MapIcon::noFix);
    EXPECT_EQ(drawn({{60, 60}}), withIcon(MapIcon::noFix, false, {60, 60}));
}

TEST_F(OverlayGpsPositionTest, PublishingChangesTheIconThenTellsListenersThenMaps) {
    class Order : private Listener<CDataGPSPosition>, private Listener<COverlayObject> {
    public:
        explicit Order(const COverlayGPSPosition& overlay) : m_overlay(overlay) {}
        std::vector<std::string> log;

    private:
        void onPublished(CDataGPSPosition& record) override {
            log.push_back("position " + std::to_string(record.satellites));
            EXPECT_EQ(m_overlay.icon(), MapIcon::fixB);
        }
        void onPublished(COverlayObject& object) override {
            const bool changed = object.change() == COverlayObject::Change::changed;
            log.push_back(changed ? "changed" : "removed");
        }
        const COverlayGPSPosition& m_overlay;
    } order(position);
    position.satellites = 7;
    position.fixType = kFixGps;
    position.publish();
    EXPECT_THAT(order.log, ElementsAre("position 7", "changed"));
}

// Listeners know of one position, the user's: another one is drawn as lost without their hearing.
TEST_F(OverlayGpsPositionTest, APositionThatIsDrawnAsLostIsNewsForMapsAlone) {
    place(100, 200);
    position.publish();
    class Counting : private Listener<CDataGPSPosition>, private Listener<COverlayObject> {
    public:
        int positions = 0;
        int pictures = 0;

    private:
        void onPublished(CDataGPSPosition& /*record*/) override { ++positions; }
        void onPublished(COverlayObject& /*object*/) override { ++pictures; }
    } const counting;
    position.drawAsLost();
    EXPECT_EQ(position.icon(), MapIcon::noFix);
    EXPECT_EQ(counting.positions, 0);
    EXPECT_EQ(counting.pictures, 1);
}

struct Arrow {
    QPoint from;
    QPoint tip;
    QPoint left;
    QPoint right;
};

TEST_F(OverlayGpsPositionTest, TheArrowheadsBarbsAreTruncatedToWholePixels) {
    position.fixType = kFixGps;
    show();
    const QPoint middle(60, 60);
    const Arrow rows[] = {
        {middle, {100, 60}, {95, 65}, {95, 55}}, // east
        {middle, {60, 20}, {65, 25}, {55, 25}},  // north
        {middle, {20, 60}, {25, 55}, {25, 65}},  // west
        {middle, {60, 99}, {55, 94}, {65, 94}},  // south
        // 40 and 20: 6.7 and 2.2 become 6 and 2.
        {middle, {100, 80}, {94, 82}, {98, 74}},
        {middle, {40, 100}, {38, 94}, {46, 98}},
        // 3 and 4, a vector shorter than its head.
        {middle, {63, 64}, {56, 63}, {64, 57}},
    };
    for (const bool large : {false, true}) {
        useScreen(large ? 192 : 191);
        for (const Arrow& row : rows) {
            QImage expected = withIcon(MapIcon::fixA, large, row.from);
            QPainter painter(&expected);
            painter.setPen(
                QPen(QColor(255, 0, 0), large ? 3 : 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)
            );
            painter.drawLine(row.from, row.tip);
            painter.drawPolyline(QPolygon({row.left, row.tip, row.right}));
            painter.end();
            const QImage is = drawn({{row.from.x(), row.from.y()}, {row.tip.x(), row.tip.y()}});
            EXPECT_EQ(is, expected) << row.tip.x() << "," << row.tip.y() << " large " << large;
        }
    }
}

TEST_F(OverlayGpsPositionTest, PointsThatCoincideGiveNoArrow) {
    useScreen(96);
    position.fixType = kFixGps;
    show();
    EXPECT_EQ(drawn({{60, 60}, {60, 60}}), withIcon(MapIcon::fixA, false, {60, 60}));
}

TEST_F(OverlayGpsPositionTest, AnArrowFromOrToFarAwayCrossesThePicture) {
    useScreen(96);
    position.fixType = kFixGps;
    show();
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    const QRgb red = qRgb(255, 0, 0);
    QImage picture = drawn({{60, 60}, {kMost, 60}});
    EXPECT_EQ(picture.pixel(119, 60), red);
    picture = drawn({{kLeast, 60}, {kMost, 60}});
    EXPECT_EQ(picture.pixel(0, 60), red);
    EXPECT_EQ(picture.pixel(60, 60), red);
    EXPECT_EQ(drawn({{kLeast, kLeast}, {kLeast, kMost}}), ground());
}

TEST_F(OverlayGpsPositionTest, IconsDoubleWhereSystemIconsAre64PixelsWide) {
    position.fixType = kFixNone;
    useScreen(96, 2);
    EXPECT_EQ(drawn({{60, 60}}), withIcon(MapIcon::noFix, true, {60, 60}));
    useScreen(96, 1.75);
    EXPECT_EQ(drawn({{60, 60}}), withIcon(MapIcon::noFix, false, {60, 60}));
}

TEST_F(OverlayGpsPositionTest, AnotherScaleIsSeenAtOnce) {
    class Counting : private Listener<COverlayObject> {
    public:
        int changes = 0;

    private:
        void onPublished(COverlayObject& object) override {
            changes += dynamic_cast<COverlayGPSPosition*>(&object) != nullptr ? 1 : 0;
        }
    } counting;
    const COverlayGPSPosition another;
    COverlayGPSPosition::setVectorScale(7);
    EXPECT_GE(counting.changes, 2);
    EXPECT_EQ(COverlayGPSPosition::vectorScale(), 7);
    const int before = counting.changes;
    for (const float odd : {-1.0F, kNoNumber, kInfinity, -kInfinity}) {
        COverlayGPSPosition::setVectorScale(odd);
        EXPECT_EQ(COverlayGPSPosition::vectorScale(), 7);
    }
    EXPECT_EQ(counting.changes, before);
}

class VectorScaleTest : public testing::Test {
protected:
    ~VectorScaleTest() override {
        COverlayGPSPosition::setVectorScale(COverlayGPSPosition::kUsualVectorScale);
    }

    RegistryStore store() const {
        return {
            folder.filePath(QStringLiteral("machine.json")),
            folder.filePath(QStringLiteral("user.json"))};
    }
    void load() const {
        RegistryStore registry = store();
        PersistantData::loadAll(registry, QStringLiteral("Raincast_1"));
    }
    void put(const QByteArray& hex) const {
        RegistryStore registry = store();
        registry.setBinary(RegistryStore::Branch::user, kKey, kName, QByteArray::fromHex(hex));
        ASSERT_TRUE(registry.save(RegistryStore::Branch::user));
    }

    const QString kKey = QStringLiteral("Software/Quorvane/Raincast_1/COverlayGPSPosition");
    const QString kName = QStringLiteral("vector_scale");
    QTemporaryDir folder;
};

TEST_F(VectorScaleTest, IsFourBytesInTheSettings) {
    load();
    EXPECT_EQ(COverlayGPSPosition::vectorScale(), 5);
    COverlayGPSPosition::setVectorScale(12);
    RegistryStore registry = store();
    ASSERT_TRUE(PersistantData::saveAll(registry, QStringLiteral("Raincast_1")));
    const auto saved = store().binary(RegistryStore::Branch::user, kKey, kName);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->toHex(), "00004041");
    COverlayGPSPosition::setVectorScale(3);
    load();
    EXPECT_EQ(COverlayGPSPosition::vectorScale(), 12);
}

TEST_F(VectorScaleTest, ANumberThatIsNoTimeIsTheUsualOne) {
    struct Row {
        const char* hex;
        float scale;
    };
    const Row rows[] = {
        {"0000c07f", 5},    {"0000807f", 5},
        {"000080ff", 5},    {"0000a0c0", 5},
        {"00000000", 0},    {"00000080", 0},
        {"0000003f", 0.5F}, {"ffff7f7f", 3.40282347e38F}, // shows no arrow, which is no harm
    };
    for (const Row& row : rows) {
        put(row.hex);
        COverlayGPSPosition::setVectorScale(9);
        load();
        EXPECT_EQ(COverlayGPSPosition::vectorScale(), row.scale) << row.hex;
    }
}

} // namespace
} // namespace raincast
