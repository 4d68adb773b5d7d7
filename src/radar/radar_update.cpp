// SPDX-License-Identifier: MIT
#include "radar/radar_update.h"

#include "core/clock.h"
#include "net/http_transfer.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/catalogue/products.h"
#include "radar/file_kinds.h"
#include "radar/image/composite.h"
#include "radar/image/image_file.h"

#include <utility>

namespace raincast {

namespace {

constexpr int kMostTries = 100;
// An automatic update is due when the next image may be expected.
constexpr FileTime kNextUpdateAfter = 8 * kFileTimePerMinute;
// The search steps a minute back before each try; beginning this much after the newest frame, the
// first try is that frame's minute, half a minute away from the neighbouring ones.
constexpr FileTime kSearchLead = 90 * kFileTimePerSecond;
// Makes the animation start over on its second tick after an update.
constexpr int kCounterAfterUpdate = 10;

} // namespace

bool RadarUpdate::UpdateRadar(CHttpTransfer& transfer) {
    discardFrames();
    setStatus(QStringLiteral("Updating radar image...\n"));
    m_observer.repaint();

    std::set<QString> listing;
    if (!transfer.FetchQuotedStrings(listingDirectory(m_state.siteId, productCode()), listing)) {
        return fail(QStringLiteral("Could not access server.\n"));
    }
    removeFramesAhead(listing, Clock::current().now());
    const auto newest = newestFrameTime(listing);
    if (!newest) {
        return fail(QStringLiteral("No radar images found on server.\n"));
    }
    if (const auto made = makeSiteFolder(m_state.cacheFolder, m_state.siteId); !made) {
        m_writeFailure = made.error();
    }
    const int missing = fetchFrames(transfer, *newest, listing);
    if (m_state.frames.empty()) {
        return fail(outcome(missing));
    }
    if (missing > 0) {
        setStatus(outcome(missing));
    }
    deleteStaleFrames(m_state.cacheFolder, m_state.siteId, productCode(), listing);
    if (m_state.showWarnings) {
        drawWarnings(transfer);
    }
    setStatus(outcome(missing));
    m_observer.repaint();
    return true;
}

// The status text after fetching frames, `missing` of which did not come.
QString RadarUpdate::outcome(int missing) const {
    if (m_writeFailure) {
        return cacheFailureText(m_state.cacheFolder, *m_writeFailure);
    }
    if (m_state.frames.empty()) {
        return QStringLiteral("Could not download\nany radar images.\n");
    }
    return missing > 0 ? QStringLiteral("Could not get\nall images.\n") : QString();
}

void RadarUpdate::discardFrames() {
    m_state.frames.clear();
    m_state.position = 0;
    m_state.current = {};
}

// Fetches the wanted frames, newest first, until one fails. Returns how many are missing.
int RadarUpdate::fetchFrames(
    CHttpTransfer& transfer, FileTime newest, const std::set<QString>& listing
) {
    const int wanted = m_state.animate ? m_state.frameCount : 1;
    FileTime searchTime = newest + kSearchLead;
    for (int done = 0; done < wanted; ++done) {
        m_observer.progress(done, wanted);
        RadarFrame frame;
        if (!FetchFrame(transfer, searchTime, frame, listing)) {
            return wanted - done;
        }
        prepend(std::move(frame));
        searchTime -= (m_state.frameInterval - 1) * kFileTimePerMinute;
    }
    m_observer.progress(wanted, wanted);
    return 0;
}

// The first frame, the newest, is shown while the older ones are fetched.
void RadarUpdate::prepend(RadarFrame frame) {
    m_state.frames.insert(m_state.frames.begin(), std::move(frame));
    if (m_state.frames.size() > 1) {
        ++m_state.position;
        return;
    }
    m_state.position = 0;
    m_state.current = m_state.frames.front();
    m_state.animationCounter = m_state.frameCount + kCounterAfterUpdate;
    m_observer.repaint();
}

bool RadarUpdate::FetchFrame(
    CHttpTransfer& transfer, FileTime& searchTime, RadarFrame& frame,
    const std::set<QString>& listing
) {
    frame.bitmap = nullptr;
    if (siteFolder().isEmpty()) {
        return false;
    }
    for (int tries = 0; tries < kMostTries; ++tries) {
        searchTime -= kFileTimePerMinute;
        const QString name = frameFileName(m_state.siteId, searchTime, productCode());
        if (!listing.contains(name) || !loadFrame(transfer, name, frame)) {
            continue;
        }
        frame.timeText = clockText(searchTime);
        m_state.nextUpdate = std::max(m_state.nextUpdate, searchTime + kNextUpdateAfter);
        return true;
    }
    return false;
}

bool RadarUpdate::loadFrame(CHttpTransfer& transfer, const QString& name, RadarFrame& frame) {
    const QString cached = siteFolder() + u'/' + name;
    const QString path = listingDirectory(m_state.siteId, productCode()) + name;
    const auto load = [&] {
        frame.bitmap = LoadImageFile(cached, kMostRadarPixels);
        return frame.bitmap != nullptr;
    };
    if (!load() && !(fetch(transfer, path, cached) && load())) {
        return false;
    }
    frame.path = cached;
    m_state.imageWidth = frame.bitmap->width();
    m_state.imageHeight = frame.bitmap->height();
    return true;
}

bool RadarUpdate::fetch(CHttpTransfer& transfer, const QString& path, const QString& cached) {
    if (m_writeFailure) {
        return false;
    }
    const bool fetched = transfer.DownloadToFile(path, cached, kGifFile);
    m_writeFailure = transfer.writeFailure();
    return fetched;
}

// Burns the present warnings, fetched for each update, into every frame.
void RadarUpdate::drawWarnings(CHttpTransfer& transfer) {
    const QString cached = siteFolder() + u'/' + warningsFileName(m_state.siteId);
    const QString path = warningsPath(m_state.siteId, ProductRange(m_state.product).toString());
    if (!fetch(transfer, path, cached)) {
        return;
    }
    const Bitmap warnings = LoadImageFile(cached, kMostRadarPixels);
    if (!warnings) {
        return;
    }
    for (RadarFrame& frame : m_state.frames) {
        if (frame.bitmap) {
            CompositeOnto(frame.bitmap, *warnings, warnings->width(), warnings->height());
        }
    }
}

void RadarUpdate::setStatus(const QString& status) {
    if (m_state.status != status) {
        m_state.status = status;
        m_observer.statusChanged(status);
    }
}

bool RadarUpdate::fail(const QString& status) {
    setStatus(status);
    m_observer.repaint();
    return false;
}

QString RadarUpdate::siteFolder() const {
    return siteCacheFolder(m_state.cacheFolder, m_state.siteId);
}

QString RadarUpdate::productCode() const {
    return ProductCode(m_state.product).toString();
}

} // namespace raincast
