// SPDX-License-Identifier: MIT
#include "support/ratio.h"

#include <algorithm>
#include <ctime>
#include <vector>

namespace raincast {

namespace {

double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

std::function<double()> timed(clockid_t clock, const std::function<void()>& work) {
    return [clock, work] {
        const double start = milliseconds(clock);
        work();
        return milliseconds(clock) - start;
    };
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
    return toldRatioOf(
        pairs, timed(CLOCK_MONOTONIC, first), timed(CLOCK_MONOTONIC, second), tidyUp
    );
}

Ratio processorRatioOf(
    int pairs, const std::function<void()>& first, const std::function<void()>& second,
    const std::function<void()>& tidyUp
) {
    return toldRatioOf(
        pairs, timed(CLOCK_PROCESS_CPUTIME_ID, first), timed(CLOCK_PROCESS_CPUTIME_ID, second),
        tidyUp
    );
}

Ratio toldRatioOf(
    int pairs, const std::function<double()>& first, const std::function<double()>& second,
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
        firsts.push_back(first());
        seconds.push_back(second());
        ratios.push_back(firsts.back() / seconds.back());
        afterPair();
    }
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    return {median(firsts), median(seconds), median(ratios), *least, *most};
}

} // namespace raincast
