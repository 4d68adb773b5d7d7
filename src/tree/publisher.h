// SPDX-License-Identifier: MIT
#pragma once

#include "tree/image_tree.h"
#include "tree/server_log.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace raincast {

/// Writes the image tree as plain files, for a web server, a content network or object storage to
/// serve. Every file gets its name only when it is whole, and a folder's listing (its index.html)
/// names a frame only when the frame is there: a reader finds a good tree at any moment.
///
/// Beside each frame that may still have other bytes, and beside the newest one of its folder, lies
/// an empty file of its name with a dot before it. Frames without one are final: web servers tell
/// by it how long a frame may be kept.
///
/// One of more detail writes the sharp pictures of the same folder, nothing else: names, texts and
/// places are those of the described tree. Both may be at work at once.
class Publisher {
public:
    struct What {
        QStringList sites;     ///< all when empty
        QByteArray layerStamp; ///< the layers are written again when it changes
        int detail = 1;        ///< of ImageGeometry
    };

    /// The tree is borrowed.
    Publisher(const ImageTree& tree, QString folder, const What& what, ServerLog log);

    /// Brings the folder up to date: writes what is new, then deletes the frames that the tree no
    /// longer has. The newest frame of every site and product comes first, then those of the last
    /// hour, so that a first start, which writes thousands of frames, is soon of use. Checks the
    /// files of an earlier run once: pictures that are not whole are made again. Works on as many
    /// sites at once as there are processors, eight at most. False when a file could not be written
    /// (the log names it) or when asked to stop.
    [[nodiscard]] bool publish(const std::stop_token& stop = {});

    /// Deletes the pictures that an earlier run published of these sites and this detail.
    void remove();

    /// What was done so far.
    struct Counts {
        std::uint64_t written = 0; ///< files
        std::uint64_t failed = 0;  ///< to be written
        std::uint64_t deleted = 0; ///< frames
        FileTime lastGood = 0;     ///< when the folder was up to date, by Clock::real(); 0: never
    };
    /// For any thread.
    [[nodiscard]] Counts counts() const;

private:
    /// When an existing file is written again.
    enum class Again { never, whenChanged };
    /// Whether frames that are final by now are said to be so.
    enum class Marks { keep, drop };
    struct Site {
        std::string id;
        std::vector<std::string> standing; ///< the paths of everything but frames
    };
    /// One step of publishing a site; false when it failed.
    using Step = std::function<bool(const Site&)>;

    bool forEachSite(const std::stop_token& stop, const Step& step);
    bool publishFrames(const Site& site, std::size_t most, const std::stop_token& stop);
    bool publishListing(const FrameFolder& folder, Marks marks);
    bool publishList(
        const FrameFolder& folder, const std::string& path, const std::vector<std::string>& there
    );
    bool publishStanding(const Site& site, Again layersAgain, const std::stop_token& stop);
    bool publishWarnings(const std::string& path);
    bool publishPages();
    [[nodiscard]] std::string pathHere(const std::string& path) const;
    bool put(const std::string& path, Again again);
    bool putFrame(const std::string& path);
    bool mark(const std::string& path);
    [[nodiscard]] bool isChanging(const std::string& path);
    void dropMarks(const std::string& folder, const std::vector<std::string>& listed);
    [[nodiscard]] bool isPublished(const QString& name) const;
    bool write(const std::string& path, const QByteArray& bytes);
    void log(const QString& line);
    [[nodiscard]] QString fileOf(const std::string& path) const;

    const ImageTree& m_tree;
    QString m_folder;
    std::vector<Site> m_sites;
    QByteArray m_layerStamp;
    int m_detail;
    std::string m_stampFile; ///< names the map data that the layers were painted from
    std::atomic<std::uint64_t> m_written = 0;
    std::atomic<std::uint64_t> m_failed = 0;
    std::atomic<std::uint64_t> m_deleted = 0;
    std::atomic<FileTime> m_lastGood = 0;
    bool m_isSound = false; ///< this object made or checked every file
    std::mutex m_logMutex;
    ServerLog m_log;
    std::mutex m_changingMutex;
    std::set<std::string> m_changing; ///< paths of frames that could change when they were written
    std::mutex m_warnedMutex;
    std::map<std::string, std::string> m_warned; ///< of what a sharp picture of warnings was made
};

} // namespace raincast
