// SPDX-License-Identifier: MIT
#pragma once

#include "radar/bitmap.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSize>

namespace raincast {

/// A sharp picture in memory. The largest of a loop's frames are kept packed: two dozen of them
/// would take 130 MB otherwise.
class SharpPicture {
public:
    /// None.
    SharpPicture() = default;
    /// `packed` is for an indexed picture; any other stays as it is.
    SharpPicture(QImage picture, int detail, bool packed);

    [[nodiscard]] explicit operator bool() const { return m_detail > 1; }
    /// 2 or 4; 1 of none.
    [[nodiscard]] int detail() const { return m_detail; }
    [[nodiscard]] bool isPacked() const { return !m_packed.isEmpty(); }
    /// The picture itself; unpacking one of x4 takes some milliseconds. Null of none, or when there
    /// is no memory for it.
    [[nodiscard]] DetailedBitmap unpacked() const;

private:
    int m_detail = 1;
    Bitmap m_plain; ///< unless it is packed
    QByteArray m_packed;
    QSize m_size;
    QList<QRgb> m_colours;
};

} // namespace raincast
