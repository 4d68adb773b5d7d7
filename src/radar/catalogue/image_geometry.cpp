// SPDX-License-Identifier: MIT
#include "radar/catalogue/image_geometry.h"

#include <QByteArray>

#include <cmath>

namespace raincast {

namespace {

constexpr double kShortStepAtEquator = 0.0071935;
constexpr double kDegree = 3.14159265358979323846 / 180;

} // namespace

ImageGeometry::ImageGeometry(double latitude, double longitude, Range range, int detail)
    : m_latitude(latitude), m_longitude(longitude), m_detail(detail),
      m_step(
          kShortStepAtEquator / std::cos(latitude * kDegree) * (range == Range::longRange ? 2 : 1) /
          detail
      ),
      m_antennaColumn(width() / 2.0 - .5), m_antennaRow(height() / 2.0 - .5) {}

double ImageGeometry::latitudeOfRow(double row) const {
    return m_latitude + (m_antennaRow - row) * m_step;
}

double ImageGeometry::longitudeOfColumn(double column) const {
    return m_longitude + (column - m_antennaColumn) * m_step;
}

double ImageGeometry::rowOfLatitude(double latitude) const {
    return m_antennaRow - (latitude - m_latitude) / m_step;
}

double ImageGeometry::columnOfLongitude(double longitude) const {
    return m_antennaColumn + (longitude - m_longitude) / m_step;
}

std::string ImageGeometry::worldFile() const {
    // QByteArray writes numbers in the C locale.
    const auto line = [](double value) {
        return QByteArray::number(value, 'f', 12).toStdString() + "\n";
    };
    const std::string zero = "0.0\n";
    return line(m_step) + zero + zero + line(-m_step) + line(longitudeOfColumn(0)) +
           line(latitudeOfRow(0));
}

} // namespace raincast
