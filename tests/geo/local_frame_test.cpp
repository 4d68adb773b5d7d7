// SPDX-License-Identifier: MIT
#include "geo/local_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <limits>

namespace raincast {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(LocalFrameTest, StartsWithoutAScale) {
    const LocalFrame frame;
    EXPECT_EQ(frame.origin(), (GeoPosition{0, 0}));
    EXPECT_EQ(frame.metresPerDegreeLat(), 0);
    EXPECT_EQ(frame.metresPerDegreeLon(), 0);
    EXPECT_EQ(frame.distanceMetres({1, 1}), 0);
}

struct Scale {
    double latitude;
    double latitudeMiles;
    double longitudeMiles;
};

TEST(LocalFrameTest, ScalesFollowTheLatitude) {
    const Scale rows[] = {
        {0, 59.70533251357, 60.10771641105},
        {-0.0, 59.70533251357, 60.10771641105},
        {45, 60.00737452742, 42.57388503989},
        {-45, 60.00737452742, 42.57388503989},
        {44.5, (59.99682493821 + 60.00737452742) / 2, -1},
        {-44.75, 0.25 * 59.99682493821 + 0.75 * 60.00737452742, -1},
        {0.25, 0.75 * 59.70533251357 + 0.25 * 59.70551635746, -1},
        {89, 60.30973970626, 1.052552228475},
        {89.5, 60.30973970626, 1.052552228475 / 2},
        {90, 60.30973970626, 0},
        {-90, 60.30973970626, 0},
        {90.5, 60.00737452742, 42.57388503989},
        {-91, 60.00737452742, 42.57388503989},
        {95, 60.00737452742, 42.57388503989},
        {1e300, 60.00737452742, 42.57388503989},
        {-std::numeric_limits<double>::infinity(), 60.00737452742, 42.57388503989},
        {kNaN, 60.00737452742, 42.57388503989},
    };
    for (const Scale& row : rows) {
        const LocalFrame frame({row.latitude, -100});
        EXPECT_NEAR(frame.metresPerDegreeLat() / 1852, row.latitudeMiles, 1e-10) << row.latitude;
        if (row.longitudeMiles >= 0) {
            EXPECT_NEAR(frame.metresPerDegreeLon() / 1852, row.longitudeMiles, 1e-10)
                << row.latitude;
        }
    }
    EXPECT_EQ(LocalFrame({90, 0}).metresPerDegreeLon(), 0);
    EXPECT_NEAR(LocalFrame({0, 0}).metresPerDegreeLon(), 111319.49, 0.005);
}

/// The lengths of a degree at each whole degree of latitude, in nautical miles.
struct DegreeLengths {
    double latitude;
    double longitude;
};
constexpr DegreeLengths kDegreeLengths[] = {
    {59.70533251357, 60.10771641105},
    {59.70551635746, 60.09862298582},
    {59.7060676663, 60.07134531323},
    {59.70698577172, 60.02589120234},
    {59.70826956048, 59.96227366706},
    {59.70991747625, 59.88051092447},
    {59.71192752103, 59.78062639238},
    {59.71429725772, 59.66264868618},
    {59.71702381314, 59.52661161504},
    {59.72010388113, 59.37255417729},
    {59.72353372636, 59.20052055516},
    {59.72730919005, 59.01056010866},
    {59.7314256934, 58.8027273688},
    {59.73587824401, 58.57708202991},
    {59.74066144114, 58.33368894123},
    {59.74576948292, 58.07261809759},
    {59.75119617293, 57.79394462933},
    {59.7569349276, 57.49774879121},
    {59.76297878434, 57.18411595053},
    {59.7693204091, 56.85313657418},
    {59.7759521067, 56.50490621483},
    {59.78286582847, 56.13952549604},
    {59.79005318274, 55.75710009638},
    {59.79750544389, 55.3577407324},
    {59.80521356551, 54.94156314061},
    {59.81316818811, 54.5086880582},
    {59.82135965216, 54.05924120264},
    {59.82977800786, 53.59335325006},
    {59.83841303105, 53.11115981236},
    {59.84725423101, 52.61280141303},
    {59.85629086574, 52.09842346161},
    {59.86551195396, 51.56817622685},
    {59.87490628873, 51.02221480839},
    {59.88446245004, 50.46069910701},
    {59.89416882132, 49.88379379341},
    {59.90401359894, 49.29166827547},
    {59.91398481181, 48.68449666391},
    {59.92407033123, 48.06245773637},
    {59.93425788786, 47.42573489988},
    {59.94453508618, 46.77451615165},
    {59.95488942042, 46.10899403813},
    {59.96530828608, 45.42936561235},
    {59.97577900246, 44.73583238952},
    {59.98628881898, 44.02860030079},
    {59.99682493821, 43.30787964524},
    {60.00737452742, 42.57388503994},
    {60.01792473455, 41.82683536824},
    {60.02846270555, 41.06695372606},
    {60.03897559875, 40.29446736631},
    {60.04945060033, 39.50960764143},
    {60.05987494128, 38.71260994385},
    {60.07023591169, 37.90371364459},
    {60.0805208763, 37.08316202986},
    {60.09071729085, 36.25120223566},
    {60.10081271658, 35.4080851804},
    {60.11079483655, 34.55406549553},
    {60.12065146935, 33.68940145417},
    {60.13037058387, 32.81435489776},
    {60.13994031668, 31.92919116075},
    {60.14934898388, 31.03417899327},
    {60.1585850958, 30.12959048188},
    {60.16763737197, 29.21570096835},
    {60.17649475607, 28.29278896653},
    {60.18514642783, 27.36113607733},
    {60.19358181365, 26.42102690178},
    {60.20179060604, 25.47274895226},
    {60.20976277126, 24.51659256195},
    {60.21748856573, 23.55285079242},
    {60.22495854387, 22.58181933953},
    {60.23216357112, 21.60379643763},
    {60.23909483607, 20.61908276206},
    {60.24574386178, 19.62798133006},
    {60.25210251645, 18.63079740011},
    {60.25816302068, 17.62783836977},
    {60.26391796059, 16.61941367209},
    {60.269360293, 15.60583467052},
    {60.27448335861, 14.58741455266},
    {60.27928088748, 13.56446822255},
    {60.28374700926, 12.53731219194},
    {60.28787625722, 11.50626447025},
    {60.29166357516, 10.47164445364},
    {60.29510432761, 9.433772812927},
    {60.29819430131, 8.392971380739},
    {60.30092971467, 7.349563037706},
    {60.30330721835, 6.303871597972},
    {60.30532389961, 5.256221694002},
    {60.30697728996, 4.206938660792},
    {60.30826536392, 3.156348419572},
    {60.30918654561, 2.104777361075},
    {60.30973970626, 1.052552228464},
    {60.30973970626, 0},
};

TEST(LocalFrameTest, EachWholeDegreeHasItsLengths) {
    ASSERT_EQ(std::size(kDegreeLengths), 91U);
    int degree = 0;
    for (const DegreeLengths& row : kDegreeLengths) {
        for (const double latitude : {degree, -degree}) {
            const LocalFrame frame({latitude, 0});
            EXPECT_NEAR(frame.metresPerDegreeLat() / 1852, row.latitude, 1e-12) << latitude;
            EXPECT_NEAR(frame.metresPerDegreeLon() / 1852, row.longitude, 2e-11) << latitude;
        }
        ++degree;
    }
}

TEST(LocalFrameTest, BetweenWholeDegreesTheScaleIsOnTheStraightLine) {
    for (int degree = 0; degree < 90; ++degree) {
        const double below = LocalFrame({static_cast<double>(degree), 0}).metresPerDegreeLon();
        const double above = LocalFrame({degree + 1.0, 0}).metresPerDegreeLon();
        const double between = LocalFrame({degree + 0.25, 0}).metresPerDegreeLon();
        EXPECT_LT(above, below) << degree;
        EXPECT_NEAR(between, 0.75 * below + 0.25 * above, 1e-9) << degree;
    }
}

TEST(LocalFrameTest, GoesToMetresAndBack) {
    const LocalFrame frame({37.0, -122.0});
    EXPECT_EQ(frame.toMetres({37.0, -122.0}), (LocalOffset{0, 0}));
    const LocalOffset way = frame.toMetres({38.5, -123.0});
    EXPECT_NEAR(way.eastMetres, -frame.metresPerDegreeLon(), 1e-6);
    EXPECT_NEAR(way.northMetres, 1.5 * frame.metresPerDegreeLat(), 1e-6);
    EXPECT_NEAR(
        frame.distanceMetres({38.5, -123.0}), std::hypot(way.eastMetres, way.northMetres), 1e-6
    );
    const GeoPosition back = frame.fromMetres(way);
    EXPECT_NEAR(back.latitude, 38.5, 1e-12);
    EXPECT_NEAR(back.longitude, -123.0, 1e-12);
}

// A single-precision number tells places at this longitude a metre apart, at best.
TEST(LocalFrameTest, TellsPlacesAMillimetreApart) {
    const LocalFrame frame({37.0875, -121.8302});
    const double north = 0.001 / frame.metresPerDegreeLat();
    const double east = 0.001 / frame.metresPerDegreeLon();
    EXPECT_NEAR(frame.distanceMetres({37.0875 + north, -121.8302}), 0.001, 1e-8);
    EXPECT_NEAR(frame.distanceMetres({37.0875, -121.8302 + east}), 0.001, 1e-8);
    const GeoPosition back = frame.fromMetres({0.001, 0.001});
    EXPECT_NEAR(back.latitude - 37.0875, north, 1e-13);
    EXPECT_NEAR(back.longitude + 121.8302, east, 1e-13);
}

TEST(LocalFrameTest, DoesNotWrapAtTheDateLine) {
    const LocalFrame frame({52.0, 179.5});
    const LocalOffset way = frame.toMetres({52.0, -179.5});
    EXPECT_NEAR(way.eastMetres, -359 * frame.metresPerDegreeLon(), 1e-3);
}

TEST(LocalFrameTest, AtThePolesEastLeadsNowhere) {
    const LocalFrame pole({90, 10});
    EXPECT_EQ(pole.toMetres({90, 50}).eastMetres, 0);
    EXPECT_TRUE(std::isinf(pole.fromMetres({1, 0}).longitude));
    EXPECT_TRUE(std::isnan(pole.fromMetres({0, 0}).longitude));
    EXPECT_EQ(pole.fromMetres({0, 0}).latitude, 90);
}

TEST(LocalFrameTest, ABearingTurnsClockwiseFromNorth) {
    struct Row {
        float bearing;
        float length;
        double east;
        double north;
    };
    const Row rows[] = {
        {0, 1000, 0, 1000},       {90, 1000, 1000, 0},   {180, 1000, 0, -1000},
        {270, 1000, -1000, 0},    {360, 1000, 0, 1000},  {-90, 1000, -1000, 0},
        {45, 1000, 707.1, 707.1}, {30, -10, -5, -8.660}, {123, 0, 0, 0},
    };
    for (const Row& row : rows) {
        const LocalOffset way = LocalFrame::alongBearing(row.bearing, row.length);
        EXPECT_NEAR(way.eastMetres, row.east, 0.02) << row.bearing;
        EXPECT_NEAR(way.northMetres, row.north, 0.02) << row.bearing;
        // Every result is a single-precision number.
        EXPECT_EQ(way.eastMetres, static_cast<float>(way.eastMetres)) << row.bearing;
        EXPECT_EQ(way.northMetres, static_cast<float>(way.northMetres)) << row.bearing;
    }
}

// Far round the circle a single-precision angle is off by millionths, and the end of a long way by
// metres.
TEST(LocalFrameTest, ABearingIsReckonedInSinglePrecision) {
    const float bearing = 100'001;
    const float length = 1'000'000;
    const double radians = static_cast<double>(bearing * 0.017453292F);
    const LocalOffset way = LocalFrame::alongBearing(bearing, length);
    EXPECT_NEAR(way.eastMetres, std::sin(radians) * length, 0.5);
    EXPECT_NEAR(way.northMetres, std::cos(radians) * length, 0.5);
    const double exact = bearing * 0.017453292519943295;
    EXPECT_GT(std::fabs(way.eastMetres - std::sin(exact) * length), 2);
}

} // namespace
} // namespace raincast
