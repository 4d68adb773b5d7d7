// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_state.h"

#include <QString>

#include <set>

namespace raincast {

class CHttpTransfer;

/// Who is told of an update while it runs. All calls come from inside the update, on its thread.
class RadarUpdateObserver {
public:
    virtual ~RadarUpdateObserver() = default;

    /// The state's status text is now another one.
    virtual void statusChanged(const QString& status) = 0;
    /// The state can be painted anew; the waiting user should see it at once.
    virtual void repaint() = 0;
    /// So many of the wanted frames are there.
    virtual void progress(int done, int wanted) = 0;
};

/// Fills a state's frame list from the radar image server: the newest frame of its site and product
/// and, with animation on, older ones that lie at least the chosen interval apart. Frames are kept
/// as files in the cache and not fetched again, unless a file turns out to be no picture. Blocks
/// until it is done.
///
/// State and observer are borrowed; the object lives for one action. Once a file could not be
/// written it fetches no more: what the cache holds is shown.
class RadarUpdate {
public:
    RadarUpdate(RadarState& state, RadarUpdateObserver& observer)
        : m_state(state), m_observer(observer) {}

    /// The update proper. True when at least the newest frame was obtained. What went wrong stands
    /// in the state's status text, which stays empty only when every wanted frame was obtained and
    /// the cache could be written; missing warnings are no failure. A frame that the listing dates
    /// more than a day ahead is none.
    [[nodiscard]] bool UpdateRadar(CHttpTransfer& transfer);

    /// Finds, downloads and loads the newest listed frame that is at least a minute older than
    /// `searchTime`, looking back over a hundred minutes; a listed frame that cannot be had or
    /// loaded is passed over. False without a cache folder. On success `searchTime` is the found
    /// frame's.
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
    QString m_writeFailure; ///< why the cache could not be written
};

} // namespace raincast
