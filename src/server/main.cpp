// SPDX-License-Identifier: MIT
// raincast-server: publishes an image tree of weather radar.
#include "server/render_command.h"
#include "server/serve_command.h"
#include "server/stop_signals.h"

#include <QGuiApplication>

#include <malloc.h>

#include <iostream>

namespace {

using namespace raincast;

void sayWhatIsGrave(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::cerr << text.toStdString() << '\n';
    }
}

int serve(int argc, char** argv, const ServeOptions& options, StopSignals& signals) {
    // Qt draws the layers' text; it needs no display for that, nor the folders of a user's session,
    // which it misses aloud in a service.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const auto handler = qInstallMessageHandler(sayWhatIsGrave);
    const QGuiApplication application(argc, argv);
    qInstallMessageHandler(handler);
    return static_cast<int>(runServer(options, signals, std::cout));
}

int render(const RenderOptions& options) {
    return renderCommand(
        options.file.toStdString(), options.outFile.toStdString(), std::cout, std::cerr
    );
}

int say(const ServerAnswer& answer) {
    if (answer.wrongUsage) {
        std::cerr << "raincast-server: " << answer.text.toStdString() << '\n';
        return static_cast<int>(ServerExit::wrongUsage);
    }
    std::cout << answer.text.toStdString();
    return static_cast<int>(ServerExit::good);
}

/// Without windows: most of what can be asked for needs none.
auto readArguments(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return readServerOptions(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char** argv) {
    // Each thread would keep memory of its own from the largest picture it ever made.
    mallopt(M_ARENA_MAX, 2);
    const auto wanted = readArguments(argc, argv);
    if (const auto* const answer = std::get_if<ServerAnswer>(&wanted)) {
        return say(*answer);
    }
    if (const auto* const options = std::get_if<RenderOptions>(&wanted)) {
        return render(*options);
    }
    // Before the first thread, which inherits that signals wait.
    StopSignals signals;
    return serve(argc, argv, std::get<ServeOptions>(wanted), signals);
}
