// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace raincast {

/// Whether JPEG bytes hold the picture's own end marker FF D9. Decoders fill up a picture that was
/// cut off and call it good; the end marker tells. One inside a segment (a thumbnail's, say) does
/// not count; what follows the picture's is not looked at.
///
/// Source: ITU-T T.81 (1992), annex B, "Compressed data formats".
[[nodiscard]] bool hasJpegEnd(QByteArrayView bytes);

} // namespace raincast
