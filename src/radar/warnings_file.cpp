// SPDX-License-Identifier: MIT
#include "radar/warnings_file.h"

#include "core/utc_date_time.h"
#include "core/whole_file.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/catalogue/products.h"
#include "radar/frame.h"
#include "radar/radar_state.h"

#include <QDateTime>
#include <QFileInfo>

namespace raincast {

namespace {

constexpr qint64 kMostNoteBytes = 64;
constexpr FileTime kMostOlderThanFrame = 15 * kFileTimePerMinute;

QString pictureFile(const QString& cacheFolder, const QString& siteId) {
    return siteCacheFolder(cacheFolder, siteId) + u'/' + warningsFileName(siteId);
}

QString noteFile(const QString& cacheFolder, const QString& siteId) {
    const QFileInfo picture(pictureFile(cacheFolder, siteId));
    return picture.path() + u'/' + picture.completeBaseName() + QStringLiteral(".time");
}

/// When the cached warnings were fetched; not a valid time unless they are of the range.
QDateTime fetchTime(const QString& cacheFolder, const QString& siteId, const QString& range) {
    const auto note = readWhole(noteFile(cacheFolder, siteId), kMostNoteBytes);
    const QStringList words =
        QString::fromLatin1(note.value_or(QByteArray())).simplified().split(u' ');
    const bool isOfRange = words.size() == 2 && words[0] == range;
    return isOfRange ? QDateTime::fromString(words[1], Qt::ISODate) : QDateTime();
}

} // namespace

void noteWarnings(const QString& cacheFolder, const RadarWarnings& warnings) {
    const QString time = utcDateTime(warnings.fetched).toString(Qt::ISODate);
    const QString note = warnings.range + u' ' + time + u'\n';
    static_cast<void>(
        replaceFile(noteFile(cacheFolder, warnings.siteId), note.toLatin1(), Lasting::no)
    );
}

RadarWarnings loadWarnings(
    const QString& cacheFolder, const QString& siteId, const QString& range,
    const PictureLoader& load
) {
    RadarWarnings warnings{nullptr, siteId, range, 0};
    const QDateTime time = fetchTime(cacheFolder, siteId, range);
    if (time.isValid()) {
        warnings.fetched = kUnixEpoch + time.toSecsSinceEpoch() * kFileTimePerSecond;
        const auto picture = load ? load(pictureFile(cacheFolder, siteId)) : std::nullopt;
        warnings.picture = picture ? picture->bitmap : nullptr;
    }
    return warnings;
}

bool hasWarningsOf(const QString& cacheFolder, const QString& siteId, const QString& range) {
    return fetchTime(cacheFolder, siteId, range).isValid();
}

WarningsUse warningsUse(const RadarState& state) {
    const RadarWarnings& warnings = state.warnings;
    if (!state.showWarnings || !warnings.picture || state.frames.empty() ||
        !warnings.isOf(state.siteId, ProductRange(state.product))) {
        return WarningsUse::none;
    }
    const auto newest = takenAt(state.frames.back());
    const bool stale = newest && *newest - warnings.fetched > kMostOlderThanFrame;
    return stale ? WarningsUse::stale : WarningsUse::drawn;
}

} // namespace raincast
