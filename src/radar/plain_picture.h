// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QtGlobal>

#include <array>
#include <cstddef>
#include <memory>

namespace raincast {

/// A decoded picture: its pixels in memory, and nothing that draws them.
class PlainPicture {
public:
    enum class Pixels {
        indexed, ///< a byte each: which of the colours
        rgb,     ///< four bytes each: 0xffRRGGBB in the machine's order
    };
    using Colours = std::array<quint32, 256>; ///< 0xffRRGGBB

    /// A null picture.
    PlainPicture() = default;
    /// Its pixels and colours are still to be set; null when there is no memory for them. Both
    /// sides are positive.
    PlainPicture(QSize size, Pixels pixels);

    [[nodiscard]] bool isNull() const { return m_bytes == nullptr; }
    [[nodiscard]] QSize size() const { return m_size; }
    [[nodiscard]] bool isIndexed() const { return m_colours != nullptr; }
    /// Of an indexed picture.
    [[nodiscard]] Colours& colours() { return *m_colours; }
    [[nodiscard]] const Colours& colours() const { return *m_colours; }

    [[nodiscard]] uchar* row(int row) { return m_bytes.get() + offsetOf(row); }
    [[nodiscard]] const uchar* row(int row) const { return m_bytes.get() + offsetOf(row); }
    /// From one row to the next; a multiple of four.
    [[nodiscard]] int bytesPerRow() const { return m_bytesPerRow; }

private:
    [[nodiscard]] std::ptrdiff_t offsetOf(int row) const {
        return std::ptrdiff_t{row} * m_bytesPerRow;
    }

    QSize m_size;
    int m_bytesPerRow = 0;
    std::unique_ptr<Colours> m_colours;
    std::unique_ptr<uchar[]> m_bytes;
};

/// A file of a picture of so many pixels needs no more bytes than this, whatever else it has.
[[nodiscard]] constexpr qint64 mostPictureBytes(qint64 pixels) {
    return 4 * pixels + (qint64{1} << 20);
}

} // namespace raincast
