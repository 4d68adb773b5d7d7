// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/picture_loader.h"

#include <QString>

#include <memory>

namespace raincast {

struct RadarState;
struct WarningTexts;

/// The warnings of a site, to be drawn over its frames with white transparent.
struct RadarWarnings {
    Bitmap picture; ///< null: none
    QString siteId;
    QString range;        ///< "Short" or "Long": a picture fits the products of one range
    FileTime fetched = 0; ///< when the server was asked for them
    std::shared_ptr<const WarningTexts> texts{}; ///< null: the server has none, or they come yet

    [[nodiscard]] bool isOf(const QString& site, QStringView ofRange) const {
        return siteId == site && range == ofRange;
    }
};

// Beside the cached warnings lies a file that says of which range they are and when they were
// fetched: BMX_Warnings_0.time holds "Short 2026-05-19T05:54:00Z".

/// Notes that the cached warnings of a site were fetched at a time. Without the note they are not
/// shown at the next start, so a failure does no harm.
void noteWarnings(const QString& cacheFolder, const RadarWarnings& warnings);

/// Loads the cached warnings of a site; without a picture when they are of another range, have no
/// note or cannot be loaded, or the loader is empty.
[[nodiscard]] RadarWarnings loadWarnings(
    const QString& cacheFolder, const QString& siteId, const QString& range,
    const PictureLoader& load
);

/// Whether the cached warnings of a site are of a range, by their note.
[[nodiscard]] bool
hasWarningsOf(const QString& cacheFolder, const QString& siteId, const QString& range);

/// How a state's warnings are to be shown.
enum class WarningsUse {
    none,  ///< there are none, or they are switched off
    drawn, ///< over every frame
    stale, ///< too old for the newest frame: a line says so instead
};
[[nodiscard]] WarningsUse warningsUse(const RadarState& state);

} // namespace raincast
