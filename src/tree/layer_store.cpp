// SPDX-License-Identifier: MIT
#include "tree/layer_store.h"

#include "core/whole_file.h"
#include "maps/layer_painter.h"
#include "tree/whole_picture.h"

#include <QDir>

namespace raincast {

namespace {

// Counts the changes of how layers look.
constexpr auto kStyle = "1";

QString textOf(std::string_view name) {
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

/// Deletes the files of a folder that were written first until the others have at most so many
/// bytes.
void deleteOldest(const QString& folder, qint64 mostBytes) {
    qint64 bytes = 0;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files, QDir::Time)) {
        bytes += file.size();
        if (bytes > mostBytes) {
            QFile::remove(file.filePath());
        }
    }
}

} // namespace

LayerStore::LayerStore(const MapData& data, const QString& folder, qint64 mostSharpBytes)
    : m_data(data), m_mostSharpBytes(mostSharpBytes) {
    if (!folder.isEmpty()) {
        const QString look =
            QLatin1String(kStyle) + u'-' + QString::fromLatin1(data.files().stamp());
        m_folder = folder + u'/' + look;
        // One folder for all looks: its bound holds for those of earlier data, too.
        m_sharpFolder = folder + QStringLiteral("/sharp");
        m_sharpPrefix = look + u'_';
        QDir().mkpath(m_folder);
    }
}

std::optional<QByteArray> LayerStore::layer(const Wanted& wanted) const {
    const std::lock_guard lock(paintingOf(wanted));
    const QString file = fileOf(wanted);
    const bool isKept = !m_folder.isEmpty();
    if (auto kept = isKept ? wholePictureIn(file) : std::nullopt) {
        return kept;
    }
    const ImageGeometry geometry(
        wanted.antenna.latitude, wanted.antenna.longitude, wanted.range, wanted.detail
    );
    auto painted = paintLayer(wanted.layer, m_data, geometry, wanted.range);
    if (painted && isKept) {
        keep(file, *painted, wanted.detail > 1);
    }
    return painted;
}

std::mutex& LayerStore::paintingOf(const Wanted& wanted) const {
    const std::size_t half = wanted.detail == 1 ? 0 : kAllLayers.size();
    return m_painting[half + static_cast<std::size_t>(wanted.layer)];
}

// A layer that cannot be stored is painted again.
void LayerStore::keep(const QString& file, const QByteArray& painted, bool isSharp) const {
    if (!isSharp) {
        static_cast<void>(replaceFile(file, painted, Lasting::no));
        return;
    }
    const std::lock_guard lock(m_sharpMutex);
    QDir().mkpath(m_sharpFolder);
    static_cast<void>(replaceFile(file, painted, Lasting::no));
    deleteOldest(m_sharpFolder, m_mostSharpBytes);
}

QString LayerStore::fileOf(const Wanted& wanted) const {
    const QString name = textOf(wanted.antenna.id) + u'_' + textOf(nameOf(wanted.layer)) + u'_' +
                         textOf(wordOf(wanted.range));
    return wanted.detail == 1 ? m_folder + u'/' + name
                              : m_sharpFolder + u'/' + m_sharpPrefix + name +
                                    QStringLiteral("_x%1").arg(wanted.detail);
}

} // namespace raincast
