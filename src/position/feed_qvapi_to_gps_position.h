// SPDX-License-Identifier: MIT
#pragma once

#include "core/heartbeat.h"
#include "core/listener.h"
#include "position/navigator/navigator_position.h"
#include "position/published_position.h"

#include <cstdint>

namespace raincast {

/// Takes positions from the companion navigator, once a second, and gives it those that another
/// source of this program publishes; while there are such, and for ten seconds after the last, the
/// navigator is not asked. A navigator that is not there is looked for every eleven seconds; it is
/// neither started nor ended here.
///
/// Nine seconds after the navigator's last position that counts as lost: it is published as one
/// without a fix, or, when another source has published since, only drawn so.
class CFeedQVAPI_to_GPSPosition : private Listener<CDataGPSPosition>, private CHeartbeat::Counter {
public:
    /// The position that it publishes through is borrowed.
    explicit CFeedQVAPI_to_GPSPosition(PublishedPosition& position);
    ~CFeedQVAPI_to_GPSPosition() override;

    /// What the feed publishes.
    [[nodiscard]] const PublishedPosition& position() const { return m_position; }

    /// Whether there is a link to the navigator.
    [[nodiscard]] bool linked() const { return m_linked; }

private:
    using CHeartbeat::Counter::onPublished;
    void onPublished(CDataGPSPosition& position) override;
    void Tick() override;
    void tryToLink();
    void unlink();
    void poll();
    void take(const NavigatorPosition& taken);
    void publish();
    void lose();

    PublishedPosition& m_position;
    // Both are large at first: the first tick tries to link, and may poll.
    std::uint32_t m_ticksToAttempt = 10'000;
    std::uint32_t m_ticksSinceOther = 10'000;
    std::uint32_t m_ticksSincePublication = 0;
    bool m_linked = false;
    bool m_publishing = false;
};

} // namespace raincast
