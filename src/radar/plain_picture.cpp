// SPDX-License-Identifier: MIT
#include "radar/plain_picture.h"

#include <new>

namespace raincast {

PlainPicture::PlainPicture(QSize size, Pixels pixels) : m_size(size) {
    const bool isIndexed = pixels == Pixels::indexed;
    const int bytesPerPixel = isIndexed ? 1 : int{sizeof(quint32)};
    m_bytesPerRow = (size.width() * bytesPerPixel + 3) / 4 * 4;
    m_bytes.reset(new (std::nothrow) uchar[static_cast<std::size_t>(offsetOf(size.height()))]);
    if (isIndexed) {
        m_colours = std::make_unique<Colours>();
    }
}

} // namespace raincast
