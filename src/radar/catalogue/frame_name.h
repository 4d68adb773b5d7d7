// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QString>

#include <optional>
#include <set>

// How the radar image server names what it publishes, and how the cache names its copies:
//
//   /ridge/RadarImg/N0R/BMX/                          the listing of a site's frames of a product
//   /ridge/RadarImg/N0R/BMX/BMX_20070615_1830_N0R.gif a frame; its time is UTC, to the minute
//   /ridge/Warnings/Short/BMX_Warnings_0.gif          the present warnings
//   /ridge/Warnings/Short/BMX_Warnings_0.json         their texts
namespace raincast {

/// The server path of a listing, with "/" at its end. `product` is the product's code.
[[nodiscard]] QString listingDirectory(const QString& siteId, const QString& product);

/// The name of the frame of a minute; seconds are dropped.
[[nodiscard]] QString frameFileName(const QString& siteId, FileTime time, const QString& product);

[[nodiscard]] QString warningsFileName(const QString& siteId);
[[nodiscard]] QString warningTextsFileName(const QString& siteId);

/// The server path of the warnings for a range word, "Short" or "Long", and that of their texts.
[[nodiscard]] QString warningsPath(const QString& siteId, const QString& range);
[[nodiscard]] QString warningTextsPath(const QString& siteId, const QString& range);

/// The time in the name of a frame's file; none when the name has another form or its digits are
/// not a time.
[[nodiscard]] std::optional<FileTime> frameTime(const QString& fileName);

/// The time of the newest frame in a listing: of the greatest name of a frame's form (25
/// characters, the fourth and fifth "_2"). None without such a name, or when its digits are not a
/// time.
[[nodiscard]] std::optional<FileTime> newestFrameTime(const std::set<QString>& listing);

/// Takes the frames that are dated more than a day after `now` out of a listing. A clock may be
/// wrong, but the search for older frames begins at the newest one, and the next automatic update
/// is due after it.
void removeFramesAhead(std::set<QString>& listing, FileTime now);

/// A time on the local clock, as files have it: "1:05" for 13:05, "12:30", "0:40".
[[nodiscard]] QString clockText(FileTime time);

} // namespace raincast
