// SPDX-License-Identifier: MIT
// raincast-server: publishes an image tree of weather radar.
#include "core/command_line.h"
#include "core/end_signals.h"
#include "core/program_log.h"
#include "server/render_command.h"
#include "server/serve_command.h"

#include <QGuiApplication>

#include <malloc.h>

#include <iostream>
#include <sstream>

namespace {

using namespace raincast;

void printGraveMessages(
    QtMsgType type, const QMessageLogContext& /*context*/, const QString& text
) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::cerr << forStandardError(type, text.toUtf8() + '\n').toStdString();
    }
}

int serve(int argc, char** argv, const ServeOptions& options, EndSignals& signals) {
    // Qt draws the layers' text. That needs no display, and no folders of a user's session, whose
    // lack it would report in a service.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const auto handler = qInstallMessageHandler(printGraveMessages);
    const QGuiApplication application(argc, argv);
    qInstallMessageHandler(handler);
    return static_cast<int>(runServer(options, signals, std::cout));
}

int render(const RenderOptions& options) {
    return renderCommand(
        options.file.toStdString(), options.outFile.toStdString(), options.detail, std::cout,
        std::cerr
    );
}

// Only serving needs a QGuiApplication.
auto readArguments(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return readServerOptions(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char** argv) {
    // Otherwise each thread would keep the memory of its largest picture.
    mallopt(M_ARENA_MAX, 2);
    // A large canvas goes back to the system with the picture that it was for: unless told so, the
    // allocator learns from the first one to keep such sizes.
    constexpr int kLarge = 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, kLarge);
    logToStandardError();
    const auto wanted = readArguments(argc, argv);
    if (!wanted) {
        std::ostringstream errors;
        const int status = printAnswer(wanted.error(), std::cout, errors);
        std::cerr << forStandardError(QtCriticalMsg, QByteArray::fromStdString(errors.str()))
                         .toStdString();
        return status;
    }
    if (const auto* const options = std::get_if<RenderOptions>(&*wanted)) {
        return render(*options);
    }
    EndSignals signals;
    return serve(argc, argv, std::get<ServeOptions>(*wanted), signals);
}
