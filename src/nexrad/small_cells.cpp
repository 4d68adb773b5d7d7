// SPDX-License-Identifier: MIT
#include "nexrad/small_cells.h"

#include "nexrad/scan_placement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace raincast {

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180;
constexpr double kKmOfDegree = 111.2;
constexpr int kCellsOfBlock = 32;
constexpr double kLongestBlockKm = 16; // lines bend by less than three metres in it
constexpr int kTenthsOfCircle = 3600;
constexpr int kWidestTenths = 20; // the same across; no radar has wider radials
constexpr std::size_t kLevels = 16;

/// How strong the cells of each level are; below zero without an echo.
std::array<float, kLevels> strengths(const PolarScan& scan) {
    std::array<float, kLevels> result{};
    result[0] = -1;
    for (std::size_t cell = 0; cell < scan.levels.size(); ++cell) {
        const std::size_t level = scan.levels[cell] % kLevels;
        const float value = std::abs(scan.values[cell]);
        if (level > 0 && std::isfinite(value)) {
            result[level] = std::max(result[level], value);
        }
    }
    return result;
}

struct PixelPlace {
    double column;
    double row;
};

PixelPlace between(const PixelPlace& from, const PixelPlace& to, double part) {
    return {from.column + part * (to.column - from.column), from.row + part * (to.row - from.row)};
}

class SmallCells {
public:
    SmallCells(const PolarScan& scan, const ImageGeometry& image, IndexedPicture& picture)
        : m_scan(scan), m_image(image), m_picture(picture), m_strengths(strengths(scan)),
          m_sphere(scan.latitude, scan.longitude),
          // The shorter side: degrees of longitude are shorter than those of latitude.
          m_pixelKm(image.degreesPerPixel() * kKmOfDegree * std::cos(scan.latitude * kDegree)),
          m_blockCells(std::clamp(static_cast<int>(kLongestBlockKm / scan.cellKm), 1, kCellsOfBlock)
          ) {
        const double cornerKm =
            std::hypot(image.width(), image.height()) * image.degreesPerPixel() * kKmOfDegree / 2;
        const double reach = std::ceil((cornerKm - scan.firstKm) / scan.cellKm);
        m_end = static_cast<int>(std::clamp<double>(reach, 0, scan.columns));
    }

    void showAll() {
        for (int row = 0; row < m_scan.rows; ++row) {
            const RadialSpan& span = m_scan.radials[static_cast<std::size_t>(row)];
            if (span.widthTenths <= kWidestTenths) {
                showRadial(row, span);
            }
        }
    }

private:
    [[nodiscard]] PixelPlace placeOf(double azimuthDegrees, double km) const {
        const SpherePlace place = m_sphere.placeAt(azimuthDegrees, km);
        return {m_image.columnOfLongitude(place.longitude), m_image.rowOfLatitude(place.latitude)};
    }
    [[nodiscard]] double kmOf(double column) const {
        return m_scan.firstKm + column * m_scan.cellKm;
    }
    [[nodiscard]] bool hasEcho(int row, int first, int end) const {
        for (int column = first; column < end; ++column) {
            if (m_scan.levels[m_scan.cell(row, column)] != 0) {
                return true;
            }
        }
        return false;
    }

    /// Where an azimuth goes through the ends of blocks.
    struct Edge {
        int tenths = -1;
        std::vector<PixelPlace> places;
    };
    void place(Edge& edge, int tenths) const {
        edge.tenths = tenths;
        edge.places.clear();
        for (int column = 0; column < m_end + m_blockCells; column += m_blockCells) {
            edge.places.push_back(placeOf(tenths / 10.0, kmOf(std::min(column, m_end))));
        }
    }

    void showRadial(int row, const RadialSpan& span) {
        std::swap(m_left, m_right); // radials mostly follow each other
        if (m_left.tenths % kTenthsOfCircle != span.startTenths) {
            place(m_left, span.startTenths);
        }
        place(m_right, span.startTenths + span.widthTenths);
        const double width = span.widthTenths / 10.0 * kDegree;
        for (std::size_t block = 0; block + 1 < m_right.places.size(); ++block) {
            showBlock(row, width, block);
        }
    }

    void showBlock(int row, double width, std::size_t block) {
        const int first = static_cast<int>(block) * m_blockCells;
        const int end = std::min(first + m_blockCells, m_end);
        const bool areSmall = m_scan.cellKm < m_pixelKm || kmOf(first + .5) * width < m_pixelKm;
        if (!areSmall || kmOf(first) < 0 || !hasEcho(row, first, end)) {
            return;
        }
        // An odd number, so that one goes through the cells' middles.
        const int lines = static_cast<int>(std::ceil(kmOf(end) * width / m_pixelKm)) | 1;
        for (int line = 0; line < lines; ++line) {
            const double part = (line + .5) / lines;
            showLine(
                row, first, end, between(m_left.places[block], m_right.places[block], part),
                between(m_left.places[block + 1], m_right.places[block + 1], part)
            );
        }
    }

    /// The cells of a radial along one azimuth.
    void showLine(int row, int first, int end, const PixelPlace& from, const PixelPlace& to) {
        for (int column = first; column < end; ++column) {
            const std::uint8_t level = m_scan.levels[m_scan.cell(row, column)];
            if (level == 0) {
                continue;
            }
            const PixelPlace place = between(from, to, (column - first + .5) / (end - first));
            const int x = static_cast<int>(std::floor(place.column + .5));
            const int y = static_cast<int>(std::floor(place.row + .5));
            if (x < 0 || y < 0 || x >= m_picture.width() || y >= m_picture.height()) {
                continue;
            }
            std::uint8_t& shown = m_picture.row(y)[x];
            if (m_strengths[level % kLevels] > m_strengths[shown % kLevels]) {
                shown = level;
            }
        }
    }

    const PolarScan& m_scan;
    const ImageGeometry& m_image;
    IndexedPicture& m_picture;
    std::array<float, kLevels> m_strengths;
    LocalSphere m_sphere;
    double m_pixelKm;
    int m_blockCells;
    int m_end = 0; ///< of the cells that may lie in the picture
    Edge m_left;   ///< of the radial that is being shown
    Edge m_right;
};

} // namespace

void showSmallCells(const PolarScan& scan, const ImageGeometry& image, IndexedPicture& picture) {
    SmallCells(scan, image, picture).showAll();
}

} // namespace raincast
