// SPDX-License-Identifier: MIT
#include "server/sample_noise.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

double easedBetween(double low, double high, double part) {
    return low + (high - low) * part * part * (3 - 2 * part);
}

double latticeValue(std::uint64_t seed, std::int64_t x, std::int64_t y) {
    const auto place = static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15U +
                       static_cast<std::uint64_t>(y) * 0xC2B2AE3D27D4EB4FU;
    return asFraction(mixed(seed ^ place)) * 2 - 1;
}

} // namespace

double Dice::between(double low, double high) {
    m_state = mixed(m_state);
    return low + (high - low) * asFraction(m_state);
}

double Dice::around() {
    return between(-1, 1) + between(-1, 1) + between(-1, 1);
}

double smoothNoise(std::uint64_t seed, double x, double y) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto column = static_cast<std::int64_t>(left);
    const auto row = static_cast<std::int64_t>(top);
    const double upper = easedBetween(
        latticeValue(seed, column, row), latticeValue(seed, column + 1, row), x - left
    );
    const double lower = easedBetween(
        latticeValue(seed, column, row + 1), latticeValue(seed, column + 1, row + 1), x - left
    );
    return easedBetween(upper, lower, y - top);
}

double fractalNoise(std::uint64_t seed, double x, double y, int octaves) {
    double sum = 0;
    double height = 0.6;
    for (int i = 0; i < octaves; ++i) {
        sum += height * smoothNoise(seed + static_cast<std::uint64_t>(i), x, y);
        // Turned a little, so that the lattices do not line up.
        const double turnedX = 1.7 * x + 1.1 * y;
        y = 1.7 * y - 1.1 * x;
        x = turnedX;
        height /= 2;
    }
    return sum;
}

double smoothStep(double from, double to, double value) {
    const double part = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return easedBetween(0, 1, part);
}

} // namespace raincast
