// SPDX-License-Identifier: MIT
#pragma once

#include "server/frame_source.h"

#include <atomic>
#include <mutex>
#include <set>
#include <vector>

namespace raincast {

/// Frames that a test sets; each picture's bytes say what it is.
class FakeFrames : public FrameSource {
public:
    std::set<FileTime> times;            ///< of every site and product
    std::set<FileTime> lost;             ///< times that are listed but have no frame any more
    mutable std::vector<FileTime> order; ///< in which frames were asked for
    mutable std::atomic<int> made = 0;   ///< pictures so far
    std::string picture = "GIF89a";      ///< what every picture begins with

    [[nodiscard]] std::vector<FileTime>
    frameTimes(std::string_view, Product, FileTime upTo) const override {
        return {times.begin(), times.upper_bound(upTo)};
    }
    [[nodiscard]] std::string
    frame(std::string_view site, Product product, FileTime time) const override {
        ++made;
        const std::lock_guard lock(m_mutex);
        order.push_back(time);
        return times.contains(time) && !lost.contains(time)
                   ? picture + std::string(site) + std::string(codeOf(product))
                   : std::string();
    }
    [[nodiscard]] std::string
    warnings(std::string_view site, Range range, FileTime time) const override {
        ++made;
        return picture + std::string(site) + std::string(wordOf(range)) + std::to_string(time);
    }

private:
    mutable std::mutex m_mutex;
};

} // namespace raincast
