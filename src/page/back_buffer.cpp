// SPDX-License-Identifier: MIT
#include "page/back_buffer.h"

#include "window/device_pixels.h"

#include <QPainter>
#include <QTransform>
#include <QWidget>

namespace raincast {

bool BackBuffer::fit(const QWidget& window, const QSize& deviceSize) {
    const double dotsPerInch = window.logicalDpiY() * window.devicePixelRatioF();
    const bool resized = m_image.size() != deviceSize;
    if (resized) {
        m_image = QImage(deviceSize, QImage::Format_RGB32);
    }
    const bool otherDensity = m_image.logicalDpiY() != qRound(dotsPerInch);
    if (otherDensity) {
        setDensity(m_image, dotsPerInch);
    }
    return resized || otherDensity;
}

void BackBuffer::blit(QPaintDevice& target) const {
    if (m_image.isNull()) {
        return;
    }
    QPainter painter(&target);
    // At a fractional ratio the window's corner lies between pixels for the painter; the copy
    // starts at the pixel that it is rounded to.
    const QTransform toDevice = painter.deviceTransform();
    const QPoint corner = toDevice.map(QPointF(0, 0)).toPoint();
    painter.setWorldTransform(
        QTransform::fromTranslate(corner.x(), corner.y()) * toDevice.inverted()
    );
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, m_image);
}

} // namespace raincast
