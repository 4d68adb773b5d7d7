// SPDX-License-Identifier: MIT
#pragma once

#include "tree/tree_body.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

namespace raincast {

/// A page that takes milliseconds to make and may be requested at any rate: it is made at most once
/// a second. Several threads may ask at once.
class RememberedPage {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit RememberedPage(std::function<QByteArray()> make) : m_make(std::move(make)) {}

    [[nodiscard]] TreeBody get(Time now = std::chrono::steady_clock::now()) {
        const std::lock_guard lock(m_mutex);
        if (!m_made || now - *m_made >= std::chrono::seconds(1)) {
            m_page = m_make();
            m_made = now;
        }
        return m_page;
    }

private:
    std::function<QByteArray()> m_make;
    std::mutex m_mutex;
    std::optional<Time> m_made;
    TreeBody m_page;
};

} // namespace raincast
