// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

class QPaintDevice;
class QSize;
class QWidget;

namespace raincast {

/// The off-screen picture of a window, one of its pixels for each of the device's: the window's
/// content is drawn here and copied to the screen in one piece, so that nothing half-drawn is ever
/// seen.
class BackBuffer {
public:
    /// Makes the picture as large as the window is in device pixels, and gives it the window's dots
    /// per inch, so that text has its usual size. True, and its content is lost, if anything of
    /// that changes.
    bool fit(const QWidget& window, const QSize& deviceSize);
    void release() { m_image = QImage(); }

    /// A null image before fit(), and without memory for it.
    [[nodiscard]] QImage& image() { return m_image; }

    /// Copies the picture pixel by pixel to the window that `target` is, or to a device that stands
    /// in for it.
    void blit(QPaintDevice& target) const;

private:
    QImage m_image;
};

} // namespace raincast
