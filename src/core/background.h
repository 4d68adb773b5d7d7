// SPDX-License-Identifier: MIT
#pragma once

#include "core/mailbox.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace raincast {

/// Work in threads of the process's pool, whose results come back on the thread that asked for it,
/// from its event loop. One's pieces of work may run side by side and end in any order.
class Background {
public:
    Background() = default;
    /// Nothing comes back any more. Work that runs goes on to its end, and what did not begin does
    /// not: so a work may only use what it owns.
    ~Background();
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Has `work()` done, then calls `done(result)`, or `done()` for a work without one. `done` may
    /// end this.
    template<typename Work, typename Done>
    void run(Work work, Done done) {
        using Result = std::invoke_result_t<Work>;
        if constexpr (std::is_void_v<Result>) {
            start(std::move(work), std::move(done));
        } else {
            const auto result = std::make_shared<std::optional<Result>>();
            start(
                [result, work = std::move(work)] { result->emplace(work()); },
                [result, done = std::move(done)] { done(std::move(**result)); }
            );
        }
    }

    /// Calls a function from the event loop, unless this has ended by then.
    void later(std::function<void()> call) { m_mailbox.post(std::move(call)); }

private:
    void start(std::function<void()> work, std::function<void()> done);

    Mailbox m_mailbox;
    std::shared_ptr<std::atomic<bool>> m_ended = std::make_shared<std::atomic<bool>>(false);
};

} // namespace raincast
