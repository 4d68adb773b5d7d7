// SPDX-License-Identifier: MIT
// Folders of the cache, in which other programs may leave what they like, and listings of servers:
// names a line. The search for frames ends, finds only what is listed, and goes back in time.
#include "image/cached_frames.h"
#include "input.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/frame_search.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace raincast {
namespace {

const FileTime kNow = fromCalendar({2026, 11, 21, 17, 52});
constexpr char kPicture[] = "GIF89a\1\0\1\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\1\0\1\0\0\2\2D\1\0;";

void search(const std::set<QString>& names, int frames, int interval) {
    const auto listing = std::make_shared<const FrameListing>(
        names, QStringLiteral("TLX"), QStringLiteral("N0R"), kNow
    );
    FrameSearch search({QStringLiteral("TLX"), QStringLiteral("N0R"), frames, interval}, listing);
    FileTime last = std::numeric_limits<FileTime>::max();
    for (bool came = true; search.next(); came = !came) {
        require(names.contains(*search.next()) && search.time() < last);
        last = search.time();
        came ? search.came() : search.failed();
    }
    require(search.found() <= frames);
}

void fill(const QString& folder, const std::set<QString>& names) {
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    int number = 0;
    for (const QString& name : names) {
        QFile file(folder + u'/' + name);
        if (!name.contains(u'/') && file.open(QIODevice::WriteOnly)) {
            file.write(kPicture, ++number % 4 == 0 ? 10 : sizeof kPicture - 1);
        }
    }
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir cache;
    Input input(data, size);
    RadarState state;
    state.siteId = QStringLiteral("TLX");
    state.cacheFolder = cache.path();
    state.animate = true;
    state.frameCount = 1 + input.byte() % kMostFrames;
    state.frameInterval = 1 + input.byte() % kMostFrameInterval;
    const QStringList lines = input.lines();
    const std::set<QString> names(lines.begin(), lines.end());
    search(names, state.frameCount, state.frameInterval);
    for (const QString& name : names) {
        if (const auto time = frameTime(name)) {
            require(*time > 0);
        }
    }

    const QString folder = siteCacheFolder(state.cacheRoot(), state.siteId);
    fill(folder, names);
    const CachedRadar radar = loadCachedRadar(state, kNow);
    require(radar.frames.size() <= static_cast<std::size_t>(state.frameCount));
    for (const RadarFrame& frame : radar.frames) {
        require(frame.bitmap && frame.path.startsWith(folder));
    }
    deleteStaleFrames(state.cacheRoot(), state.siteId, u"N0R", {});
    require(loadCachedRadar(state, kNow).frames.empty());
    return 0;
}
