// SPDX-License-Identifier: MIT
#include "sample/sample_accumulation.h"

#include "sample/sample_sky.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kNodeKm = 3;
constexpr std::int64_t kStepMinutes = 5;
constexpr std::int64_t kShortMinutes = 60; // shorter sums are quickly made again
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
    const SampleClimate& climate, std::int64_t firstMinute, std::int64_t lastMinute, double reachKm,
    SampleMemory& memory
)
    : m_halfNodes(static_cast<int>(std::ceil(reachKm / kNodeKm))), m_nodes(2 * m_halfNodes + 1),
      m_reachKm(kNodeKm * m_halfNodes),
      m_inches(static_cast<std::size_t>(m_nodes) * static_cast<std::size_t>(m_nodes), 0.F) {
    // Steps stand at fixed minutes, so that pictures share them. The last one counts as far as it
    // has come.
    const std::int64_t lastStep = lastMinute / kStepMinutes * kStepMinutes;
    addWholeSteps(climate, firstMinute, lastStep, memory);
    if (lastMinute > lastStep) {
        addStep(climate, lastStep, lastMinute - std::max(lastStep, firstMinute), memory);
    }
}

// Goes on from the longest sum that is known, which was added up in the same order: the result has
// the same bits.
void SampleAccumulation::addWholeSteps(
    const SampleClimate& climate, std::int64_t firstMinute, std::int64_t lastMinute,
    SampleMemory& memory
) {
    const auto keyOf = [&](std::int64_t to) {
        return SampleMemory::Key{
            SampleMemory::Kind::rainSum, climate.seed, firstMinute, to, m_nodes};
    };
    const bool isWorthKeeping = lastMinute - firstMinute > kShortMinutes;
    std::int64_t done = firstMinute;
    for (std::int64_t to = lastMinute; isWorthKeeping && to > firstMinute; to -= kStepMinutes) {
        if (const auto known = memory.find(keyOf(to))) {
            m_inches = *known;
            done = to;
            break;
        }
    }
    for (std::int64_t step = done / kStepMinutes * kStepMinutes; step < lastMinute;
         step += kStepMinutes) {
        addStep(climate, step, step + kStepMinutes - std::max(step, firstMinute), memory);
    }
    if (isWorthKeeping && done < lastMinute) {
        memory.keep(keyOf(lastMinute), std::make_shared<const SampleGrid>(m_inches));
    }
}

void SampleAccumulation::addStep(
    const SampleClimate& climate, std::int64_t step, std::int64_t minutes, SampleMemory& memory
) {
    const auto rain =
        memory.get({SampleMemory::Kind::rain, climate.seed, step, step, m_nodes}, [&] {
            return rainAt(climate, step);
        });
    const float inchesPerMillimetreAnHour =
        static_cast<float>(minutes) / 60 / static_cast<float>(kMillimetresPerInch);
    std::transform(
        m_inches.begin(), m_inches.end(), rain->begin(), m_inches.begin(),
        [&](float inches, float millimetres) {
            return inches + millimetres * inchesPerMillimetreAnHour;
        }
    );
}

// Millimetres an hour at all nodes that a place within the reach may look at.
SampleGrid SampleAccumulation::rainAt(const SampleClimate& climate, std::int64_t minute) const {
    const SampleSky sky(climate, minute, m_reachKm, SampleSky::Detail::coarse);
    const double looksAtKm = m_reachKm + 2 * kNodeKm;
    SampleGrid rain;
    rain.reserve(m_inches.size());
    for (int row = 0; row < m_nodes; ++row) {
        for (int column = 0; column < m_nodes; ++column) {
            const PlaneVector place = nodePlace(column, row);
            const bool counts = place.dot(place) < looksAtKm * looksAtKm;
            rain.push_back(
                counts ? static_cast<float>(rainMillimetresAnHour(sky.rainDbz(place))) : 0.F
            );
        }
    }
    return rain;
}

PlaneVector SampleAccumulation::nodePlace(int column, int row) const {
    return {column * kNodeKm - m_reachKm, m_reachKm - row * kNodeKm};
}

double SampleAccumulation::atNode(int column, int row) const {
    return m_inches
        [static_cast<std::size_t>(row) * static_cast<std::size_t>(m_nodes) +
         static_cast<std::size_t>(column)];
}

double SampleAccumulation::inchesAt(PlaneVector place) const {
    const double x = (place.east + m_reachKm) / kNodeKm;
    const double y = (m_reachKm - place.north) / kNodeKm;
    const bool isWithin = place.dot(place) <= m_reachKm * m_reachKm;
    if (!isWithin || x < 0 || y < 0 || x >= m_nodes - 1 || y >= m_nodes - 1) {
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
