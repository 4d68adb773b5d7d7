// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class QObject;

namespace raincast {

/// Where other threads leave calls for the thread that made it, whose event loop makes them one by
/// one, in the order in which they came.
class Mailbox {
    class Box;

public:
    /// The slit of a mailbox: it may be copied, taken to any thread, and outlive the mailbox.
    class Slit {
    public:
        /// Leaves a call; does nothing once the mailbox has ended.
        void post(std::function<void()> call) const;

    private:
        friend class Mailbox;
        explicit Slit(std::shared_ptr<Box> box);
        std::shared_ptr<Box> m_box;
    };

    Mailbox();
    /// Drops the calls that were not made. A call that is being made may end its mailbox.
    ~Mailbox();
    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;

    [[nodiscard]] Slit slit() const;
    void post(std::function<void()> call) const { slit().post(std::move(call)); }

private:
    class Opener;
    std::shared_ptr<Box> m_box;
    std::unique_ptr<QObject> m_opener;
};

} // namespace raincast
