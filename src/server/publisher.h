// SPDX-License-Identifier: MIT
#pragma once

#include "server/image_tree.h"
#include "server/server_log.h"

#include <QString>

#include <stop_token>
#include <string>
#include <vector>

namespace raincast {

/// Writes the image tree as plain files, for a web server, a content network or object storage to
/// serve. Every file gets its name only when it is whole, and a folder's listing (its index.html)
/// names a frame only when the frame is there: whoever reads at any moment finds a good tree.
class Publisher {
public:
    /// `sites` are those that are written; all when empty. `layerStamp` tells when the layers have
    /// to be written again. The tree is borrowed.
    Publisher(
        const ImageTree& tree, QString folder, const QStringList& sites, QByteArray layerStamp,
        ServerLog log
    );

    /// Brings the folder up to date: writes what is new, then deletes the frames that the tree no
    /// longer has. False when a file could not be written (the log says which) or it was asked to
    /// stop.
    [[nodiscard]] bool publish(const std::stop_token& stop = {});

private:
    /// Which of a file that is there already is written again.
    enum class Again { never, whenChanged };

    [[nodiscard]] bool wants(const std::string& site) const;
    bool put(const std::string& path, Again again);
    bool write(const std::string& path, const QByteArray& bytes);
    bool publishFrames(const FrameFolder& folder);
    bool publishStanding(const std::stop_token& stop);
    void deleteOldFrames(const FrameFolder& folder, const std::vector<std::string>& names) const;
    [[nodiscard]] QString fileOf(const std::string& path) const;

    const ImageTree& m_tree;
    QString m_folder;
    std::vector<std::string> m_sites;
    QByteArray m_layerStamp;
    ServerLog m_log;
};

} // namespace raincast
