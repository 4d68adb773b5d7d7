// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/tree_index.h"
#include "tree/found_files.h"
#include "tree/frame_source.h"
#include "tree/server_log.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>

namespace raincast {

struct PolarScan;

/// Frames of the NEXRAD Level III products that somebody else puts into a folder (and the folders
/// in it). Each product is rendered once. The frame stays in a store of our own until it is too
/// old, even when the product's file goes. A stored frame whose file is gone or not whole is made
/// again if its product is still there.
///
/// Files whose names begin with a dot are ignored: they are still being written. A file that cannot
/// be decoded is tried again when it has changed. Products that are ignored for one reason are
/// logged once: a feed is full of them.
class Level3Folder : public FrameSource {
public:
    /// The store is a folder that only this object uses; frames of an earlier run count. Relative
    /// paths start at the present working folder. Frames older than `hours` are deleted and
    /// products of that age ignored; 0 keeps all.
    Level3Folder(const QString& folder, const QString& store, int hours, ServerLog log);

    /// Called with a folder before its files are listed: what is put there later is not seen.
    using Entering = std::function<void(const QString& folder)>;

    /// Looks at everything in the folder and renders the new products; returns the number of new
    /// frames. This and the next four are for one thread at a time; others may call those below
    /// meanwhile. Ends early when asked to stop.
    int rescan(const std::stop_token& stop = {}, const Entering& entering = {});

    /// The same for these files, and for all in these folders: paths that begin with folder().
    int lookAt(QStringList paths, const std::stop_token& stop = {}, const Entering& entering = {});

    /// Files that somebody is writing: lookAgain() looks at them.
    void expect(const QStringList& files);

    /// Looks again at files that were not whole, and deletes frames that are too old. To be called
    /// every few seconds.
    int lookAgain(const std::stop_token& stop = {});

    /// Whether there are frames that only a rescan makes: one of the store was damaged, or the disk
    /// was full, and files wait for that.
    [[nodiscard]] bool needsRescan() const { return m_isDoubtful || m_isCut; }

    /// An absolute path.
    [[nodiscard]] const QString& folder() const { return m_folder; }

    [[nodiscard]] std::vector<FileTime>
    frameTimes(std::string_view site, Product product, FileTime upTo) const override;
    [[nodiscard]] std::optional<QByteArray>
    frame(std::string_view site, Product product, FileTime time) const override;
    [[nodiscard]] std::optional<QByteArray>
    sharpFrame(std::string_view site, Product product, FileTime time, int detail) const override;
    /// From the first rescan on, or when there are frames of an earlier run.
    [[nodiscard]] bool isReady() const override;
    [[nodiscard]] std::optional<SourceCounts> counts() const override;
    /// None: Level III products hold no warnings.
    [[nodiscard]] WeatherWarnings
    warnings(std::string_view site, Range range, FileTime time) const override;

private:
    using Key = std::pair<std::string, Product>;
    /// Some files, looked at one by one.
    struct Turn {
        qint64 begin = 0; ///< milliseconds since 1970
        QHash<QString, FileState>
            seen;       ///< files that need not be read again while they are the same
        int frames = 0; ///< made so far
    };

    enum class Outcome {
        done,      ///< rendered, or of no use
        undecoded, ///< tried again when it has changed
        unstored,  ///< tried again at the next rescan
    };

    void loadStore();
    void dropDamagedFrames(const std::stop_token& stop);
    Turn lookAtAll(FoundFiles files, const std::stop_token& stop);
    Outcome look(const FoundFile& file, Turn& turn);
    Outcome take(const QString& path, bool isFresh, int& made);
    Outcome storeFrames(const PolarScan& scan, FileTime time, int& made);
    [[nodiscard]] QString productOf(const Key& key, FileTime time) const;
    void noteProduct(const PolarScan& scan, FileTime time, const QString& file);
    [[nodiscard]] bool isStored(const Key& key, FileTime time) const;
    [[nodiscard]] bool store(const QString& file, const QByteArray& bytes);
    [[nodiscard]] std::optional<QString> whyNotShown(const PolarScan& scan, FileTime time) const;
    void logOnce(const QString& name, const QString& reason);
    [[nodiscard]] bool isTooOld(FileTime time) const;
    void forgetOldFrames();
    [[nodiscard]] QString fileOf(const FrameFolder& folder, FileTime time) const;

    QString m_folder;
    QString m_store;
    int m_hours;
    ServerLog m_log;
    QHash<QString, FileState> m_seen; ///< the rescanning thread's only
    QSet<QString> m_unfinished;       ///< the same: files to be looked at again soon
    QStringList m_logged;             ///< the same: reasons why products are not shown
    bool m_cannotStore = false;       ///< the same: this is logged already
    bool m_isCut = false;             ///< the same: files are waiting for the next rescan
    /// The store must be checked: it is from an earlier run, or a file of it was damaged.
    mutable std::atomic<bool> m_isDoubtful = true;
    std::atomic<std::uint64_t> m_read = 0;
    std::atomic<std::uint64_t> m_failed = 0;
    std::atomic<bool> m_hasScanned = false;
    mutable std::mutex m_mutex; ///< of what follows
    std::map<Key, std::set<FileTime>> m_times;
    std::map<Key, std::map<FileTime, QString>> m_products; ///< the files that frames are made of
};

} // namespace raincast
