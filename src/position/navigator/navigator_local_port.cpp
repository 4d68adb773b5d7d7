// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_local_port.h"

#include "position/navigator/navigator_lock.h"
#include "position/navigator/navigator_socket.h"
#include "position/navigator/navigator_waiting.h"

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <thread>

namespace raincast {

namespace {

/// The path of what is called so; empty when the user has no folder for it. Qt would make one.
QByteArray runtimePath(const QString& name) {
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.startsWith('/') ? folder + '/' + QFile::encodeName(name) : QByteArray();
}

} // namespace

std::unique_ptr<NavigatorPort::Window> LocalNavigatorPort::findWindow(const QString& windowClass) {
    return NavigatorSocket::connect(runtimePath(windowClass), m_answerLimit);
}

std::unique_ptr<NavigatorPort::Mutex> LocalNavigatorPort::createMutex(const QString& name) {
    return NavigatorLock::open(runtimePath(name));
}

void LocalNavigatorPort::startProgram(const QString& path) {
    QProcess::startDetached(path, {});
}

void LocalNavigatorPort::sleep(std::chrono::milliseconds duration) {
    NavigatorWaiting waiting;
    const auto end = std::chrono::steady_clock::now() + duration;
    while (std::chrono::steady_clock::now() < end && waiting.goesOn()) {
        const auto slice = std::chrono::steady_clock::now() + NavigatorWaiting::kHookInterval;
        std::this_thread::sleep_until(std::min(end, slice));
    }
}

} // namespace raincast
