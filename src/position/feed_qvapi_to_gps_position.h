// SPDX-License-Identifier: MIT
#pragma once

#include "core/heartbeat.h"
#include "core/listener.h"
#include "position/navigator/navigator_position.h"
#include "position/published_position.h"

#include <cstdint>

namespace raincast {

/// Asks the companion navigator for its position once a second, and gives it the positions that
/// another source of this program publishes. While there are such, and for ten seconds after the
/// last one, the navigator is not asked. Looks for an absent navigator every eleven seconds;
/// neither starts nor ends it.
///
/// A position counts as lost nine seconds after the navigator gave it. It is then published without
/// a fix or, when another source has published since, only drawn as lost.
class CFeedQVAPI_to_GPSPosition : private Listener<CDataGPSPosition>, private CHeartbeat::Counter {
public:
    /// Borrows the position that it publishes through, and the link.
    CFeedQVAPI_to_GPSPosition(PublishedPosition& position, NavigatorLink& link);
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
    NavigatorLink& m_link;
    // Both are large at first: the first tick tries to link, and may poll.
    std::uint32_t m_ticksToAttempt = 10'000;
    std::uint32_t m_ticksSinceOther = 10'000;
    std::uint32_t m_ticksSincePublication = 0;
    bool m_linked = false;
    bool m_publishing = false;
};

} // namespace raincast
