// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QtGlobal>

/// What a program that runs costs. One that has ended ends the measuring program, too.
namespace process_cost {

/// Milliseconds on a processor so far, in the program and in the system for it, its present
/// children included.
[[nodiscard]] double processorMilliseconds(qint64 process);
/// How often its threads have waited so far: each time something had to wake them up again.
[[nodiscard]] double wakeUps(qint64 process);

/// Of a program and its present children; what several of them have in common counts for each.
struct Memory {
    double resident = 0;  ///< mebibytes, files that are mapped included
    double anonymous = 0; ///< of these, the program's own
};
[[nodiscard]] Memory memoryOf(qint64 process);

/// Has a program that is about to be started end when this one does, however that is.
void endWithUs(QProcess& process);

} // namespace process_cost
