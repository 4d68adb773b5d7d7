// SPDX-License-Identifier: MIT
#include "server/serve_command.h"

#include "core/end_signals.h"
#include "server/running_server.h"
#include "server/server_log.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>
#include <ostream>

namespace raincast {

namespace {

void log(LogLevel level, const QString& line) {
    switch (level) {
    case LogLevel::info:
        qCInfo(serverLog, "%s", qUtf8Printable(line));
        break;
    case LogLevel::warning:
        qCWarning(serverLog, "%s", qUtf8Printable(line));
        break;
    case LogLevel::error:
        qCCritical(serverLog, "%s", qUtf8Printable(line));
        break;
    }
}

ServerExit failed(const QString& text) {
    qCCritical(serverLog, "%s", qUtf8Printable(text));
    return ServerExit::failed;
}

ServerExit cannotListen(const ListenAddress& at, int error) {
    const bool isCauseKnown = error == EADDRINUSE || error == EADDRNOTAVAIL || error == EACCES;
    return failed(QStringLiteral("Cannot listen at %1, port %2%3.")
                      .arg(at.address)
                      .arg(at.port)
                      .arg(isCauseKnown ? QStringLiteral(": ") + qt_error_string(error) : QString())
    );
}

} // namespace

ServerExit runServer(const ServeOptions& options, EndSignals& signals, std::ostream& out) {
    if (options.endWithParent) {
        EndSignals::endWithParent();
    }
    if (options.source == SourceKind::level3 && !QFileInfo(options.level3Folder).isDir()) {
        return failed(QStringLiteral("%1 is not a directory.").arg(options.level3Folder));
    }
    if (!options.roadsFile.isEmpty() && !QFileInfo(options.roadsFile).isFile()) {
        return failed(QStringLiteral("%1 is not a file.").arg(options.roadsFile));
    }
    RunningServer server(
        options, options.quiet ? ServerLog([](const QString&) {}) : ServerLog(log)
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
    signals.onEnd([&server] {
        server.prepareToEnd();
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    signals.onEnd({});
    return ServerExit::good;
}

} // namespace raincast
