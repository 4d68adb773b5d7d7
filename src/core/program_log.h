// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace raincast {

/// Sends what the programs log to standard error, wherever it may lead. Each program has a logging
/// category of its own name, "raincast-server" for example: its lines begin with that name
/// ("raincast-server: Cannot listen at ..."), except that information is printed as it is. All
/// other categories, Qt's own above all, keep their handler.
///
/// Where standard error is the system's journal, every line begins with its priority ("<3>" for an
/// error), which the journal takes off.
///
/// Call it once, before anything is logged.
void logToStandardError();

/// A text of any lines for standard error, with their priority where that is the journal.
[[nodiscard]] QByteArray forStandardError(QtMsgType type, const QByteArray& text);

} // namespace raincast
