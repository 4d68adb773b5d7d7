// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/tree_index.h"
#include "tree/picture_cache.h"
#include "tree/picture_makers.h"
#include "tree/tree_answer.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

namespace raincast {

class FrameSource;
class LayerStore;

/// The image tree: makes the file or listing of any of its paths when it is asked for, and keeps
/// the latest in memory, up to a bound. Several threads may ask at once; the time is that of
/// Clock::current().
class ImageTree {
public:
    /// Both are borrowed.
    ImageTree(const FrameSource& frames, const LayerStore& layers);

    /// Gives the asker the file or listing at a path: at once if it is a listing or kept in memory,
    /// otherwise when the source of frames is ready and a thread has made it. A frame of the future
    /// is not there yet.
    void ask(std::string_view path, TreeAsker asker) const;

    /// The same, but waits for it.
    [[nodiscard]] std::optional<TreeAnswer> find(std::string_view path) const;

    /// The names of a folder of frames, oldest first. Waits until the source is ready.
    [[nodiscard]] std::vector<std::string> framesIn(const FrameFolder& folder) const;

    /// Whether the frame at a path may have other bytes later.
    [[nodiscard]] bool mayChange(std::string_view path) const;

    /// Whether there is no later frame than the one at a path. Its source may be done with it; for
    /// others it is not final before a later one is listed.
    [[nodiscard]] bool isNewest(std::string_view path) const;

    /// Adds a page beside the tree, "/status" for example. `page` is called at each request, so it
    /// must be quick.
    using MakePage = std::function<TreeAnswer()>;
    void addPage(std::string path, MakePage page);
    /// The same for bytes that need not be sent again while they are the same.
    void addPage(std::string path, const char* type, std::function<QByteArray()> page);

    /// What was done so far.
    struct Counts {
        struct Made {
            std::uint64_t pictures = 0;
            double seconds = 0; ///< in all threads together
        };
        Made frames{};
        Made warnings{};          ///< pictures and texts
        Made layers{};            ///< and world files
        std::uint64_t hits = 0;   ///< answers that were in memory
        std::uint64_t misses = 0; ///< answers that could have been
    };
    [[nodiscard]] Counts counts() const;

    /// Bytes of the pictures kept in memory, and the most there may be.
    [[nodiscard]] qsizetype bytesInMemory() const {
        return m_described.cache.bytes() + m_sharp.cache.bytes();
    }
    static constexpr qsizetype kMostBytesInMemory = 12 * 1024 * 1024;

private:
    /// Counts what is made.
    struct Meter {
        std::atomic<std::uint64_t> pictures = 0;
        std::atomic<std::int64_t> microseconds = 0;

        [[nodiscard]] Counts::Made count() const;
    };

    /// What is made, and who makes it. Pictures of more detail are by themselves: they displace no
    /// others, nor do others wait for them.
    struct Store {
        PictureCache cache;
        PictureMakers makers{}; ///< last: its threads use the rest
    };
    // Large canvases are in memory while they are painted: few at a time.
    static constexpr int kMostSharpAtOnce = 2;
    static constexpr qsizetype kMostSharpBytesInMemory = 3 * 1024 * 1024;

    [[nodiscard]] std::optional<TreeBody>
    kept(const QByteArray& key, const PictureCache& cache) const;
    [[nodiscard]] TreeBody listing(
        std::string_view path, const QByteArray& key,
        const std::function<std::vector<std::string>()>& names
    ) const;
    [[nodiscard]] bool isNewest(const TreeItem& item) const;
    [[nodiscard]] std::vector<FileTime> timesOf(const FrameFolder& folder) const;
    [[nodiscard]] Meter& meterOf(const TreeItem& item) const;
    void askForFolder(std::string_view path, TreeAsker asker) const;
    void prepare(const TreeItem& item, std::function<void()> ready) const;
    void askForItem(const std::string& path, const TreeItem& item, TreeAsker asker) const;
    [[nodiscard]] std::optional<QByteArray> make(const TreeItem& item) const;
    [[nodiscard]] std::optional<QByteArray> makeFrame(const TreeItem& item) const;
    [[nodiscard]] std::optional<QByteArray> makeOfSite(const TreeItem& item) const;

    const FrameSource& m_frames;
    const LayerStore& m_layers;
    std::map<std::string, MakePage, std::less<>> m_pages;
    mutable Meter m_frameMeter;
    mutable Meter m_warningsMeter;
    mutable Meter m_layerMeter;
    mutable std::atomic<std::uint64_t> m_hits = 0;
    mutable std::atomic<std::uint64_t> m_misses = 0;
    // Last: their threads use the rest.
    mutable Store m_described{PictureCache(kMostBytesInMemory - kMostSharpBytesInMemory)};
    mutable Store m_sharp{PictureCache(kMostSharpBytesInMemory), PictureMakers(kMostSharpAtOnce)};
};

} // namespace raincast
