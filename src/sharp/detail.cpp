// SPDX-License-Identifier: MIT
#include "sharp/detail.h"

#include "geo/view_transform.h"
#include "radar/bitmap.h"
#include "radar/catalogue/tree_index.h"

#include <QSize>

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

namespace raincast {

namespace {

constexpr qint64 kDescribedPixels = qint64{kRadarImageWidth} * kRadarImageHeight;

} // namespace

int wantedDetail(const ViewTransform& view, const QSize& area) {
    const bool hasRoom = qint64{area.width()} * area.height() >= kDescribedPixels;
    return hasRoom ? std::min(1 << std::max(-view.zoom(), 0), kMostDetail) : 1;
}

int lettersDetail(int detail, double devicePixelRatio) {
    const double ratio = std::clamp(devicePixelRatio, 1.0, double{kMostDetail});
    const auto times = std::bit_floor(static_cast<unsigned>(ratio + 0.5));
    return std::max(detail / static_cast<int>(times), 1);
}

QString sharpPath(const QString& path, int detail) {
    const std::string described = path.toStdString();
    const auto sharp = sharpPath(std::string_view(described), detail);
    return QString::fromStdString(sharp.value_or(described));
}

QString sharpRoot(const QString& path, int detail) {
    return sharpPath(path.left(path.indexOf(u'/', 1) + 1), detail);
}

} // namespace raincast
