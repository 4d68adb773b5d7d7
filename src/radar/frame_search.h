// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QString>

#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace raincast {

/// What a server's listing offers of a site and product.
class FrameListing {
public:
    /// @param names the listing's; those dated more than a day after `now` are left out
    FrameListing(
        std::set<QString> names, const QString& siteId, const QString& product, FileTime now
    );

    [[nodiscard]] const std::set<QString>& names() const { return m_names; }
    /// The time of the newest frame; none when no frame is listed.
    [[nodiscard]] std::optional<FileTime> newest() const { return m_newest; }
    /// Whether a frame of a time's minute is listed.
    [[nodiscard]] bool has(FileTime time) const;

private:
    std::set<QString> m_names;
    std::optional<FileTime> m_newest;
    std::vector<FileTime> m_minutes; ///< of the frames, in order
};

/// The frames that an animation wants.
struct FramesWanted {
    QString siteId;
    QString product; ///< its code
    int frames = 1;
    int interval = 1; ///< least minutes between two of them
};

/// The search for frames, one by one: the newest listed frame first, and then each time the newest
/// one that lies at least the interval before the last. It goes back minute by minute, a hundred
/// minutes for a frame; a frame that cannot be had is passed over. The search says which frame it
/// wants; call came() or failed() for it. A copy may try another outcome.
class FrameSearch {
public:
    /// The listing has a newest frame.
    FrameSearch(FramesWanted wanted, std::shared_ptr<const FrameListing> listing);

    /// The file's name of the frame that is wanted next; none when the search is over.
    [[nodiscard]] const std::optional<QString>& next() const { return m_next; }
    /// When it was taken, half a minute later than its name says.
    [[nodiscard]] FileTime time() const { return m_time; }

    /// The frame is there; the search goes on to an older one.
    void came();
    /// The frame cannot be had; the search goes on to the one before.
    void failed() { findNext(); }

    [[nodiscard]] int found() const { return m_found; }
    [[nodiscard]] int wanted() const { return m_wanted.frames; }

private:
    void findNext();

    FramesWanted m_wanted;
    std::shared_ptr<const FrameListing> m_listing;
    FileTime m_time;
    int m_tries = 0; ///< minutes tried for the present frame
    int m_found = 0;
    std::optional<QString> m_next;
};

} // namespace raincast
