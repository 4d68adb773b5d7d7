// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/tree_index.h"
#include "tree/frame_source.h"
#include "tree/server_log.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <map>
#include <mutex>
#include <set>
#include <stop_token>

class QFileInfo;

namespace raincast {

struct PolarScan;

/// Frames of the NEXRAD Level III products that somebody else puts into a folder (and the folders
/// in it): each product is rendered once, and the frame is kept in a store of our own until it is
/// too old, whatever becomes of the product's file. A stored frame whose file is gone or not whole
/// is made again if its product is still there.
///
/// Files whose names begin with a dot are left alone: they are still being written. A file that
/// cannot be decoded is tried again when it has changed. Why products are left alone that could be
/// decoded is logged for the first of them only: a feed is full of such.
class Level3Folder : public FrameSource {
public:
    /// The store is a folder of this object's alone; the frames that are in it from an earlier run
    /// count. Both are looked for from the present working folder on, for good. Frames older than
    /// `hours` before now are deleted and products of that age ignored; 0 keeps all.
    Level3Folder(const QString& folder, const QString& store, int hours, ServerLog log);

    /// Looks what is new in the folder and renders it; returns how many frames that gave. For one
    /// thread at a time; the questions below may come from others meanwhile. Ends early when asked
    /// to stop.
    int rescan(const std::stop_token& stop = {});

    /// The folder and those in it, as of the last rescan, for whoever watches them.
    [[nodiscard]] QStringList folders() const;

    [[nodiscard]] std::vector<FileTime>
    frameTimes(std::string_view site, Product product, FileTime upTo) const override;
    [[nodiscard]] std::string
    frame(std::string_view site, Product product, FileTime time) const override;
    /// Nothing but ground: Level III products tell no warnings.
    [[nodiscard]] std::string
    warnings(std::string_view site, Range range, FileTime time) const override;

private:
    using Key = std::pair<std::string, Product>;
    /// What a file looked like when it was read.
    struct Seen {
        qint64 bytes = -1;
        qint64 changed = 0; ///< milliseconds since 1970

        friend bool operator==(const Seen&, const Seen&) = default;
    };

    enum class Outcome {
        done,      ///< rendered, or of no use
        undecoded, ///< tried again when it has changed
        unstored,  ///< tried again at the next turn
    };

    void loadStore();
    void dropDamagedFrames(const std::stop_token& stop);
    Outcome take(const QFileInfo& file, bool isFresh, int& made);
    [[nodiscard]] bool isStored(const Key& key, FileTime time) const;
    [[nodiscard]] bool store(const QString& file, const std::string& bytes);
    [[nodiscard]] QString whyNotShown(const PolarScan& scan, FileTime time) const;
    void tellOnce(const QString& name, const QString& reason);
    [[nodiscard]] bool isTooOld(FileTime time) const;
    void forgetOldFrames();
    [[nodiscard]] QString fileOf(const FrameFolder& folder, FileTime time) const;

    QString m_folder;
    QString m_store;
    int m_hours;
    ServerLog m_log;
    QHash<QString, Seen> m_seen; ///< the rescanning thread's only
    QStringList m_told;          ///< the same: why products were not shown
    bool m_cannotStore = false;  ///< the same: it is known, and was told
    /// The store is to be looked through: it is from an earlier run, or a file of it was damaged.
    mutable std::atomic<bool> m_isDoubtful = true;
    mutable std::mutex m_mutex; ///< of what follows
    std::map<Key, std::set<FileTime>> m_times;
    QStringList m_folders;
};

} // namespace raincast
