// SPDX-License-Identifier: MIT
#include "page/plain_target.h"

#include <QImage>
#include <QPainter>
#include <QRegion>

namespace raincast {

QImage* plainTarget(const QPainter& painter, const QRect& shown) {
    auto* target = dynamic_cast<QImage*>(painter.device());
    const bool plain = target != nullptr && target->format() == QImage::Format_RGB32 &&
                       target->isDetached() && painter.deviceTransform().isIdentity();
    const bool clipped =
        painter.hasClipping() && !QRegion(shown).subtracted(painter.clipRegion()).isEmpty();
    return plain && !clipped ? target : nullptr;
}

} // namespace raincast
