// SPDX-License-Identifier: MIT
#include "window/events.h"

#include <QCoreApplication>
#include <QWidget>

namespace raincast {

void sendCommand(QWidget& window, int id, QWidget* control, int notification) {
    CommandEvent event(id, control, notification);
    QCoreApplication::sendEvent(&window, &event);
}

} // namespace raincast
