// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

namespace raincast {

/// An application object for as long as it lives, for tests of what runs on the event loop.
class EventLoop {
public:
    EventLoop() {
        if (QCoreApplication::instance() == nullptr) {
            m_application = std::make_unique<QCoreApplication>(m_count, m_arguments);
        }
    }

    /// Handles events until something is true, here or in another thread; false when that takes
    /// unreasonably long.
    [[nodiscard]] bool until(const std::function<bool()>& isTrue) {
        bool late = false;
        QTimer limit;
        limit.setSingleShot(true);
        QObject::connect(&limit, &QTimer::timeout, [&late] { late = true; });
        limit.start(30'000);
        QTimer look; // what other threads do makes no event
        look.start(10);
        while (!isTrue() && !late) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return isTrue();
    }

    /// Begins something and handles events until it calls back; what it calls back with.
    template<typename Result, typename Begin>
    [[nodiscard]] Result resultOf(const Begin& begin) {
        std::optional<Result> result;
        begin([&result](Result given) { result = std::move(given); });
        EXPECT_TRUE(until([&result] { return result.has_value(); })) << "it never ended";
        return result.value_or(Result{});
    }

    /// Handles the events that have come already.
    void drain() { QCoreApplication::processEvents(); }

private:
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    int m_count = 1;
    std::unique_ptr<QCoreApplication> m_application;
};

} // namespace raincast
