// SPDX-License-Identifier: MIT
#include "app/log_out.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSessionManager>

#include <utility>

namespace raincast {

LogOut::LogOut(std::function<void()> save) : m_save(std::move(save)) {
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this] {
        m_underWay = true;
        qApp->installEventFilter(this);
        m_save();
    });
}

bool LogOut::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        m_underWay = false;
        qApp->removeEventFilter(this);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace raincast
