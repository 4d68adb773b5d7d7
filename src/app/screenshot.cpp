// SPDX-License-Identifier: MIT
#include "app/screenshot.h"

#include "core/busy_guard.h"
#include "core/whole_file.h"
#include "window/modal.h"

#include <QBuffer>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QPixmap>
#include <QWidget>

#include <utility>

namespace raincast {

namespace {

constexpr int kPatienceMilliseconds = 2000;
constexpr int kBusyMilliseconds = 50;

bool save(const QPixmap& picture, const QString& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG")) {
        return false;
    }
    // A pipe or a device has nothing to replace.
    const QFileInfo target(path);
    if (target.exists() && !target.isFile()) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
               file.write(bytes) == bytes.size();
    }
    return replaceFile(path, bytes, Lasting::yes).has_value();
}

} // namespace

Screenshot::Screenshot(
    QWidget& window, QString file, std::function<bool()> pending, std::function<void(bool)> done
)
    : m_window(window), m_file(std::move(file)), m_pending(std::move(pending)),
      m_done(std::move(done)) {
    m_painted.setSingleShot(true);
    connect(&m_painted, &QTimer::timeout, this, &Screenshot::take);
    awaitPaint();
}

void Screenshot::awaitPaint() {
    m_painted.start(kPatienceMilliseconds);
    m_window.installEventFilter(this);
    m_window.update();
}

bool Screenshot::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        m_window.removeEventFilter(this);
        m_painted.start(0); // when this paint is over
    }
    return QObject::eventFilter(watched, event);
}

void Screenshot::take() {
    m_window.removeEventFilter(this);
    if (m_pending() || BusyGuard::active() || Modal::depth() > 0) {
        m_outdated = true;
        m_painted.start(kBusyMilliseconds);
        return;
    }
    if (std::exchange(m_outdated, false)) {
        awaitPaint();
        return;
    }
    m_done(m_file.isEmpty() || save(m_window.grab(), m_file));
}

} // namespace raincast
