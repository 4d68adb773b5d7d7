// SPDX-License-Identifier: MIT
#include "tree/publisher.h"

#include "core/clock.h"
#include "core/whole_file.h"
#include "radar/catalogue/antenna_positions.h"
#include "tree/listing_page.h"
#include "tree/whole_picture.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <limits>
#include <map>
#include <thread>

namespace raincast {

namespace {

constexpr std::size_t kFramesOfAnHour = 16;
constexpr auto kAllFrames = std::numeric_limits<std::size_t>::max();

/// How many sites are worked on at once: sharp pictures leave processors to the described ones.
std::size_t mostAtOnce(int detail) {
    const unsigned processors = std::thread::hardware_concurrency();
    return std::clamp(detail == 1 ? processors : processors / 2, 1U, 8U);
}

// Far more than any file of the tree has.
constexpr qint64 kMostBytes = qint64{16} * 1024 * 1024;

/// The file that says that a frame is not final.
std::string markOf(const std::string& path) {
    std::string name = path;
    return name.insert(name.rfind('/') + 1, ".");
}

bool has(const QString& path, const QByteArray& bytes) {
    return readWhole(path, kMostBytes) == bytes;
}

/// Removes what this program writes into a folder of frames, and the folder if it is empty then. A
/// link's target is not ours.
void removePictures(const QString& name) {
    QDir folder(name);
    if (QFileInfo(name).isSymLink() || !folder.exists()) {
        return;
    }
    const QStringList ours{"*.gif", ".*.gif", "*.part"};
    for (const QString& file : folder.entryList(ours, QDir::Files | QDir::Hidden)) {
        folder.remove(file);
    }
    QDir().rmdir(name);
}

} // namespace

Publisher::Publisher(const ImageTree& tree, QString folder, const What& what, ServerLog log)
    : m_tree(tree), m_folder(std::move(folder)), m_layerStamp(what.layerStamp),
      m_detail(what.detail),
      m_stampFile("/.layers" + (m_detail == 1 ? std::string() : "-x" + std::to_string(m_detail))),
      m_log(std::move(log)) {
    std::map<std::string, std::vector<std::string>> standing;
    for (const std::string& path : standingPaths()) {
        if (const auto item = findTreeItem(pathHere(path))) {
            standing[item->site].push_back(pathHere(path));
        }
    }
    for (const AntennaPosition& antenna : antennaPositions()) {
        const std::string id(antenna.id);
        if (what.sites.isEmpty() || what.sites.contains(QString::fromStdString(id))) {
            m_sites.push_back({id, standing[id]});
        }
    }
}

// Does a step for all sites, several at once; the first that fails ends it.
bool Publisher::forEachSite(const std::stop_token& stop, const Step& step) {
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> good = true;
    const auto work = [&] {
        for (std::size_t i = next++; i < m_sites.size() && good && !stop.stop_requested();
             i = next++) {
            if (!step(m_sites[i])) {
                good = false;
            }
        }
    };
    {
        std::vector<std::jthread> workers(std::min(mostAtOnce(m_detail), m_sites.size()));
        for (std::jthread& worker : workers) {
            worker = std::jthread(work);
        }
    }
    return good && !stop.stop_requested();
}

void Publisher::log(const QString& line) {
    const std::lock_guard lock(m_logMutex);
    m_log.error(line);
}

// Where what has a described path stands at this detail.
std::string Publisher::pathHere(const std::string& path) const {
    return m_detail == 1 ? path : sharpPath(path, m_detail).value_or(path);
}

QString Publisher::fileOf(const std::string& path) const {
    return m_folder + QString::fromStdString(path);
}

bool Publisher::write(const std::string& path, const QByteArray& bytes) {
    const QString name = fileOf(path);
    QDir().mkpath(QFileInfo(name).path());
    // A file that a power cut takes is made again.
    const auto written = replaceFile(name, bytes, Lasting::no);
    ++(written ? m_written : m_failed);
    if (!written) {
        log(QStringLiteral("Cannot write %1: %2.").arg(name, written.error()));
    }
    return written.has_value();
}

// Whether a file that never changes is there. Only pictures show whether they are whole; any other
// file is compared with its bytes.
bool Publisher::isPublished(const QString& name) const {
    return m_isSound ? QFileInfo::exists(name) : wholePictureIn(name).has_value();
}

bool Publisher::put(const std::string& path, Again again) {
    const QString name = fileOf(path);
    if (again == Again::never && isPublished(name)) {
        return true;
    }
    const auto answer = m_tree.find(path);
    if (!answer) {
        // A frame may be gone by the time that its turn comes, or its product may not have been
        // found yet. What is not whole must not be taken for it meanwhile.
        if (QFileInfo::exists(name) && !isPublished(name)) {
            QFile::remove(name);
        }
        return true;
    }
    return has(name, answer->body.bytes()) || write(path, answer->body.bytes());
}

bool Publisher::isChanging(const std::string& path) {
    const std::lock_guard lock(m_changingMutex);
    return m_changing.contains(path);
}

// Says that a frame is not final.
bool Publisher::mark(const std::string& path) {
    const std::string name = markOf(path);
    return QFileInfo::exists(fileOf(name)) || write(name, {});
}

// Says that all listed frames of a folder are final but those that may change and the newest.
// Those that are not listed are gone.
void Publisher::dropMarks(const std::string& folder, const std::vector<std::string>& listed) {
    QDir dir(fileOf(folder));
    for (const QString& mark :
         dir.entryList({QStringLiteral(".*.gif")}, QDir::Files | QDir::Hidden)) {
        const std::string name = mark.mid(1).toStdString();
        const bool isListed = std::binary_search(listed.begin(), listed.end(), name);
        const bool isNewest = isListed && name == listed.back();
        if (isListed && (isNewest || isChanging(folder + name))) {
            continue;
        }
        dir.remove(mark);
        const std::lock_guard lock(m_changingMutex);
        m_changing.erase(folder + name);
    }
}

// A frame that may change is written again until it is seen that it does not any more.
bool Publisher::putFrame(const std::string& path) {
    const bool mayChange = m_tree.mayChange(path);
    // An earlier run may have ended before it was seen.
    const bool mayHaveChanged = !m_isSound && QFileInfo::exists(fileOf(markOf(path)));
    if ((mayChange || m_tree.isNewest(path)) && !mark(path)) {
        return false;
    }
    const bool again = mayChange || mayHaveChanged || isChanging(path);
    if (!put(path, again ? Again::whenChanged : Again::never)) {
        return false;
    }
    const std::lock_guard lock(m_changingMutex);
    if (mayChange) {
        m_changing.insert(path);
    } else {
        m_changing.erase(path);
    }
    return true;
}

// The newest `most` frames of all of a site's products. The oldest of them first, and all products
// of a time together: they are made of the same data.
bool Publisher::publishFrames(const Site& site, std::size_t most, const std::stop_token& stop) {
    std::map<FileTime, std::vector<std::string>> paths;
    for (const Product product : kAllProducts) {
        const FrameFolder folder{site.id, product};
        const auto names = m_tree.framesIn(folder);
        const auto skipped = names.size() - std::min(most, names.size());
        std::for_each(
            names.begin() + static_cast<std::ptrdiff_t>(skipped), names.end(),
            [&](const std::string& name) {
                const std::string path = pathHere(pathOf(folder)) + name;
                paths[findTreeItem(path)->time].push_back(path);
            }
        );
    }
    for (const auto& [time, frames] : paths) {
        for (const std::string& path : frames) {
            if (stop.stop_requested() || !putFrame(path)) {
                return false;
            }
        }
    }
    // A frame that an earlier run left unfinished keeps its mark until its turn has come.
    const Marks marks = m_isSound || most == kAllFrames ? Marks::drop : Marks::keep;
    return std::all_of(kAllProducts.begin(), kAllProducts.end(), [&](Product product) {
        return publishListing({site.id, product}, marks);
    });
}

// The list of a folder's frames. Sharp ones have none: their names are those of the others.
bool Publisher::publishList(
    const FrameFolder& folder, const std::string& path, const std::vector<std::string>& there
) {
    if (m_detail > 1) {
        return true;
    }
    const QByteArray listing = listingPage(pathOf(folder), there);
    const std::string index = path + "index.html";
    return has(fileOf(index), listing) || write(index, listing);
}

// Lists the frames that are there, then deletes those that the tree no longer has.
bool Publisher::publishListing(const FrameFolder& folder, Marks marks) {
    const std::string path = pathHere(pathOf(folder));
    QDir dir(fileOf(path));
    const auto names = m_tree.framesIn(folder);
    std::vector<std::string> there;
    QStringList old;
    for (const QString& file : dir.entryList({QStringLiteral("*.gif")}, QDir::Files, QDir::Name)) {
        if (const auto name = file.toStdString();
            std::binary_search(names.begin(), names.end(), name)) {
            there.push_back(name);
        } else {
            old += file;
        }
    }
    if (!there.empty() && !mark(path + there.back())) {
        return false;
    }
    if (!publishList(folder, path, there)) {
        return false;
    }
    if (!m_isSound) {
        removeAbandonedFiles(dir.path());
    }
    for (const QString& file : old) {
        m_deleted += dir.remove(file) ? 1 : 0;
    }
    // A mark goes after its frame.
    if (marks == Marks::drop) {
        dropMarks(path, there);
    }
    return true;
}

bool Publisher::publishStanding(const Site& site, Again layersAgain, const std::stop_token& stop) {
    return std::all_of(site.standing.begin(), site.standing.end(), [&](const std::string& path) {
        const auto kind = findTreeItem(path)->kind;
        const bool isOfWarnings =
            kind == TreeItem::Kind::warnings || kind == TreeItem::Kind::warningTexts;
        return !stop.stop_requested() &&
               (isOfWarnings ? publishWarnings(path) : put(path, layersAgain));
    });
}

// A sharp picture is costly: it is not made to see that nothing has changed, which the texts and
// the described picture show.
bool Publisher::publishWarnings(const std::string& path) {
    std::string madeOf;
    if (m_detail > 1) {
        const TreeItem item = *findTreeItem(path);
        const std::string described =
            "/ridge/Warnings/" + std::string(wordOf(item.range)) + "/" + item.site + "_Warnings_0";
        for (const char* end : {".json", ".gif"}) {
            const auto answer = m_tree.find(described + end);
            madeOf += answer ? answer->body.tag() : std::string();
        }
        const std::lock_guard lock(m_warnedMutex);
        const auto known = m_warned.find(path);
        if (m_isSound && known != m_warned.end() && known->second == madeOf &&
            QFileInfo::exists(fileOf(path))) {
            return true;
        }
    }
    if (!put(path, Again::whenChanged)) {
        return false;
    }
    const std::lock_guard lock(m_warnedMutex);
    m_warned[path] = madeOf;
    return true;
}

bool Publisher::publishPages() {
    if (m_detail > 1) {
        return true;
    }
    const auto home = m_tree.find("/");
    const auto status = m_tree.find("/status");
    return (!home || write("/index.html", home->body.bytes())) &&
           (!status || write("/status", status->body.bytes()));
}

bool Publisher::publish(const std::stop_token& stop) {
    const bool sameData = has(fileOf(m_stampFile), m_layerStamp);
    const Again layersAgain = sameData ? Again::never : Again::whenChanged;
    const auto frames = [&](std::size_t most) {
        return forEachSite(stop, [&](const Site& site) { return publishFrames(site, most, stop); });
    };
    const auto standing = [&] {
        return forEachSite(stop, [&](const Site& site) {
            return publishStanding(site, layersAgain, stop);
        });
    };
    const bool good = frames(1) && standing() && publishPages() &&
                      (sameData || write(m_stampFile, m_layerStamp)) && frames(kFramesOfAnHour) &&
                      frames(kAllFrames) && publishPages();
    m_isSound = m_isSound || good;
    if (good) {
        m_lastGood = Clock::real().now();
    }
    return good;
}

void Publisher::remove() {
    for (const Site& site : m_sites) {
        for (const std::string& path : site.standing) {
            QFile::remove(fileOf(path));
        }
        for (const Product product : kAllProducts) {
            removePictures(fileOf(pathHere(pathOf({site.id, product}))));
        }
    }
    QFile::remove(fileOf(m_stampFile));
}

Publisher::Counts Publisher::counts() const {
    return {m_written, m_failed, m_deleted, m_lastGood};
}

} // namespace raincast
