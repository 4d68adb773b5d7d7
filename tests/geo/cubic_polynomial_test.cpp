// SPDX-License-Identifier: MIT
#include "geo/cubic_polynomial.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(CubicPolynomialTest, StartsAtZeroEverywhere) {
    EXPECT_EQ(CubicPolynomial().at(3, -7), 0);
}

TEST(CubicPolynomialTest, EachCoefficientHasItsTerm) {
    const double a = 2;
    const double b = 3;
    const double terms[] = {1,     a,         b,         a * a,     a * b,
                            b * b, a * a * a, a * a * b, a * b * b, b * b * b};
    for (std::size_t i = 0; i < 10; ++i) {
        CubicPolynomial polynomial;
        polynomial.c[i] = 5;
        EXPECT_EQ(polynomial.at(a, b), 5 * terms[i]) << "coefficient " << i;
    }
}

TEST(CubicPolynomialTest, AddsTheTermsFromTheHighestInOneOrder) {
    // Each pair of large terms cancels only if the pair meets before the small one joins it.
    struct Row {
        const char* why;
        CubicPolynomial polynomial;
        double value;
    };
    const double large = 1e17;
    const Row rows[] = {
        {"c9 and c5 meet before c8", {{0, 0, 0, 0, 0, -large, 0, 0, 1, large}}, 1},
        {"c8 joins before c4", {{0, 0, 0, 0, 1, large, 0, 0, -large, 0}}, 1},
        {"c4 joins before c7", {{0, 0, 0, 0, -large, 0, 0, 1, large, 0}}, 1},
        {"c7 joins before c6", {{0, 0, 0, 0, large, 0, 1, -large, 0, 0}}, 1},
        {"c6 joins before c3", {{0, 0, 0, 1, 0, 0, -large, large, 0, 0}}, 1},
        {"c3 joins before c1", {{0, 1, 0, -large, 0, 0, large, 0, 0, 0}}, 1},
        {"c1 joins before c2", {{0, large, 1, -large, 0, 0, 0, 0, 0, 0}}, 1},
        {"c2 joins before c0", {{1, large, -large, 0, 0, 0, 0, 0, 0, 0}}, 1},
        {"c0 comes last", {{-large, large, 1, 0, 0, 0, 0, 0, 0, 0}}, 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.polynomial.at(1, 1), row.value) << row.why;
    }
}

} // namespace
} // namespace raincast
