// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class QWidget;

namespace raincast {

/// Makes one picture of a window, as soon as it has been painted.
class Screenshot : public QObject {
public:
    /// Saves the window in device pixels as PNG, once, from the event loop: after the window's next
    /// paint, or after two seconds if its screen does not ask for one. While `pending` says that
    /// what it shows is still being loaded, or a dialog is open, it waits for that, and for another
    /// paint. Then calls `done` with whether it could. Without a file it only waits. The window is
    /// borrowed.
    Screenshot(
        QWidget& window, QString file, std::function<bool()> pending,
        std::function<void(bool saved)> done
    );

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void awaitPaint();
    void take();

    QWidget& m_window;
    QString m_file;
    std::function<bool()> m_pending;
    std::function<void(bool)> m_done;
    QTimer m_painted;
    bool m_outdated = false; ///< the last paint
};

} // namespace raincast
