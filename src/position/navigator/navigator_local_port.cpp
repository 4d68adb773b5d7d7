// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_local_port.h"

#include "position/navigator/navigator_lock.h"
#include "position/navigator/navigator_socket.h"
#include "position/navigator/navigator_waiting.h"

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <optional>
#include <thread>

namespace raincast {

namespace {

// The path of a name, empty without the user's runtime folder. Qt would make one.
std::optional<QByteArray> runtimePath(const QString& name) {
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    if (!folder.startsWith('/')) {
        return std::nullopt;
    }
    return folder + '/' + QFile::encodeName(name);
}

} // namespace

std::unique_ptr<NavigatorPort::Window> LocalNavigatorPort::findWindow(const QString& windowClass) {
    const auto path = runtimePath(windowClass);
    return path ? NavigatorSocket::connect(*path, m_answerLimit) : nullptr;
}

std::unique_ptr<NavigatorPort::Mutex> LocalNavigatorPort::createMutex(const QString& name) {
    const auto path = runtimePath(name);
    return path ? NavigatorLock::open(*path) : nullptr;
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
