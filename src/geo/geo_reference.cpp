// SPDX-License-Identifier: MIT
#include "geo/geo_reference.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace raincast {

namespace {

// (2e9)^2: a pixel nearer than that fits 32 bits.
constexpr double kDrawableSquare = 4e18;

using WorldFile = std::array<double, 6>;

std::optional<WorldFile> parseWorldFile(std::string_view text) {
    std::istringstream numbers{std::string(text.substr(0, GeoReference::kWorldFileBytes))};
    numbers.imbue(std::locale::classic());
    WorldFile world{};
    for (double& number : world) {
        numbers >> number;
    }
    return numbers.fail() ? std::nullopt : std::optional(world);
}

std::optional<WorldFile> readWorldFile(const std::filesystem::path& file) {
    // A pipe or a device in the file's place could block for ever or never end.
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string text(GeoReference::kWorldFileBytes, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return parseWorldFile(text);
}

std::int32_t truncated(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value)) {
        return Limits::min();
    }
    return static_cast<std::int32_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

} // namespace

bool GeoReference::isWorldFile(std::string_view text) {
    return parseWorldFile(text).has_value();
}

bool GeoReference::loadWorldFile(
    const std::filesystem::path& file, std::int32_t width, std::int32_t height
) {
    m_valid = false;
    const std::optional<WorldFile> world = readWorldFile(file);
    if (!world) {
        return false;
    }
    const auto [w1, w2, w3, w4, w5, w6] = *world;
    m_width = width;
    m_height = height;
    m_latitude = {{w6, w3, w4}};
    m_longitude = {{w5, w1, w2}};
    // The inverse of that map; a determinant of zero makes it infinite or undefined.
    const double d = 1 / (w3 * w2 - w4 * w1);
    m_column = {{d * (w4 * w5 - w2 * w6), d * w2, -d * w4}};
    m_row = {{d * (w1 * w6 - w3 * w5), -d * w1, d * w3}};
    const ImagePixel centre{width / 2, height / 2};
    m_referenceLongitude =
        pixelToGeo({static_cast<double>(centre.column), static_cast<double>(centre.row)}).longitude;
    m_valid = true;
    return true;
}

GeoPosition GeoReference::pixelToGeo(ImagePoint point) const {
    // One step towards the fixed point where geoToPixel gives back what came in: exact for the
    // affine maps of world files, an improvement for cubic ones.
    const double a = m_latitude.at(point.column, point.row);
    const double b = m_longitude.at(point.column, point.row);
    const double column = 2 * point.column - m_column.at(a, b);
    const double row = 2 * point.row - m_row.at(a, b);
    return {m_latitude.at(column, row), m_longitude.at(column, row)};
}

ImagePoint GeoReference::geoToPixel(GeoPosition position) const {
    double longitude = position.longitude;
    const double fromCentre = longitude - m_referenceLongitude;
    if (fromCentre * fromCentre > 180.0 * 180.0) {
        longitude += fromCentre < 0 ? 360 : -360;
    }
    return {m_column.at(position.latitude, longitude), m_row.at(position.latitude, longitude)};
}

GeoReference::Placed GeoReference::geoToPixelInside(GeoPosition position) const {
    const ImagePoint point = geoToPixel(position);
    const ImagePixel pixel{truncated(point.column), truncated(point.row)};
    const bool inside =
        pixel.column >= 0 && pixel.row >= 0 && pixel.column < m_width && pixel.row < m_height;
    return {pixel, inside};
}

GeoReference::Placed GeoReference::geoToPixelForDrawing(GeoPosition position) const {
    const ImagePoint point = geoToPixel(position);
    const bool near =
        point.column * point.column < kDrawableSquare && point.row * point.row < kDrawableSquare;
    if (!near) {
        return {{-1, -1}, false};
    }
    return {{truncated(point.column), truncated(point.row)}, true};
}

} // namespace raincast
