// SPDX-License-Identifier: MIT
// raincast-server: publishes an image tree of weather radar.
#include "server/render_command.h"
#include "server/serve_command.h"
#include "server/stop_signals.h"

#include <QGuiApplication>

#include <iostream>

namespace {

using namespace raincast;

int run(const ServeOptions& options, StopSignals& signals) {
    return static_cast<int>(runServer(options, signals, std::cout));
}

int run(const RenderOptions& options, StopSignals&) {
    return renderCommand(
        options.file.toStdString(), options.outFile.toStdString(), std::cout, std::cerr
    );
}

int run(const ServerAnswer& answer, StopSignals&) {
    (answer.wrongUsage ? std::cerr << "raincast-server: " : std::cout)
        << answer.text.toStdString() << (answer.wrongUsage ? "\n" : "");
    return static_cast<int>(answer.wrongUsage ? ServerExit::wrongUsage : ServerExit::good);
}

} // namespace

int main(int argc, char** argv) {
    // Before the first thread, which inherits that signals wait.
    StopSignals signals;
    // Qt draws the layers' text; it needs no display for that.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    return std::visit(
        [&signals](const auto& wanted) { return run(wanted, signals); },
        readServerOptions(QGuiApplication::arguments())
    );
}
