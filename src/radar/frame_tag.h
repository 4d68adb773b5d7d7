// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace raincast {

// The bytes of the newest frame of live radar may be replaced until a later one is listed. Beside
// it in the cache lies a file that keeps the tag its server gave it, so that a later start and
// raincast-fetch, too, ask for other bytes only: BMX_2_N0R.tag holds the frame's name, its tag and
// the SHA-1 of its file. Each product has one such file, of its newest frame.

/// Notes the tag of a frame's file; an empty one takes the note away. A failure does no harm: the
/// frame is not asked for again.
void noteFrameTag(const QString& frameFile, const QByteArray& tag);

/// The tag of a frame's file; empty when there is none, or when the file has changed since.
[[nodiscard]] QByteArray frameTag(const QString& frameFile);

} // namespace raincast
