// SPDX-License-Identifier: MIT
#pragma once

#include "core/background.h"
#include "net/http_transfer.h"
#include "radar/frame_run.h"
#include "radar/picture_loader.h"
#include "radar/radar_state.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace raincast {

/// Follows an update while it runs, on its thread.
class RadarUpdateObserver {
public:
    virtual ~RadarUpdateObserver() = default;

    /// The state's status text has changed.
    virtual void statusChanged(const QString& status) = 0;
    /// The state has changed and can be painted.
    virtual void repaint() = 0;
    /// `done` of the `wanted` frames are there.
    virtual void progress(int done, int wanted) = 0;
};

/// Fills a state's frame list from the radar image server: the newest frame of its site and product
/// and, with animation on, older ones that lie at least the chosen interval apart. Frames are kept
/// as files in the cache and not fetched again, unless a file is not a picture. Only of the newest
/// one, when its server said that it may change (frame_tag.h), other bytes are asked for; they take
/// the place of those of before, which stay where none come. The frames are
/// those of a search one by one (frame_search.h), but what it will want is fetched ahead, several
/// at a time and the newest first, and loaded in the background; the warnings come beside them.
///
/// The frames of before stay in the list until the newest one is there, and all of them when that
/// cannot be had. Frames of another site or product go at once.
///
/// When the transfer gives up, whatever is unfinished fails, and no frame is taken that was not in
/// the cache before: the result is that of the one-by-one search whose connection fails there. Once
/// a file could not be written, no more is fetched, and what the cache holds is shown.
///
/// State, observer and transfer are borrowed. The object lives for one action; its end cancels it.
class RadarUpdate {
public:
    /// Called once, with whether at least the newest frame is there. What went wrong stands in the
    /// state's status text, which stays empty only when every wanted frame is there and the cache
    /// could be written; missing warnings are no failure.
    using Done = std::function<void(bool updated)>;

    /// Pictures are loaded in threads of the pool, also when the update has ended.
    RadarUpdate(
        RadarState& state, RadarUpdateObserver& observer, CHttpTransfer& transfer,
        PictureLoaders loaders
    );

    /// Begins the update. A frame that the listing dates more than a day ahead is ignored.
    void UpdateRadar(Done done);

    /// Why the cache could not be written, in the system's words; none if it could.
    [[nodiscard]] const std::optional<QString>& writeFailure() const { return m_writeFailure; }

private:
    void takeListing(const CHttpTransfer::Listing& names);
    void startSearch(std::shared_ptr<const FrameListing> listing);
    void beginFrame(const QString& name);
    using Fetched = CHttpTransfer::Fetched;
    void loadFrame(const QString& name, const std::optional<Fetched>& fetched = {});
    void frameLoaded(
        const QString& name, const std::optional<Fetched>& fetched,
        const std::optional<LoadedPicture>& picture
    );
    void fetchFrame(const QString& name);
    void frameEnded(const QString& name, FrameRun::Outcome outcome);
    void takeFrame(const FrameSearch& search, const LoadedPicture& picture);
    void prepend(RadarFrame frame);
    void beginWarnings();
    [[nodiscard]] bool isNewest(const QString& name) const;
    void recheck(const QString& name);
    void recheckWith(const QByteArray& tag, const QString& name);
    void takeOtherBytes(const QString& name, const QByteArray& tag);
    void replace(const QString& file, const Bitmap& bitmap);
    void recheckEnded();
    void endSearch();
    void endWhenComplete();
    void loadFetchedWarnings();
    void takeWarnings(const RadarWarnings& warnings);
    void fetchWarningTexts();
    /// `outdated` is a file that goes before; empty: none.
    void loadFetchedTexts(const QString& outdated);
    void warningsEnded();
    void fail(const QString& status);
    void end(bool updated);
    [[nodiscard]] QString outcome() const;
    [[nodiscard]] QString cause() const;
    void setStatus(const QString& status, const QString& cause = {});
    [[nodiscard]] QString cached(const QString& name) const;

    RadarState& m_state;
    RadarUpdateObserver& m_observer;
    CHttpTransfer& m_transfer;
    PictureLoaders m_loaders;
    QString m_product; ///< its code
    Done m_done;
    std::shared_ptr<const FrameListing> m_listing;
    std::optional<FrameRun> m_run;
    std::optional<QString> m_writeFailure; ///< why the cache could not be written
    /// Warnings that keep us waiting must not cost the frames.
    std::unique_ptr<CHttpTransfer> m_warningsTransfer;
    bool m_warningsPending = false;
    FileTime m_warningsFetched = 0;
    /// Nor must the newest frame when it is asked for again.
    std::unique_ptr<CHttpTransfer> m_recheckTransfer;
    bool m_recheckPending = false;
    bool m_searchEnded = false;
    Background m_background;
};

/// Empties a state's frame list and clears the frame on screen.
void discardFrames(RadarState& state);

/// The same if a frame is of another site or product than the state's.
void discardOtherFrames(RadarState& state);

} // namespace raincast
