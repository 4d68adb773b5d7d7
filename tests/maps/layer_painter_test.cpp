// SPDX-License-Identifier: MIT
#include "city_maker.h"
#include "maps/layer_painter.h"
#include "maps/map_data.h"
#include "needs_gui.h"
#include "netcdf_maker.h"
#include "radar/image/gif_reader.h"
#include "radar/image/jpeg_check.h"
#include "shore_maker.h"
#include "support/files.h"

#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const ImageGeometry kGeometry(38.5, -77.5, Range::shortRange);

class LayerPainterTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { needGui(); }

    [[nodiscard]] QImage paint(LayerKind layer) const {
        const QByteArray bytes =
            paintLayer(layer, MapData(m_files), kGeometry, Range::shortRange).value();
        return layer == LayerKind::topo ? QImage::fromData(bytes, "JPG")
                                        : readGif(bytes, 1'000'000);
    }
    static QColor at(const QImage& picture, double latitude, double longitude) {
        return picture.pixelColor(
            qRound(kGeometry.columnOfLongitude(longitude)),
            qRound(kGeometry.rowOfLatitude(latitude))
        );
    }
    /// Pixels that are not ground.
    static int drawn(const QImage& picture) {
        int count = 0;
        for (int row = 0; row < picture.height(); ++row) {
            for (int column = 0; column < picture.width(); ++column) {
                count += picture.pixel(column, row) != 0xFFFF'FFFF ? 1 : 0;
            }
        }
        return count;
    }
    [[nodiscard]] QString file(const char* name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    MapDataFiles m_files;
};

TEST_F(LayerPainterTest, WithoutDataLinesAreMissingAndTheGroundIsPlain) {
    for (const LayerKind layer : kAllLayers) {
        const QImage picture = paint(layer);
        ASSERT_EQ(picture.size(), QSize(600, 550)) << nameOf(layer);
        if (layer != LayerKind::topo) {
            EXPECT_EQ(drawn(picture), 0) << nameOf(layer);
        }
    }
    const QImage topo = paint(LayerKind::topo);
    EXPECT_EQ(topo.pixel(10, 10), topo.pixel(500, 400));
    EXPECT_TRUE(isSoundJpeg(
        paintLayer(LayerKind::topo, MapData(m_files), kGeometry, Range::shortRange).value()
    ));
}

TEST_F(LayerPainterTest, WaterIsBlueAndLandIsNot) {
    m_files.shores = file("shores.nc");
    makeBinnedFile(m_files.shores, false, {{1, false, {{32768, 0}, {32768, 65535}}}}, {1, 0, 0, 1});
    const QImage topo = paint(LayerKind::topo);
    const QColor land = at(topo, 38.5, -77.8);
    const QColor water = at(topo, 38.5, -77.2);
    EXPECT_GT(land.red(), land.blue());
    EXPECT_GT(water.blue(), water.red());
}

TEST_F(LayerPainterTest, SlopesToTheNorthWestAreLit) {
    m_files.relief = file("relief.nc");
    std::vector<double> longitudes;
    std::vector<double> latitudes;
    std::vector<float> heights;
    for (int i = 0; i < 40; ++i) {
        longitudes.push_back(277.5 + i * 0.25);
        latitudes.push_back(33.5 + i * 0.25);
    }
    for (int i = 0; i < 40; ++i) {
        for (int j = 0; j < 40; ++j) {
            // A ridge along the meridian in the middle.
            heights.push_back(static_cast<float>(8000 - 400 * std::abs(j - 20)));
        }
    }
    {
        const NetcdfMaker maker(m_files.relief);
        maker.doubles("ETOPO05_X", longitudes);
        maker.doubles("ETOPO05_Y", latitudes);
        maker.floats("ROSE", 40, heights);
    }
    const QImage topo = paint(LayerKind::topo);
    EXPECT_GT(at(topo, 38.5, -78.5).lightness(), at(topo, 38.5, -76.5).lightness() + 5);
}

TEST_F(LayerPainterTest, LinesAreWhereTheyBelong) {
    m_files.roads = file("roads.json");
    writeFile(m_files.roads, R"({"type":"LineString","coordinates":[[-78,38.5],[-77,38.5]]})");
    m_files.rivers = file("rivers.nc");
    makeBinnedFile(m_files.rivers, true, {{1, false, {{0, 0}, {65535, 65535}}}});
    m_files.borders = file("borders.json");
    writeFile(
        m_files.borders,
        R"({"objects":{"states":{"arcs":[0]}},"arcs":[[[-78,39],[-77,39]],[[-78,38],[-77,38]]]})"
    );
    EXPECT_NE(at(paint(LayerKind::highways), 38.5, -77.5), QColor(Qt::white));
    EXPECT_EQ(at(paint(LayerKind::highways), 38.6, -77.5), QColor(Qt::white));
    EXPECT_NE(at(paint(LayerKind::rivers), 38.25, -77.75), QColor(Qt::white));
    const QImage borders = paint(LayerKind::counties);
    EXPECT_NE(at(borders, 39, -77.5), QColor(Qt::white));
    EXPECT_NE(at(borders, 38, -77.5), QColor(Qt::white));
    EXPECT_NE(at(borders, 39, -77.5), at(borders, 38, -77.5));
}

TEST_F(LayerPainterTest, CitiesAreDarkOnALightRim) {
    m_files.cities = file("cities.pbf");
    writeFile(m_files.cities, makeCity("Town", "PPL", 9, -7'750'000, 3'850'000));
    const QImage cities = paint(LayerKind::cities);
    EXPECT_GT(drawn(cities), 100);
    int darkest = 255;
    int lightest = 0;
    for (int row = 0; row < cities.height(); ++row) {
        for (int column = 0; column < cities.width(); ++column) {
            if (cities.pixel(column, row) != 0xFFFF'FFFF) {
                darkest = std::min(darkest, qGray(cities.pixel(column, row)));
                lightest = std::max(lightest, qGray(cities.pixel(column, row)));
            }
        }
    }
    EXPECT_LT(darkest, 60);
    EXPECT_GT(lightest, 200);
}

} // namespace
} // namespace raincast
