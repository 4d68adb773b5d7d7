// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_state.h"

#include <QString>

#include <optional>
#include <set>

namespace raincast {

class CHttpTransfer;

/// Hears of an update while it runs. All calls come from inside the update, on its thread.
class RadarUpdateObserver {
public:
    virtual ~RadarUpdateObserver() = default;

    /// The state's status text has changed.
    virtual void statusChanged(const QString& status) = 0;
    /// The state has changed and can be painted; the waiting user should see it at once.
    virtual void repaint() = 0;
    /// `done` of the `wanted` frames are there.
    virtual void progress(int done, int wanted) = 0;
};

/// Fills a state's frame list from the radar image server: the newest frame of its site and product
/// and, with animation on, older ones that lie at least the chosen interval apart. Frames are kept
/// as files in the cache and not fetched again, unless a file is not a picture. Blocks until it is
/// done.
///
/// State and observer are borrowed; the object lives for one action. Once it could not write a file
/// it fetches no more, and shows what the cache holds.
class RadarUpdate {
public:
    RadarUpdate(RadarState& state, RadarUpdateObserver& observer)
        : m_state(state), m_observer(observer) {}

    /// Makes the update. True when at least the newest frame is there. What went wrong stands in
    /// the state's status text, which stays empty only when every wanted frame is there and the
    /// cache could be written; missing warnings are no failure. A frame that the listing dates more
    /// than a day ahead is ignored.
    [[nodiscard]] bool UpdateRadar(CHttpTransfer& transfer);

    /// Finds, downloads and loads the newest listed frame that is at least a minute older than
    /// `searchTime`, looking back over a hundred minutes; a listed frame that cannot be fetched or
    /// loaded is passed over. False without a cache folder. On success `searchTime` is the frame's
    /// time.
    [[nodiscard]] bool FetchFrame(
        CHttpTransfer& transfer, FileTime& searchTime, RadarFrame& frame,
        const std::set<QString>& listing
    );

    /// Empties the frame list and clears the frame on screen.
    void discardFrames();

private:
    [[nodiscard]] QString outcome(int missing) const;
    void setStatus(const QString& status);
    bool fail(const QString& status);
    int fetchFrames(CHttpTransfer& transfer, FileTime newest, const std::set<QString>& listing);
    void prepend(RadarFrame frame);
    bool loadFrame(CHttpTransfer& transfer, const QString& name, RadarFrame& frame);
    bool fetch(CHttpTransfer& transfer, const QString& path, const QString& cached);
    void drawWarnings(CHttpTransfer& transfer);
    [[nodiscard]] QString siteFolder() const;
    [[nodiscard]] QString productCode() const;

    RadarState& m_state;
    RadarUpdateObserver& m_observer;
    std::optional<QString> m_writeFailure; ///< why the cache could not be written
};

} // namespace raincast
