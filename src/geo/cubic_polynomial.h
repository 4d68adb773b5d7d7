// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace raincast {

/// A polynomial of third degree in two variables:
///   c0 + c1 a + c2 b + c3 a^2 + c4 a b + c5 b^2 + c6 a^3 + c7 a^2 b + c8 a b^2 + c9 b^3
struct CubicPolynomial {
    std::array<double, 10> c{};

    /// The value at (a, b). The terms are summed in one fixed order (see the source), so that a
    /// position falls on the same pixel for every caller.
    [[nodiscard]] double at(double a, double b) const;
};

} // namespace raincast
