// SPDX-License-Identifier: MIT
// raincast: the viewer.
#include "app/app_options.h"
#include "app/display_guard.h"
#include "app/qt_arguments.h"
#include "app/viewer.h"
#include "core/command_line.h"
#include "core/end_signals.h"
#include "core/program_log.h"
#include "window/screen_style.h"
#include "words/user_language.h"

#include <QApplication>

#include <iostream>
#include <memory>

namespace {

using namespace raincast;

std::unique_ptr<QApplication> makeApplication(QtArguments& arguments) {
    const DisplayGuard guard;
    auto application = std::make_unique<QApplication>(arguments.count(), arguments.pointers());
    QApplication::setApplicationName(QStringLiteral("raincast"));
    QApplication::setApplicationVersion(QStringLiteral(RAINCAST_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("raincast"));
    // The end of a dialog that opens before the main window is not the end of the program.
    QApplication::setQuitOnLastWindowClosed(false);
    useScreenStyle();
    useUserLanguageInQt();
    return application;
}

int view(const AppOptions& options, const QString& program) {
    EndSignals signals;
    if (!options.screenshot.isEmpty()) {
        drawOffscreenWithoutDisplay();
    }
    QtArguments arguments(QStringList(program) + options.qtArguments);
    const auto application = makeApplication(arguments);
    Viewer viewer(options);
    signals.onEnd([&viewer] { viewer.requestEnd(); });
    const int status = viewer.run();
    signals.onEnd({});
    // Deletions that wait for an event loop, which runs no more.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    logToStandardError();
    useUserLanguage();
    const auto options = readAppOptions(arguments);
    return options ? view(*options, arguments.value(0))
                   : printAnswer(options.error(), std::cout, std::cerr);
}
