// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace raincast {

/// A progressive picture has about ten scans.
inline constexpr int kMostJpegScans = 100;

/// Whether JPEG bytes may be given to a decoder: they hold the picture's own end marker FF D9 and
/// at most kMostJpegScans scans. Decoders fill up a picture that was cut off and call it good; the
/// end marker tells. They also go over the whole picture once for every scan, and a few bytes make
/// one: a small file of thousands would keep them busy for minutes. An end marker inside a segment
/// (a thumbnail's, say) does not count; what follows the picture's is not looked at.
///
/// Source: ITU-T T.81 (1992), annex B, "Compressed data formats".
[[nodiscard]] bool isSoundJpeg(QByteArrayView bytes);

} // namespace raincast
