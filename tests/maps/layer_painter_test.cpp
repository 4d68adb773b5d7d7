// SPDX-License-Identifier: MIT
#include "city_maker.h"
#include "image/image_file.h"
#include "image/jpeg_check.h"
#include "maps/layer_painter.h"
#include "maps/map_data.h"
#include "maps/topo_layer.h"
#include "needs_gui.h"
#include "netcdf_maker.h"
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

    [[nodiscard]] QImage paint(LayerKind layer, const ImageGeometry& geometry = kGeometry) const {
        const QByteArray bytes =
            paintLayer(layer, MapData(m_files), geometry, Range::shortRange).value();
        return layer == LayerKind::topo ? QImage::fromData(bytes, "JPG")
                                        : decodeImage(bytes, 10'000'000);
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

class SharpLayersTest : public LayerPainterTest, public ::testing::WithParamInterface<int> {
protected:
    const ImageGeometry m_sharp{38.5, -77.5, Range::shortRange, GetParam()};

    /// How many pixels of a column are drawn.
    static int drawnIn(const QImage& picture, int column) {
        int count = 0;
        for (int row = 0; row < picture.height(); ++row) {
            count += picture.pixel(column, row) != 0xFFFF'FFFF ? 1 : 0;
        }
        return count;
    }
};

INSTANTIATE_TEST_SUITE_P(Details, SharpLayersTest, ::testing::Values(2, 4));

TEST_P(SharpLayersTest, HaveTheirSize) {
    for (const LayerKind layer : kAllLayers) {
        EXPECT_EQ(paint(layer, m_sharp).size(), QSize(600, 550) * GetParam()) << nameOf(layer);
    }
}

TEST_P(SharpLayersTest, LinesAreAsThinAndWhereTheyBelong) {
    m_files.borders = file("borders.json");
    writeFile(
        m_files.borders,
        R"({"objects":{"states":{"arcs":[0]}},"arcs":[[[-78,39],[-77,39]],[[-78,38],[-77,38]]]})"
    );
    m_files.roads = file("roads.json");
    writeFile(m_files.roads, R"({"type":"LineString","coordinates":[[-78,38.5],[-77,38.5]]})");
    m_files.rivers = file("rivers.nc");
    makeBinnedFile(m_files.rivers, true, {{1, false, {{0, 6554}, {65535, 6554}}}}); // at 38.1
    const int middle = m_sharp.width() / 2;
    const struct {
        LayerKind layer;
        double latitude;
        int pixels; ///< of all lines of the layer
    } rows[] = {
        {LayerKind::counties, 39, 4},
        {LayerKind::counties, 38, 4},
        {LayerKind::highways, 38.5, 2},
        {LayerKind::rivers, 38.1, 1},
    };
    for (const auto& [layer, latitude, pixels] : rows) {
        const QImage picture = paint(layer, m_sharp);
        EXPECT_EQ(drawnIn(picture, middle), pixels) << nameOf(layer);
        EXPECT_EQ(drawnIn(paint(layer), 300), pixels) << "as in the described one";
        int nearest = m_sharp.height();
        for (int row = 0; row < picture.height(); ++row) {
            if (picture.pixel(middle, row) != 0xFFFF'FFFF) {
                const double away = std::abs(row - m_sharp.rowOfLatitude(latitude));
                nearest = std::min(nearest, static_cast<int>(away));
            }
        }
        EXPECT_EQ(nearest, 0) << nameOf(layer);
    }
}

// Each column's shore against the line that the data draw there.
TEST_P(SharpLayersTest, ShoresAreAsFineAsTheirData) {
    m_files.shores = file("shores.nc");
    std::vector<std::pair<int, int>> shore;
    for (int i = 0; i <= 400; ++i) {
        // Teeth of a tenth of a degree, half of that high.
        shore.emplace_back(i * 65535 / 400, 30000 + (i % 40 < 20 ? i % 20 : 20 - i % 20) * 160);
    }
    makeBinnedFile(m_files.shores, false, {{1, false, shore}}, {1, 1, 0, 0});
    const QImage topo = paintTopo(MapData(m_files), m_sharp);
    int compared = 0;
    int farOff = 0;
    for (std::size_t i = 1; i < shore.size(); ++i) {
        const double longitude = -78 + shore[i].first / 65535.0;
        const double column = m_sharp.columnOfLongitude(longitude);
        const double wanted = m_sharp.rowOfLatitude(38 + shore[i].second / 65535.0);
        const int nearest = qRound(column);
        if (std::abs(column - nearest) > .2) {
            continue; // between two columns
        }
        int row = static_cast<int>(wanted) - 20;
        const auto isWater = [&](int at) {
            const QColor colour(topo.pixel(nearest, at));
            return colour.blue() > colour.red();
        };
        while (row < wanted + 20 && isWater(row)) {
            ++row;
        }
        ++compared;
        farOff += std::abs(row - wanted) > 1.5 ? 1 : 0;
    }
    EXPECT_GT(compared, 100);
    EXPECT_EQ(farOff, 0) << "of " << compared;
}

TEST_P(SharpLayersTest, SlopesAreShadedAsInTheDescribedOne) {
    m_files.relief = file("relief.nc");
    std::vector<double> longitudes;
    std::vector<double> latitudes;
    std::vector<float> heights;
    for (int i = 0; i < 120; ++i) {
        longitudes.push_back(277.5 + i / 12.0);
        latitudes.push_back(33.5 + i / 12.0);
    }
    for (int i = 0; i < 120; ++i) {
        for (int j = 0; j < 120; ++j) {
            heights.push_back(static_cast<float>(800 + 500 * std::sin(i * .3) * std::cos(j * .4)));
        }
    }
    {
        const NetcdfMaker maker(m_files.relief);
        maker.doubles("ETOPO05_X", longitudes);
        maker.doubles("ETOPO05_Y", latitudes);
        maker.floats("ROSE", 120, heights);
    }
    const QImage described = paintTopo(MapData(m_files), kGeometry);
    const QImage sharp = paintTopo(MapData(m_files), m_sharp);
    const int detail = GetParam();
    for (int row = 10; row < 540; row += 7) {
        for (int column = 10; column < 590; column += 7) {
            // The pixel's middle lies between four of the larger picture.
            const int x = column * detail + detail / 2;
            const int y = row * detail + detail / 2;
            EXPECT_NEAR(qGray(described.pixel(column, row)), qGray(sharp.pixel(x, y)), 3)
                << column << ", " << row;
        }
    }
}

TEST_F(LayerPainterTest, SmallRiversComeWithDetail) {
    m_files.rivers = file("rivers.nc");
    std::vector<SegmentToMake> rivers;
    for (int rank = 0; rank <= 10; ++rank) {
        rivers.push_back({rank, false, {{32000, rank * 6000}, {33000, rank * 6000}}});
    }
    makeBinnedFile(m_files.rivers, true, rivers);
    const auto ranksIn = [&](Range range, int detail) {
        const ImageGeometry geometry(38.5, -77.5, range, detail);
        const QImage picture = decodeImage(
            paintLayer(LayerKind::rivers, MapData(m_files), geometry, range).value(), 10'000'000
        );
        int found = 0;
        for (int rank = 0; rank <= 10; ++rank) {
            const int column = qRound(geometry.columnOfLongitude(-77.504));
            const int row = qRound(geometry.rowOfLatitude(38 + rank * 6000 / 65535.0));
            found += picture.pixel(column, row) != 0xFFFF'FFFF ? 1 : 0;
        }
        return found;
    };
    EXPECT_EQ(ranksIn(Range::longRange, 1), 3);
    EXPECT_EQ(ranksIn(Range::longRange, 2), 5);
    EXPECT_EQ(ranksIn(Range::shortRange, 1), 5);
    EXPECT_EQ(ranksIn(Range::shortRange, 2), 5);
    EXPECT_EQ(ranksIn(Range::shortRange, 4), 8);
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
