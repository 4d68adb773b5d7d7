// SPDX-License-Identifier: MIT
#pragma once

#include "radar/warning_texts.h"

#include <QColor>
#include <QString>

namespace raincast {

/// How a warning is said to the user. Times are those of the local clock or UTC, as the user has
/// chosen for loops (player/loop_setting.h).

/// Whose place a warning holds at.
enum class WarnedPlace { position, target };

/// "until 20:15", "until 2:15 UTC", with the date where it is more than half a day ahead; "ended
/// 20:15" once it is past; empty for an unknown end.
[[nodiscard]] QString endText(FileTime end, FileTime now);

/// "Tornado Warning for your position until 20:15".
[[nodiscard]] QString warnedText(const WarningText& warning, WarnedPlace place, FileTime now);

/// All that is known of a warning, in paragraphs of plain text.
[[nodiscard]] QString wholeText(const WarningText& warning, FileTime now);

/// The greater, the more dangerous; below all others for an event that no table knows.
[[nodiscard]] int dangerOf(const WarningText& warning);

/// The colour of its outline, and one that is legible on it.
struct WarningColours {
    QColor ground;
    QColor ink;
};
[[nodiscard]] WarningColours coloursOf(const WarningText& warning);

} // namespace raincast
