// SPDX-License-Identifier: MIT
#pragma once

#include "tree/tree_body.h"

#include <QThreadPool>

#include <atomic>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace raincast {

/// Makes pictures in threads of its own. A picture that many wait for is made once. May be used
/// from several threads at once.
class PictureMakers {
public:
    /// One thread for each processor: a thread that paints keeps megabytes of tables for the next
    /// picture, and more threads are no faster. No more than `mostAtOnce`.
    explicit PictureMakers(int mostAtOnce = std::numeric_limits<int>::max());

    using Picture = std::optional<TreeBody>; ///< nothing: there is none to make
    using Make = std::function<Picture()>;
    struct Waiter {
        std::function<void(const Picture&)> tell; ///< called in one of the threads
        std::function<bool()> isWaiting;
    };

    /// Makes the picture of a name; a waiter joins those for the same name. If nobody waits any
    /// more when its turn comes, the picture is not made and tell() is not called.
    void make(const QByteArray& name, Make make, Waiter waiter);

private:
    void work(const QByteArray& name, const Make& make);
    [[nodiscard]] bool isWanted(const QByteArray& name);

    std::mutex m_mutex;
    std::map<QByteArray, std::vector<Waiter>> m_waiting; ///< by the names of what is being made
    std::atomic<unsigned> m_made = 0;
    QThreadPool m_threads; ///< waits for them when it goes
};

} // namespace raincast
