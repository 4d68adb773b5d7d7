// SPDX-License-Identifier: MIT
#include "maps/topo_layer.h"

#include "maps/layer_canvas.h"
#include "maps/map_data.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace raincast {

namespace {

constexpr double kMetresPerDegree = 111'195;
constexpr double kDegree = 3.14159265358979323846 / 180;

// Slopes look this much steeper than they are: over hundreds of kilometres true ones are flat.
constexpr double kExaggeration = 18;
constexpr double kContrast = 0.23;

struct Tint {
    double metres;
    double red;
    double green;
    double blue;
};

constexpr std::array kLand = {
    Tint{0, 186, 193, 172},    Tint{150, 193, 197, 174},  Tint{500, 205, 201, 174},
    Tint{1000, 202, 192, 166}, Tint{2000, 190, 177, 157}, Tint{3000, 184, 175, 165},
    Tint{4500, 206, 203, 200},
};
constexpr std::array kWater = {
    Tint{-6000, 118, 143, 164},
    Tint{-2000, 134, 160, 179},
    Tint{-150, 152, 177, 192},
    Tint{0, 162, 186, 198},
};

template<std::size_t N>
Tint tintOf(const std::array<Tint, N>& scale, double metres) {
    const double m = std::clamp(metres, scale.front().metres, scale.back().metres);
    const auto above = std::find_if(scale.begin() + 1, scale.end() - 1, [m](const Tint& tint) {
        return m <= tint.metres;
    });
    const Tint& a = *(above - 1);
    const Tint& b = *above;
    const double t = (m - a.metres) / (b.metres - a.metres);
    return {
        m, a.red + t * (b.red - a.red), a.green + t * (b.green - a.green),
        a.blue + t * (b.blue - a.blue)};
}

/// Where there is land, row after row from the top, a band at a time.
class LandRows {
public:
    LandRows(const std::vector<ShoreBin>& bins, const LayerPlace& place)
        : m_mask(
              place.geometry().width(), rowsOfBand(place.geometry()), QImage::Format_Grayscale8
          ) {
        for (const ShoreBin& bin : bins) {
            QPainterPath& land = m_land.emplace_back();
            for (const auto& ring : landRings(bin)) {
                land.addPolygon(place.at(ring));
                land.closeSubpath();
            }
        }
    }

    /// For want of memory.
    [[nodiscard]] bool isNull() const { return m_mask.isNull(); }
    /// Not 0 where there is land. Rows are asked for one after the other.
    const uchar* at(int row) {
        const int inBand = row % m_mask.height();
        if (inBand == 0) {
            paint(row);
        }
        return m_mask.constScanLine(inBand);
    }

private:
    void paint(int top) {
        m_mask.fill(Qt::black);
        QPainter painter(&m_mask);
        painter.translate(0, -top);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        for (const QPainterPath& land : m_land) {
            painter.drawPath(land);
        }
    }

    QImage m_mask;
    std::vector<QPainterPath> m_land;
};

/// The heights at the centres of a row of pixels and of those around it, row after row from the
/// top: those of a whole large picture would take more memory than the picture.
class HeightRows {
public:
    HeightRows(const ReliefGrid& relief, const ImageGeometry& geometry)
        : m_geometry(geometry), m_profiles(relief, longitudesOf(geometry)) {
        read(-1, m_above);
        read(0, m_here);
        read(1, m_below);
    }

    /// Goes on to the next row.
    void next() {
        m_above.swap(m_here);
        m_here.swap(m_below);
        ++m_row;
        read(m_row + 1, m_below);
    }

    [[nodiscard]] double at(int column) const { return m_here[index(column)]; }

    /// How much lighter (above 1) or darker a pixel's slope is than level ground.
    [[nodiscard]] double light(int column, double metresAcross, double metresDown) const {
        const double east =
            (land(m_here, column + 1) - land(m_here, column - 1)) / (2 * metresAcross);
        const double south = (land(m_below, column) - land(m_above, column)) / (2 * metresDown);
        // The light comes from the north-west: slopes that rise to the south-east face it.
        const double facing = (east + south) * kExaggeration / std::sqrt(2.0);
        return 1 + kContrast * facing / std::sqrt(1 + facing * facing);
    }

private:
    using Row = std::vector<double>;

    /// From one pixel beyond the left edge to one beyond the right.
    static std::size_t index(int column) {
        const int place = column + 1;
        return static_cast<std::size_t>(place);
    }

    static Row longitudesOf(const ImageGeometry& geometry) {
        Row longitudes;
        for (int column = -1; column <= geometry.width(); ++column) {
            longitudes.push_back(geometry.longitudeOfColumn(column));
        }
        return longitudes;
    }

    static double land(const Row& row, int column) { return std::max(0.0, row[index(column)]); }

    void read(int row, Row& heights) { m_profiles.at(m_geometry.latitudeOfRow(row), heights); }

    const ImageGeometry& m_geometry;
    ReliefProfiles m_profiles;
    int m_row = 0;
    Row m_above;
    Row m_here;
    Row m_below;
};

/// Writes a pixel, of which nothing is below zero; where the next one is.
uchar* put(uchar* pixel, const Tint& tint, double light) {
    for (const double value : {tint.red, tint.green, tint.blue}) {
        *pixel++ = static_cast<uchar>(std::min(static_cast<int>(value * light + .5), 250));
    }
    return pixel;
}

} // namespace

QImage paintTopo(const MapData& data, const ImageGeometry& geometry) {
    const LayerPlace place(geometry);
    const auto shores = data.shores(place.box());
    LandRows lands(shores, place);
    const ReliefGrid relief = data.relief(place.box());
    HeightRows heights(relief, geometry);
    // Where no shores are known, ground below sea level is sea. Without any data all is land.
    const bool knowsShores = !shores.empty();
    const double down = geometry.degreesPerPixel() * kMetresPerDegree;
    QImage picture(geometry.width(), geometry.height(), QImage::Format_RGB888);
    if (picture.isNull() || lands.isNull()) {
        return {}; // no memory
    }
    for (int row = 0; row < geometry.height(); ++row, heights.next()) {
        const double across = down * std::cos(geometry.latitudeOfRow(row) * kDegree);
        uchar* pixel = picture.scanLine(row);
        const uchar* const land = lands.at(row);
        for (int column = 0; column < geometry.width(); ++column) {
            const double height = heights.at(column);
            const bool isLand = knowsShores ? land[column] != 0 : height >= 0;
            pixel = isLand ? put(pixel, tintOf(kLand, height), heights.light(column, across, down))
                           : put(pixel, tintOf(kWater, height), 1);
        }
    }
    return picture;
}

} // namespace raincast
