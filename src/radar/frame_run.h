// SPDX-License-Identifier: MIT
#pragma once

#include "radar/frame_search.h"
#include "radar/picture_loader.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>

namespace raincast {

/// Carries out a search for frames, several at a time. What the search will want if all goes well
/// is begun ahead, the newest first; what becomes of it counts in the order of the search, which
/// makes a new plan from any frame that cannot be had. So the frames are those of the search one by
/// one.
///
/// From the frame on with which fetching came to its end, frames count only if they were in the
/// cache before: as if the connection had failed for a search that fetches one frame at a time.
class FrameRun {
public:
    /// Frames under way at a time: twice as many as there are connections to a server, so that none
    /// of those waits for us.
    static constexpr std::size_t kMostUnderWay = 12;

    /// What became of a frame.
    struct Outcome {
        std::optional<LoadedPicture> picture; ///< nothing: it cannot be had
        bool fetched = false;                 ///< not from the cache
        bool last = false; ///< nothing more is fetched, from this one on or before
    };

    /// Begins to load or fetch a frame by its file's name; ended() is to be called for it once,
    /// later.
    using Begin = std::function<void(const QString& name)>;
    /// Takes the frame that the search wants next; the newest comes first.
    using Take = std::function<void(const FrameSearch& search, const LoadedPicture& picture)>;

    FrameRun(FrameSearch search, Begin begin, Take take);

    /// Begins as much as may be under way; call it once.
    void start() { follow(); }
    void ended(const QString& name, Outcome outcome);

    /// The search has all that it wants and can have; what is still under way is of no use.
    [[nodiscard]] bool over() const { return !m_search.next(); }
    /// Fetching came to an end before the search did.
    [[nodiscard]] bool brokenOff() const { return m_brokenOff; }
    [[nodiscard]] int found() const { return m_search.found(); }
    [[nodiscard]] int missing() const { return m_search.wanted() - m_search.found(); }

private:
    void follow();
    void settle(const Outcome& frame);
    void fetchAhead();

    FrameSearch m_search;
    Begin m_begin;
    Take m_take;
    FrameSearch m_ahead; ///< as the search goes on if all that was begun comes
    std::set<QString> m_begun;
    std::map<QString, Outcome> m_ended;
    bool m_brokenOff = false;
};

} // namespace raincast
