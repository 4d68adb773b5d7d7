// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QThreadPool>

#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace raincast {

/// Makes pictures in threads of its own, as many as there are processors: a thread that paints
/// keeps megabytes of tables for the next picture, and more of them are no faster. A picture that
/// many wait for is made once. May be used from several threads at once.
class PictureMakers {
public:
    using Make = std::function<QByteArray()>;
    struct Waiter {
        std::function<void(const QByteArray&)> tell; ///< called in one of the threads
        std::function<bool()> isWaiting;
    };

    /// Makes the picture of a name, or lets the waiter wait for the one that is being made. When
    /// its turn comes and nobody waits any more, it is not made, and nobody is told.
    void make(const QByteArray& name, Make make, Waiter waiter);

private:
    void work(const QByteArray& name, const Make& make);
    [[nodiscard]] bool isWanted(const QByteArray& name);

    std::mutex m_mutex;
    std::map<QByteArray, std::vector<Waiter>> m_waiting; ///< by the names of what is being made
    QThreadPool m_threads;                               ///< waits for them when it goes
};

} // namespace raincast
