// SPDX-License-Identifier: MIT
#pragma once

#include "core/replay_clock.h"

#include <QString>

#include <span>

namespace raincast {

/// A storm that many people remember.
struct PastStorm {
    const char16_t* begin; ///< as readReplay() reads it
    const char16_t* siteId;
    const char16_t* name; ///< so short that the row fits a small screen

    [[nodiscard]] Replay replay() const;
    /// "2021-12-11 PAH Mayfield"
    [[nodiscard]] QString row() const;
};

/// The storms that are ready to be picked, the oldest first.
[[nodiscard]] std::span<const PastStorm> pastStorms();

/// A replay that somebody has chosen.
struct PastStormChoice {
    Replay replay = pastStorms().front().replay();
    bool keeps = false; ///< its pictures, when it is left
    QString siteId{};   ///< of the storm, if it is one of the rows

    friend bool operator==(const PastStormChoice&, const PastStormChoice&) = default;
};

/// "Replay of 2021-12-11 02:14 UTC, 10 times as fast" while the weather's clock is one of a replay,
/// else an empty text.
[[nodiscard]] QString replayLine();

} // namespace raincast
