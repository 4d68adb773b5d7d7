// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace raincast {

/// A progressive picture has about ten scans.
inline constexpr int kMostJpegScans = 100;

/// Whether JPEG bytes are safe to decode: they hold the picture's own end marker FF D9 and at most
/// kMostJpegScans scans. A decoder fills up a picture that was cut off and calls it good; only the
/// missing end marker shows it. A decoder also goes over the whole picture once for every scan, and
/// a scan takes only a few bytes: a small file of thousands would keep it busy for minutes. An end
/// marker inside a segment (a thumbnail's, for example) does not count; bytes after the picture's
/// end marker are ignored.
///
/// Source: ITU-T T.81 (1992), annex B, "Compressed data formats".
[[nodiscard]] bool isSoundJpeg(QByteArrayView bytes);

} // namespace raincast
