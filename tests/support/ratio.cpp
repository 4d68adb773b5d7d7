// SPDX-License-Identifier: MIT
#include "support/ratio.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace raincast {

namespace {

double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

Ratio ratioOf(
    int pairs, const std::function<void()>& first, const std::function<void()>& second,
    const std::function<void()>& tidyUp
) {
    const auto afterPair = [&] {
        if (tidyUp) {
            tidyUp();
        }
    };
    first();
    second();
    afterPair();
    std::vector<double> firsts;
    std::vector<double> seconds;
    std::vector<double> ratios;
    for (int i = 0; i < pairs; ++i) {
        firsts.push_back(milliseconds(first));
        seconds.push_back(milliseconds(second));
        ratios.push_back(firsts.back() / seconds.back());
        afterPair();
    }
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    return {median(firsts), median(seconds), median(ratios), *least, *most};
}

void printRatio(const char* what, const Ratio& ratio, double aim) {
    std::printf(
        "%-60s %8.3f ms / %8.3f ms = %.2f (%.2f to %.2f; aim: at most %.2f)\n", what,
        ratio.firstMilliseconds, ratio.secondMilliseconds, ratio.median, ratio.least, ratio.most,
        aim
    );
}

} // namespace raincast
