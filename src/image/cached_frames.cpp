// SPDX-License-Identifier: MIT
#include "image/cached_frames.h"

#include "image/image_file.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/catalogue/products.h"
#include "radar/frame_search.h"
#include "radar/warning_texts.h"

#include <QDir>
#include <QFileInfo>

#include <memory>
#include <set>
#include <utility>

namespace raincast {

namespace {

Bitmap loadPicture(const QString& file) {
    return QFileInfo(file).isFile() ? LoadImageFile(file, kMostRadarPixels) : nullptr;
}

/// Loads frames up to the first that cannot be loaded.
std::vector<RadarFrame> loadListed(std::vector<RadarFrame> frames) {
    for (auto frame = frames.begin(); frame != frames.end(); ++frame) {
        if (!frame->bitmap) {
            frame->bitmap = loadPicture(frame->path);
        }
        if (!frame->bitmap) {
            frames.erase(frame, frames.end());
            break;
        }
    }
    return frames;
}

std::shared_ptr<const FrameListing> listCache(const RadarState& state, FileTime now) {
    const QString product = ProductCode(state.product).toString();
    const QDir folder(siteCacheFolder(state.cacheRoot(), state.siteId));
    std::set<QString> names;
    if (!state.cacheFolder.isEmpty()) {
        const QStringList files = folder.entryList(
            {state.siteId + QStringLiteral("_2*_") + product + QStringLiteral(".gif")}, QDir::Files
        );
        names.insert(files.begin(), files.end());
    }
    return std::make_shared<const FrameListing>(std::move(names), state.siteId, product, now);
}

/// Loads the frames that an update would choose if the server had those of a listing of the cache.
std::vector<RadarFrame>
loadNewest(const RadarState& state, const std::shared_ptr<const FrameListing>& listing) {
    const QString folder = siteCacheFolder(state.cacheRoot(), state.siteId) + u'/';
    const int wanted = state.animate ? state.frameCount : 1;
    FrameSearch search(
        {state.siteId, ProductCode(state.product).toString(), wanted, state.frameInterval}, listing
    );
    std::vector<RadarFrame> frames;
    while (search.next()) {
        const QString file = folder + *search.next();
        if (const Bitmap bitmap = loadPicture(file)) {
            frames.insert(frames.begin(), {bitmap, clockText(search.time()), file});
            search.came();
        } else {
            search.failed();
        }
    }
    return frames;
}

RadarWarnings warningsOf(const RadarState& state) {
    const QString range = ProductRange(state.product).toString();
    RadarWarnings warnings =
        loadWarnings(state.cacheRoot(), state.siteId, range, shownPictures().warnings);
    warnings.texts = loadWarningTexts(state.cacheRoot(), state.siteId, range);
    return warnings;
}

} // namespace

bool lacksLaterFrames(const RadarState& state) {
    return !state.frames.empty() && state.frames.front().bitmap && !state.frames.back().bitmap;
}

CachedRadar loadFirstOfCachedRadar(const RadarState& state, FileTime now) {
    const auto newest = listCache(state, now)->newest();
    CachedRadar cached;
    if (state.frames.empty() || newest > takenAt(state.frames.back())) {
        return cached;
    }
    const Bitmap first = loadPicture(state.frames.front().path);
    if (first) {
        cached.frames = state.frames;
        cached.frames.front().bitmap = first;
        cached.warnings = warningsOf(state);
    }
    return cached;
}

CachedRadar loadCachedRadar(const RadarState& state, FileTime now) {
    CachedRadar cached;
    cached.frames = loadListed(state.frames);
    cached.complete = !state.frames.empty() && cached.frames.size() == state.frames.size();
    const auto listing = listCache(state, now);
    const bool newer = listing->newest() &&
                       !(cached.complete && listing->newest() <= takenAt(state.frames.back()));
    if (newer) {
        std::vector<RadarFrame> newest = loadNewest(state, listing);
        if (!newest.empty()) {
            cached.frames = std::move(newest);
        }
    }
    cached.warnings = warningsOf(state);
    return cached;
}

} // namespace raincast
