// SPDX-License-Identifier: MIT
#include "server/serve_command.h"

#include "server/running_server.h"
#include "server/stop_signals.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <ostream>

namespace raincast {

namespace {

void logToError(const QString& line) {
    std::fprintf(stderr, "%s\n", line.toUtf8().constData());
}

ServerExit failed(const QString& text) {
    logToError(QStringLiteral("raincast-server: ") + text);
    return ServerExit::failed;
}

ServerExit cannotListen(const ListenAddress& at, int error) {
    const bool tells = error == EADDRINUSE || error == EADDRNOTAVAIL || error == EACCES;
    return failed(QStringLiteral("Cannot listen at %1, port %2%3.")
                      .arg(at.address)
                      .arg(at.port)
                      .arg(tells ? QStringLiteral(": ") + qt_error_string(error) : QString()));
}

} // namespace

ServerExit runServer(const ServeOptions& options, StopSignals& signals, std::ostream& out) {
    if (options.endWithParent) {
        StopSignals::endWithParent();
    }
    if (!options.level3Folder.isEmpty() && !QFileInfo(options.level3Folder).isDir()) {
        return failed(QStringLiteral("%1 is no folder.").arg(options.level3Folder));
    }
    if (!options.roadsFile.isEmpty() && !QFileInfo(options.roadsFile).isFile()) {
        return failed(QStringLiteral("%1 is no file.").arg(options.roadsFile));
    }
    RunningServer server(
        options, options.quiet ? ServerLog([](const QString&) {}) : ServerLog(logToError)
    );
    errno = 0;
    if (options.listen && !server.listen()) {
        return cannotListen(*options.listen, errno);
    }
    if (options.once) {
        return server.publishOnce() ? ServerExit::good : ServerExit::failed;
    }
    server.work();
    out << server.readyLine().toStdString() << std::endl;
    signals.onStop([] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    return ServerExit::good;
}

} // namespace raincast
