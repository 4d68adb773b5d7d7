// SPDX-License-Identifier: MIT
#include "core/program_log.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cstdio>

namespace raincast {

namespace {

QtMessageHandler others = nullptr;

void print(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const QByteArray category(context.category);
    if (!category.startsWith("raincast")) {
        others(type, context, text);
        return;
    }
    const QByteArray prefix = type == QtInfoMsg ? QByteArray() : category + ": ";
    // One call for a line: threads log at the same time.
    std::fputs((prefix + text.toUtf8() + '\n').constData(), stderr);
}

} // namespace

void logToStandardError() {
    others = qInstallMessageHandler(print);
}

} // namespace raincast
