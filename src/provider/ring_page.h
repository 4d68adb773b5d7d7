// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QByteArray>

#include <vector>

namespace raincast {

/// A file of a ring: its number says nothing of its age.
struct RingEntry {
    QByteArray name;       ///< "sn.0246"
    FileTime modified = 0; ///< to the minute; 0 where the page does not tell

    friend bool operator==(const RingEntry&, const RingEntry&) = default;
};

/// The files of the page that lists a ring, newest first, those without a time last. Takes the
/// three forms of such pages: rows of a table with "29-Apr-2020 14:02" or "2026-11-21 17:49" behind
/// the link, and lines with "Nov 21 17:49" (or "Nov 21 2025") before the name. `now` tells the year
/// that is left out.
[[nodiscard]] std::vector<RingEntry> readRingPage(const QByteArray& page, FileTime now);

} // namespace raincast
