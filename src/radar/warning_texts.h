// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "geo/geo_position.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace raincast {

/// What an outline on a picture of warnings means. All texts are the provider's, for people; but
/// for the id and the event any may be empty.
struct WarningText {
    using Ring = std::vector<GeoPosition>; ///< in turn; the last corner is joined to the first
    using Polygon = std::vector<Ring>;     ///< its outline, then its holes

    QString id;     ///< the same when the warning is prolonged, another one for another warning
    QString event;  ///< "Tornado Warning"
    QString office; ///< "NWS Norman OK"
    QString headline;
    QString text;
    QString instruction;
    FileTime begin = 0; ///< UTC, as the end is; 0: unknown
    FileTime end = 0;   ///< it holds before this time; 0: unknown
    std::vector<Polygon> polygons;
};

struct WarningTexts {
    bool isSample = false;             ///< made up
    std::vector<WarningText> warnings; ///< the most dangerous first
};

/// No file of texts has as many bytes.
inline constexpr qsizetype kMostWarningTextBytes = qsizetype{1} << 20;

/// Reads the texts of warnings (docs/formats/warnings.md). What is not of the form of a warning is
/// passed over, and so is a ring with a corner that is not on the earth; nothing when it is no such
/// file at all, or too large. At most kMostWarningTexts warnings of kMostTextLetters a text.
[[nodiscard]] std::optional<WarningTexts> readWarningTexts(const QByteArray& json);

inline constexpr std::size_t kMostWarningTexts = 500;
inline constexpr qsizetype kMostTextLetters = 16 * 1024;

/// Where the texts stand that belong to the cached warnings picture of a site, if there are any.
/// They are fetched after it, and whoever deletes it deletes them.
[[nodiscard]] QString warningTextsFile(const QString& cacheFolder, const QString& siteId);

/// Reads the texts beside the cached warnings picture of a site; null when there are none, or
/// when the picture is of another range ("Short" or "Long"). Takes a moment: for the background.
[[nodiscard]] std::shared_ptr<const WarningTexts>
loadWarningTexts(const QString& cacheFolder, const QString& siteId, const QString& range);

} // namespace raincast
