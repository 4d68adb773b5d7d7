// SPDX-License-Identifier: MIT
#include "server/publisher.h"

#include "server/listing_page.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace raincast {

namespace {

// Says which map data the layers were painted from.
constexpr auto kStampFile = "/.layers";

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Publisher::Publisher(
    const ImageTree& tree, QString folder, const QStringList& sites, QByteArray layerStamp,
    ServerLog log
)
    : m_tree(tree), m_folder(std::move(folder)), m_layerStamp(std::move(layerStamp)),
      m_log(std::move(log)) {
    for (const QString& site : sites) {
        m_sites.push_back(site.toStdString());
    }
}

bool Publisher::wants(const std::string& site) const {
    return m_sites.empty() || std::find(m_sites.begin(), m_sites.end(), site) != m_sites.end();
}

QString Publisher::fileOf(const std::string& path) const {
    return m_folder + QString::fromStdString(path);
}

bool Publisher::write(const std::string& path, const QByteArray& bytes) {
    const QString name = fileOf(path);
    QDir().mkpath(QFileInfo(name).path());
    QSaveFile file(name);
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    if (!written) {
        m_log(QStringLiteral("Cannot write %1: %2.").arg(name, file.errorString()));
    }
    return written;
}

bool Publisher::put(const std::string& path, Again again) {
    const QString name = fileOf(path);
    if (again == Again::never && QFileInfo::exists(name)) {
        return true;
    }
    const auto answer = m_tree.find(path);
    // A frame may be gone by the time that its turn comes.
    return !answer || contentsOf(name) == answer->body || write(path, answer->body);
}

bool Publisher::publishFrames(const FrameFolder& folder) {
    const std::string path = pathOf(folder);
    const auto names = m_tree.framesIn(folder);
    // The newest first: at the first start they are what people wait for.
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (!put(path + *name, Again::never)) {
            return false;
        }
    }
    const QByteArray listing = listingPage(path, names);
    const std::string index = path + "index.html";
    if (contentsOf(fileOf(index)) != listing && !write(index, listing)) {
        return false;
    }
    deleteOldFrames(folder, names);
    return true;
}

void Publisher::deleteOldFrames(const FrameFolder& folder, const std::vector<std::string>& names)
    const {
    const QDir dir(fileOf(pathOf(folder)));
    for (const QString& name : dir.entryList({QStringLiteral("*.gif")}, QDir::Files)) {
        if (!std::binary_search(names.begin(), names.end(), name.toStdString())) {
            QFile::remove(dir.filePath(name));
        }
    }
}

bool Publisher::publishStanding(const std::stop_token& stop) {
    const QString stampFile = m_folder + QLatin1String(kStampFile);
    const bool sameData = contentsOf(stampFile) == m_layerStamp;
    for (const std::string& path : standingPaths()) {
        const auto item = findTreeItem(path);
        if (!item || !wants(item->site)) {
            continue;
        }
        const bool isLasting = sameData && item->kind != TreeItem::Kind::warnings;
        if (stop.stop_requested() || !put(path, isLasting ? Again::never : Again::whenChanged)) {
            return false;
        }
    }
    return sameData || write(kStampFile, m_layerStamp);
}

bool Publisher::publish(const std::stop_token& stop) {
    for (const FrameFolder& folder : allFrameFolders()) {
        if (wants(folder.site) && (stop.stop_requested() || !publishFrames(folder))) {
            return false;
        }
    }
    if (!publishStanding(stop)) {
        return false;
    }
    const auto home = m_tree.find("/");
    const auto status = m_tree.find("/status");
    return (!home || write("/index.html", home->body)) &&
           (!status || write("/status", status->body));
}

} // namespace raincast
