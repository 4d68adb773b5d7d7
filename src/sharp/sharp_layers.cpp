// SPDX-License-Identifier: MIT
#include "sharp/sharp_layers.h"

#include "basemap/map_layer.h"
#include "drawing/shrink.h"
#include "image/composite.h"
#include "image/image_file.h"
#include "radar/cache.h"
#include "radar/catalogue/products.h"

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

using State = SharpRecord::State;

/// A layer for a picture of several.
struct Part {
    QString described; ///< its file, for want of a sharp picture
    SharpPicture sharp;
};

SharpSource sourceOf(const MapLayer& layer, const RadarState& state) {
    const QStringView range = ProductRange(state.product);
    const QString folder = siteCacheFolder(state.cacheRoot(), state.siteId);
    const FileKind& kind = layer.kind;
    return {
        serverPathOf(layer, state.siteId, range),
        folder + u'/' + fileNameOf(layer, state.siteId, range),
        {kind.name, kind.tellingBytes, kind.isOne, true},
        layer.source == MapLayer::Source::basemapServer ? SharpSource::Server::basemap
                                                        : SharpSource::Server::radar,
        SharpSource::Use::layer};
}

/// A layer with `detail` times as many pixels as described; null where there is none.
QImage pictureOf(const Part& part, int detail) {
    if (part.sharp) {
        const DetailedBitmap sharp = part.sharp.unpacked();
        return sharp ? enlarge(*sharp, detail / sharp.detail) : QImage();
    }
    const Bitmap described = LoadImageFile(part.described, kMostRadarPixels);
    const QRect image(0, 0, kRadarImageWidth, kRadarImageHeight);
    return described ? enlarge(described->copy(described->rect() & image), detail) : QImage();
}

/// The layers over each other.
Bitmap composed(const std::vector<Part>& parts, int detail) {
    Bitmap all;
    for (const Part& part : parts) {
        QImage picture = pictureOf(part, detail);
        const QSize size = QSize(kRadarImageWidth, kRadarImageHeight) * detail;
        if (all || picture.size() != size) {
            CompositeOnto(all, picture, size.width(), size.height());
        } else {
            all = std::make_shared<QImage>(std::move(picture));
        }
    }
    return all;
}

} // namespace

SharpLayers::SharpLayers(std::function<void()> changed) : m_changed(std::move(changed)) {}

bool SharpLayers::follow(
    const RadarScene& scene, int detail, int lettersDetail, SharpQueue& queue
) {
    bool coming = false;
    for (Group* const group : {&m_ground, &m_overlay}) {
        const bool onTopo = group == &m_ground;
        const Bitmap& described = onTopo ? scene.basemaps.topo : scene.basemaps.overlay;
        const Group::Key key{
            described ? described->cacheKey() : 0,
            siteCacheFolder(scene.state.cacheRoot(), scene.state.siteId), detail,
            onTopo ? 0 : lettersDetail};
        if (key != group->key) {
            // A coarser one of the same does until the finer comes.
            const bool standsIn =
                key.described == group->key.described && key.detail > group->key.detail;
            const DetailedBitmap before = standsIn ? group->picture : nullptr;
            *group = {};
            group->key = key;
            group->picture = before;
            begin(*group, scene, onTopo);
        }
        coming = follow(*group, queue) || coming;
    }
    return coming;
}

void SharpLayers::begin(Group& group, const RadarScene& scene, bool onTopo) {
    if (group.key.described == 0) {
        return;
    }
    for (const MapLayer& layer : mapLayers()) {
        const bool isPart =
            scene.shown.*layer.shown && layer.isOnTopo(scene.basemaps.topo != nullptr) == onTopo;
        if (!isPart) {
            continue;
        }
        const bool hasLetters = layer.shown == &BasemapLayers::cities;
        const int detail = hasLetters ? group.key.lettersDetail : group.key.detail;
        auto record = std::make_shared<SharpRecord>(SharpRecord{sourceOf(layer, scene.state)});
        record->detail = detail;
        record->state = detail > 1 ? State::unknown : State::settled;
        group.records.push_back(std::move(record));
    }
}

bool SharpLayers::follow(Group& group, SharpQueue& queue) {
    if (group.isComposing || queue.begin(group.records, true)) {
        return true;
    }
    const bool hasNew =
        std::any_of(group.records.begin(), group.records.end(), [](const auto& record) {
            return bool(record->picture);
        });
    if (!hasNew) {
        return false;
    }
    if (!std::exchange(group.isComposed, false)) {
        compose(group);
        return true;
    }
    // One has come late: the others are read again for it.
    for (const auto& record : group.records) {
        record->state = record->detail > 1 ? State::unknown : State::settled;
    }
    return queue.begin(group.records, true);
}

void SharpLayers::compose(Group& group) {
    std::vector<Part> parts;
    int detail = 1;
    for (const auto& record : group.records) {
        parts.push_back({record->source.file, std::exchange(record->picture, {})});
        detail = std::max(detail, parts.back().sharp.detail());
    }
    group.isComposing = true;
    group.background = std::make_unique<Background>();
    group.background->run(
        [parts = std::move(parts), detail] { return composed(parts, detail); },
        [this, &group, detail](const Bitmap& picture) {
            group.isComposing = false;
            group.isComposed = true;
            group.picture = {picture, detail};
            m_changed();
        }
    );
}

void SharpLayers::beginAnew() {
    for (Group* const group : {&m_ground, &m_overlay}) {
        for (auto& record : group->records) {
            const bool isNothing = record->detail == 1;
            SharpRecord next{record->source, 0, record->detail};
            next.state = isNothing ? State::settled : State::unknown;
            record = std::make_shared<SharpRecord>(std::move(next));
        }
        group->isComposed = group->isComposing = false;
        group->background.reset();
    }
}

void SharpLayers::release() {
    m_ground = {};
    m_overlay = {};
}

int SharpLayers::detail() const {
    return std::max(m_ground.picture.detail, m_overlay.picture.detail);
}

DetailedBitmap SharpLayers::ground(const Bitmap& described) const {
    const bool isOf = described && described->cacheKey() == m_ground.key.described;
    return isOf && m_ground.picture ? m_ground.picture : described;
}

DetailedBitmap SharpLayers::overlay(const Bitmap& described) const {
    const bool isOf = described && described->cacheKey() == m_overlay.key.described;
    return isOf && m_overlay.picture ? m_overlay.picture : described;
}

} // namespace raincast
