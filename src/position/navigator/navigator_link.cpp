// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_link.h"

#include "persist/registry_store.h"

#include <QFileInfo>

#include <optional>

namespace raincast {

namespace {

constexpr NavigatorPort::Message kClose{16, 0, 0};
constexpr int kPolls = 50;
constexpr std::chrono::milliseconds kPollInterval{200};
// Longer values of the registry count as missing; in UTF-16 units.
constexpr qsizetype kLongestFolder = 259;
constexpr qsizetype kLongestCommand = 260;

const QString kWindowClass = QStringLiteral("WCE_QVTrekkoMainWnd");
const QString kMutexName = QStringLiteral("Quorvane-API-mutex");
const QString kFileName = QStringLiteral("/QVAPI2.dat");

std::unique_ptr<NavigatorPort::Window> findNavigator() {
    return NavigatorPort::current().findWindow(kWindowClass);
}

std::optional<QString> sharedFilePath() {
    const QString folder = RegistryStore::inStandardFolders()
                               .string(
                                   RegistryStore::Branch::user, QStringLiteral("Software/Quorvane"),
                                   QStringLiteral("temp_folder")
                               )
                               .value_or(QString());
    if (folder.isEmpty() || folder.size() > kLongestFolder) {
        return std::nullopt;
    }
    return (folder + kFileName).left(NavigatorLink::kLongestPath);
}

// The program's path in a command line stands in quotes or ends at the first blank.
QString programOf(const QString& command) {
    return command.startsWith(u'"') ? command.section(u'"', 1, 1) : command.section(u' ', 0, 0);
}

void startNavigator() {
    const QString command = RegistryStore::inStandardFolders()
                                .classesString(QStringLiteral("QVNavObj/Shell/Open/Command"), {})
                                .value_or(QString());
    const QFileInfo program(command.size() <= kLongestCommand ? programOf(command) : QString());
    if (program.isFile()) {
        NavigatorPort::current().startProgram(program.absoluteFilePath());
    }
}

std::unique_ptr<NavigatorPort::Window> awaitNavigator() {
    std::unique_ptr<NavigatorPort::Window> window;
    for (int poll = 0; poll < kPolls && !window; ++poll) {
        NavigatorPort::current().sleep(kPollInterval);
        window = findNavigator();
    }
    return window;
}

// Adds the mutex and the file to a link that has a window.
NavigatorStatus complete(NavigatorLink& link) {
    link.mutex = NavigatorPort::current().createMutex(kMutexName);
    if (!link.mutex) {
        return kNavigatorNoMutex;
    }
    const auto path = sharedFilePath();
    link.file = path.value_or(QString());
    return path ? kNavigatorSuccess : kNavigatorNoFolder;
}

} // namespace

NavigatorStatus ConnectNavigator(NavigatorLink& link, bool launch) {
    if (link.window) {
        DisconnectNavigator(link, false);
    }
    link.window = findNavigator();
    if (!link.window && !launch) {
        return kNavigatorAbsent;
    }
    if (!link.window) {
        startNavigator();
        link.window = awaitNavigator();
    }
    return link.window ? complete(link) : kNavigatorNotStarted;
}

NavigatorStatus DisconnectNavigator(NavigatorLink& link, bool close) {
    link.mutex.reset();
    if (close && link.window) {
        link.window->post(kClose);
    }
    link.window.reset();
    return kNavigatorSuccess;
}

} // namespace raincast
