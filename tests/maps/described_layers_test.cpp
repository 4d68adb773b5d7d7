// SPDX-License-Identifier: MIT
// Handhelds keep the layers of the described size for good: with the same data they are the same,
// pixel by pixel, whatever becomes of the sharp ones. What is compared are sums over the pixels, as
// they are before a JPEG takes some of them away.
#include "city_maker.h"
#include "image/image_file.h"
#include "maps/layer_painter.h"
#include "maps/map_data.h"
#include "maps/topo_layer.h"
#include "needs_gui.h"
#include "netcdf_maker.h"
#include "shore_maker.h"
#include "support/files.h"

#include <QCryptographicHash>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

namespace raincast {
namespace {

class DescribedLayersTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { needGui(); }

    DescribedLayersTest() {
        m_files.shores = file("shores.nc");
        makeBinnedFile(
            m_files.shores, false, {{1, false, {{32768, 0}, {40000, 30000}, {20000, 65535}}}},
            {1, 0, 0, 1}
        );
        m_files.rivers = file("rivers.nc");
        makeBinnedFile(
            m_files.rivers, true,
            {{1, false, {{0, 0}, {20000, 50000}, {65535, 65535}}},
             {5, false, {{0, 60000}, {65535, 100}}}}
        );
        m_files.roads = file("roads.json");
        writeFile(
            m_files.roads,
            R"({"type":"LineString","coordinates":[[-79,37.5],[-77.3,38.7],[-76,38.5]]})"
        );
        m_files.borders = file("borders.json");
        writeFile(
            m_files.borders,
            R"({"objects":{"states":{"arcs":[0]}},
                "arcs":[[[-78,39],[-77,39.2]],[[-78.5,38],[-77,38],[-76.5,37]]]})"
        );
        m_files.cities = file("cities.pbf");
        QByteArray cities;
        const char* const names[] = {"Here", "There", "Elsewhere", "Yonder", "Beside", "Far Off"};
        for (int i = 0; i < 60; ++i) {
            cities += makeCity(
                names[i % 6], "PPL", 1000 + i * 77 % 5000, -7'900'000 + i * 37'000 % 350'000,
                3'700'000 + i * 53'000 % 330'000
            );
        }
        writeFile(m_files.cities, cities);
        makeRelief();
    }
    void makeRelief() {
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
                heights.push_back(static_cast<float>((i * 31 + j * 17) % 97 * 20 - 200));
            }
        }
        const NetcdfMaker maker(m_files.relief);
        maker.doubles("ETOPO05_X", longitudes);
        maker.doubles("ETOPO05_Y", latitudes);
        maker.floats("ROSE", 120, heights);
    }
    [[nodiscard]] QString file(const char* name) const { return m_folder.filePath(name); }

    [[nodiscard]] std::string sumOf(LayerKind layer, Range range) const {
        const ImageGeometry geometry(38.5, -77.5, range);
        const MapData data(m_files);
        const QImage picture =
            layer == LayerKind::topo
                ? paintTopo(data, geometry)
                : decodeImage(paintLayer(layer, data, geometry, range).value(), 10'000'000);
        EXPECT_EQ(picture.size(), QSize(600, 550)) << nameOf(layer);
        const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
        QCryptographicHash sum(QCryptographicHash::Sha1);
        sum.addData(QByteArrayView(pixels.constBits(), pixels.sizeInBytes()));
        return sum.result().toHex().left(12).toStdString();
    }

    QTemporaryDir m_folder;
    MapDataFiles m_files;
};

TEST_F(DescribedLayersTest, AreAsEver) {
    const struct {
        LayerKind layer;
        Range range;
        const char* sum;
    } rows[] = {
        {LayerKind::topo, Range::shortRange, "5de0049285f9"},
        {LayerKind::topo, Range::longRange, "42b5738843d7"},
        {LayerKind::rivers, Range::shortRange, "f52414fdf6f5"},
        {LayerKind::rivers, Range::longRange, "702baf3aa3f7"},
        {LayerKind::highways, Range::shortRange, "aeeee4da3679"},
        {LayerKind::highways, Range::longRange, "8fb5260b643d"},
        {LayerKind::counties, Range::shortRange, "583187bc60c0"},
        {LayerKind::counties, Range::longRange, "289e6a9c4de9"},
        {LayerKind::cities, Range::shortRange, "7424ac2149d0"},
        {LayerKind::cities, Range::longRange, "c587d010d56a"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(sumOf(row.layer, row.range), row.sum)
            << nameOf(row.layer) << ' ' << wordOf(row.range);
    }
}

} // namespace
} // namespace raincast
