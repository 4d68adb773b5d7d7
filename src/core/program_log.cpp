// SPDX-License-Identifier: MIT
#include "core/program_log.h"

#include <QString>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace raincast {

namespace {

QtMessageHandler others = nullptr;

/// Whether the journal reads standard error: it says so by that stream's device and inode.
bool isJournal() {
    struct stat status {};
    if (!qEnvironmentVariableIsSet("JOURNAL_STREAM") || fstat(STDERR_FILENO, &status) != 0) {
        return false;
    }
    const QByteArray stream =
        QByteArray::number(status.st_dev) + ':' + QByteArray::number(status.st_ino);
    return qgetenv("JOURNAL_STREAM") == stream;
}

/// As syslog counts them.
char priorityOf(QtMsgType type) {
    switch (type) {
    case QtFatalMsg:
        return '2';
    case QtCriticalMsg:
        return '3';
    case QtWarningMsg:
        return '4';
    case QtInfoMsg:
        return '6';
    case QtDebugMsg:
        break;
    }
    return '7';
}

void print(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const QByteArray category(context.category);
    if (!category.startsWith("raincast")) {
        others(type, context, text);
        return;
    }
    const QByteArray prefix = type == QtInfoMsg ? QByteArray() : category + ": ";
    // One call for a line: threads log at the same time.
    std::fputs(forStandardError(type, prefix + text.toUtf8() + '\n').constData(), stderr);
}

} // namespace

QByteArray forStandardError(QtMsgType type, const QByteArray& text) {
    static const bool hasPriorities = isJournal();
    if (!hasPriorities) {
        return text;
    }
    const QByteArray priority = QByteArray("<") + priorityOf(type) + '>';
    QByteArray lines = text;
    const bool isEnded = lines.endsWith('\n');
    lines.chop(isEnded ? 1 : 0);
    return priority + lines.replace("\n", '\n' + priority) + (isEnded ? "\n" : "");
}

void logToStandardError() {
    others = qInstallMessageHandler(print);
}

} // namespace raincast
