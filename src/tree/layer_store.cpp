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

} // namespace

LayerStore::LayerStore(const MapData& data, const QString& folder) : m_data(data) {
    if (!folder.isEmpty()) {
        m_folder = folder + u'/' + QLatin1String(kStyle) + u'-' +
                   QString::fromLatin1(data.files().stamp());
        QDir().mkpath(m_folder);
    }
}

std::optional<QByteArray>
LayerStore::layer(LayerKind layer, const AntennaPosition& antenna, Range range) const {
    const std::lock_guard lock(m_painting[static_cast<std::size_t>(layer)]);
    const QString file = fileOf(layer, antenna.id, range);
    const bool isKept = !m_folder.isEmpty();
    if (auto kept = isKept ? wholePictureIn(file) : std::nullopt) {
        return kept;
    }
    const ImageGeometry geometry(antenna.latitude, antenna.longitude, range);
    auto painted = paintLayer(layer, m_data, geometry, range);
    if (painted && isKept) {
        // A layer that cannot be stored is painted again.
        static_cast<void>(replaceFile(file, *painted, Lasting::no));
    }
    return painted;
}

QString LayerStore::fileOf(LayerKind layer, std::string_view site, Range range) const {
    const auto text = [](std::string_view name) {
        return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
    };
    return m_folder + u'/' + text(site) + u'_' + text(nameOf(layer)) + u'_' + text(wordOf(range));
}

} // namespace raincast
