// SPDX-License-Identifier: MIT
#include "server/sample_accumulation.h"

#include "server/sample_sky.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kNodeKm = 3;
constexpr std::int64_t kStepMinutes = 5;
constexpr double kMillimetresPerInch = 25.4;

} // namespace

double rainMillimetresAnHour(double dbz) {
    constexpr double kHailCap = 53;
    constexpr double kLeast = 5;
    if (dbz < kLeast) {
        return 0;
    }
    // Z is 10 ^ (dBZ / 10).
    static const double logOf300 = std::log(300);
    return std::exp((std::log(10) / 10 * std::min(dbz, kHailCap) - logOf300) / 1.4);
}

SampleAccumulation::SampleAccumulation(
    const SampleClimate& climate, std::int64_t firstMinute, std::int64_t lastMinute, double reachKm
)
    : m_halfNodes(static_cast<int>(std::ceil(reachKm / kNodeKm))), m_nodes(2 * m_halfNodes + 1),
      m_reachKm(kNodeKm * m_halfNodes),
      m_inches(static_cast<std::size_t>(m_nodes) * static_cast<std::size_t>(m_nodes), 0.F) {
    // Steps stand at fixed minutes, so that what one picture counts the next one counts too. The
    // last one counts as far as it has come.
    for (std::int64_t step = firstMinute / kStepMinutes * kStepMinutes; step < lastMinute;
         step += kStepMinutes) {
        const std::int64_t minutes =
            std::min(step + kStepMinutes, lastMinute) - std::max(step, firstMinute);
        const double inchesPerMillimetreAnHour =
            static_cast<double>(minutes) / 60 / kMillimetresPerInch;
        const SampleSky sky(climate, step, reachKm, SampleSky::Detail::coarse);
        auto node = m_inches.begin();
        for (int row = 0; row < m_nodes; ++row) {
            for (int column = 0; column < m_nodes; ++column, ++node) {
                const PlaneVector place{column * kNodeKm - m_reachKm, m_reachKm - row * kNodeKm};
                const double rain = rainMillimetresAnHour(sky.rainDbz(place));
                *node += static_cast<float>(rain * inchesPerMillimetreAnHour);
            }
        }
    }
}

double SampleAccumulation::atNode(int column, int row) const {
    return m_inches
        [static_cast<std::size_t>(row) * static_cast<std::size_t>(m_nodes) +
         static_cast<std::size_t>(column)];
}

double SampleAccumulation::inchesAt(PlaneVector place) const {
    const double x = (place.east + m_reachKm) / kNodeKm;
    const double y = (m_reachKm - place.north) / kNodeKm;
    if (x < 0 || y < 0 || x >= m_nodes - 1 || y >= m_nodes - 1) {
        return 0;
    }
    const int column = static_cast<int>(x);
    const int row = static_cast<int>(y);
    const double right = x - column;
    const double down = y - row;
    const double upper = atNode(column, row) * (1 - right) + atNode(column + 1, row) * right;
    const double lower =
        atNode(column, row + 1) * (1 - right) + atNode(column + 1, row + 1) * right;
    return upper * (1 - down) + lower * down;
}

} // namespace raincast
