// SPDX-License-Identifier: MIT
#pragma once

#include "core/retry_wait.h"
#include "sharp/sharp_files.h"
#include "sharp/sharp_picture.h"

#include <functional>
#include <memory>
#include <vector>

namespace raincast {

/// A sharp picture that is wanted, and how far it has come.
struct SharpRecord {
    enum class State {
        unknown, ///< the cache was not looked at
        busy,
        notHere, ///< the cache lacks it, or has a smaller one
        settled, ///< it is here, or the server has none
    };

    SharpSource source;
    qint64 key = 0; ///< of the described picture
    int detail = 2; ///< that is wanted
    State state = State::unknown;
    SharpPicture picture{};
    bool mayFetch = true; ///< otherwise the cache alone is looked at
    RetryWait wait{};     ///< after a failure
    int failedIn = -1;    ///< the queue's round
};
using SharpRecords = std::vector<std::shared_ptr<SharpRecord>>;

/// Brings sharp pictures, some at a time, in the order in which they are asked for.
class SharpQueue {
public:
    /// `changed` is called, from the event loop, when a record has changed; `came`: it has a
    /// picture.
    using Changed = std::function<void(bool came)>;
    SharpQueue(
        Downloads& downloads, const RadarServers& servers, SharpServers& known, Changed changed
    );

    /// Begins with what records lack, as far as there is room. What nobody holds any more comes and
    /// is dropped. Returns whether something may still come soon: not what a server fails to give.
    bool begin(const SharpRecords& records, bool mayFetch);

    /// Ends all waits: the network is known to be there.
    void tryAgain();
    [[nodiscard]] const RadarServers& servers() const { return m_files.servers(); }

private:
    using Weak = std::weak_ptr<SharpRecord>;

    [[nodiscard]] bool mayFetch(const SharpRecord& record) const;
    void look(const std::shared_ptr<SharpRecord>& record);
    void fetch(const std::shared_ptr<SharpRecord>& record);
    void ended(const Weak& weak, SharpRecord::State state, SharpPicture picture);

    SharpFiles m_files;
    Changed m_changed;
    int m_looking = 0;
    int m_fetching = 0;
    int m_round = 0; ///< rises when waits end
};

} // namespace raincast
