// SPDX-License-Identifier: MIT
#include "sample/sample_noise.h"

#include <algorithm>
#include <array>

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

/// The greatest whole number that is not above a value.
std::int64_t wholeBelow(double value) {
    const auto towardsZero = static_cast<std::int64_t>(value);
    return towardsZero - (static_cast<double>(towardsZero) > value ? 1 : 0);
}

/// One square of a lattice with the values at its corners.
struct Square {
    std::uint64_t seed = 0;
    std::int64_t column = 0;
    std::int64_t row = 0;
    double upperLeft = 0;
    double upperRight = 0;
    double lowerLeft = 0;
    double lowerRight = 0;
    bool known = false;
};

/// Who asks for noise asks for place after place, most of which lie in the square of the one
/// before.
const Square& squareAt(std::uint64_t seed, std::int64_t column, std::int64_t row) {
    // The octaves of a noise have seeds that follow each other: each has an entry of its own.
    thread_local std::array<Square, 32> lately;
    Square& square = lately[seed % lately.size()];
    if (!square.known || square.seed != seed || square.column != column || square.row != row) {
        square = {
            seed,
            column,
            row,
            latticeValue(seed, column, row),
            latticeValue(seed, column + 1, row),
            latticeValue(seed, column, row + 1),
            latticeValue(seed, column + 1, row + 1),
            true};
    }
    return square;
}

} // namespace

double Dice::between(double low, double high) {
    m_state = mixed(m_state);
    return low + (high - low) * asFraction(m_state);
}

double Dice::around() {
    double sum = between(-1, 1);
    sum += between(-1, 1);
    sum += between(-1, 1);
    return sum;
}

double smoothNoise(std::uint64_t seed, double x, double y) {
    const std::int64_t column = wholeBelow(x);
    const std::int64_t row = wholeBelow(y);
    const Square& square = squareAt(seed, column, row);
    const double right = x - static_cast<double>(column);
    const double upper = easedBetween(square.upperLeft, square.upperRight, right);
    const double lower = easedBetween(square.lowerLeft, square.lowerRight, right);
    return easedBetween(upper, lower, y - static_cast<double>(row));
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
