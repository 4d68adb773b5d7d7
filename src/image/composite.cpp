// SPDX-License-Identifier: MIT
#include "image/composite.h"

#include "image/image_file.h"

#include <algorithm>
#include <array>
#include <optional>

namespace raincast {

namespace {

constexpr int kTableSize = 256;
using Entries = std::array<bool, kTableSize>;
using Translation = std::array<uchar, kTableSize>;

/// What both pictures cover.
QSize overlap(const QImage& target, const QImage& source) {
    return target.size().boundedTo(source.size());
}

Entries usedEntries(const QImage& picture) {
    Entries used{};
    for (int row = 0; row < picture.height(); ++row) {
        const uchar* line = picture.constScanLine(row);
        for (int column = 0; column < picture.width(); ++column) {
            used[line[column]] = true;
        }
    }
    return used;
}

/// An entry of `table` for `colour`: one that has it already, or one that no pixel uses, which then
/// gets it. Nothing when all entries are taken.
std::optional<uchar> entryFor(QRgb colour, QList<QRgb>& table, Entries& taken) {
    auto entry = table.indexOf(colour);
    if (entry < 0) {
        entry = std::find(taken.begin(), taken.end(), false) - taken.begin();
        if (entry == kTableSize) {
            return std::nullopt;
        }
        table[entry] = colour;
    }
    taken[static_cast<std::size_t>(entry)] = true;
    return static_cast<uchar>(entry);
}

/// Which entry of the target stands for each entry that the source uses, the target's colour table
/// extended as needed. Nothing when the colours of both do not fit into it.
std::optional<Translation>
translation(QList<QRgb>& table, Entries taken, const QImage& source, const Entries& wanted) {
    Translation result{};
    for (int i = 0; i < source.colorCount(); ++i) {
        const auto index = static_cast<std::size_t>(i);
        if (!wanted[index] || source.color(i) == kTransparentWhite) {
            continue;
        }
        const auto entry = entryFor(source.color(i), table, taken);
        if (!entry) {
            return std::nullopt;
        }
        result[index] = *entry;
    }
    return result;
}

/// Draws one indexed picture over another; false, and nothing drawn, when their colours together
/// are too many.
bool compositeIndexed(QImage& target, const QImage& source) {
    QList<QRgb> table = target.colorTable();
    table.resize(kTableSize, kTransparentWhite);
    const auto translate = translation(table, usedEntries(target), source, usedEntries(source));
    if (!translate) {
        return false;
    }
    Entries opaque{};
    for (int i = 0; i < source.colorCount(); ++i) {
        opaque[static_cast<std::size_t>(i)] = source.color(i) != kTransparentWhite;
    }
    target.setColorTable(table);
    const QSize size = overlap(target, source);
    for (int row = 0; row < size.height(); ++row) {
        const uchar* from = source.constScanLine(row);
        uchar* to = target.scanLine(row);
        for (int column = 0; column < size.width(); ++column) {
            if (opaque[from[column]]) {
                to[column] = (*translate)[from[column]];
            }
        }
    }
    return true;
}

void compositeRgb(QImage& target, const QImage& source) {
    target.convertTo(QImage::Format_RGB32);
    const QImage rgb = source.convertToFormat(QImage::Format_RGB32);
    const QSize size = overlap(target, rgb);
    for (int row = 0; row < size.height(); ++row) {
        const auto* from = reinterpret_cast<const QRgb*>(rgb.constScanLine(row));
        auto* to = reinterpret_cast<QRgb*>(target.scanLine(row));
        for (int column = 0; column < size.width(); ++column) {
            if (from[column] != kTransparentWhite) {
                to[column] = from[column];
            }
        }
    }
}

Bitmap whiteBitmap(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    if (image.isNull()) {
        return nullptr;
    }
    image.fill(kTransparentWhite);
    return std::make_shared<QImage>(std::move(image));
}

} // namespace

void CompositeOnto(Bitmap& target, const QImage& source, int width, int height) {
    if (!target) {
        target = whiteBitmap(width, height);
    }
    if (!target || source.isNull()) {
        return;
    }
    const bool bothIndexed =
        target->format() == QImage::Format_Indexed8 && source.format() == QImage::Format_Indexed8;
    if (!bothIndexed || !compositeIndexed(*target, source)) {
        compositeRgb(*target, source);
    }
}

bool LoadAndComposite(const QString& path, Bitmap& target) {
    const Bitmap loaded = LoadImageFile(path, kMostRadarPixels);
    if (!loaded) {
        return false;
    }
    CompositeOnto(target, *loaded, loaded->width(), loaded->height());
    return true;
}

} // namespace raincast
