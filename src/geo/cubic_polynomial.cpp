// SPDX-License-Identifier: MIT
#include "geo/cubic_polynomial.h"

namespace raincast {

double CubicPolynomial::at(double a, double b) const {
    // The order of the sums decides the last bits of the result: leave it alone.
    double sum = c[9] * b * b * b;
    sum += c[5] * b * b;
    sum += c[8] * a * b * b;
    sum += c[4] * a * b;
    sum += c[7] * a * a * b;
    sum += c[6] * a * a * a;
    sum += c[3] * a * a;
    sum += c[1] * a;
    sum += c[2] * b;
    sum += c[0];
    return sum;
}

} // namespace raincast
