// SPDX-License-Identifier: MIT
#include "process_cost.h"

#include <QDir>
#include <QFile>

#include <sys/prctl.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace process_cost {

namespace {

[[noreturn]] void endedEarly() {
    std::fprintf(stderr, "A program has ended early.\n");
    std::exit(1);
}

QByteArray read(qint64 process, const QString& name) {
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        endedEarly();
    }
    return file.readAll();
}

QList<qint64> childrenOf(qint64 process) {
    QList<qint64> children;
    for (const QByteArray& child :
         read(process, QStringLiteral("task/%1/children").arg(process)).simplified().split(' ')) {
        if (!child.isEmpty()) {
            children.append(child.toLongLong());
        }
    }
    return children;
}

/// A line of /proc/PID/status such as "VmRSS:    12345 kB".
double numberIn(const QByteArray& text, const QByteArray& name) {
    const qsizetype place = text.indexOf(name);
    return place < 0 ? 0 : text.mid(place).simplified().split(' ').value(1).toDouble();
}

} // namespace

double processorMilliseconds(qint64 process) {
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(static_cast<pid_t>(process), &clock) != 0 ||
        clock_gettime(clock, &time) != 0) {
        endedEarly();
    }
    double sum = static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    for (const qint64 child : childrenOf(process)) {
        sum += processorMilliseconds(child);
    }
    return sum;
}

double wakeUps(qint64 process) {
    double sum = 0;
    const QDir threads(QStringLiteral("/proc/%1/task").arg(process));
    for (const QString& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        sum += numberIn(read(process, "task/" + thread + "/status"), "\nvoluntary_ctxt_switches:");
    }
    return sum;
}

Memory memoryOf(qint64 process) {
    const QByteArray status = read(process, QStringLiteral("status"));
    Memory memory{numberIn(status, "VmRSS:") / 1024, numberIn(status, "RssAnon:") / 1024};
    for (const qint64 child : childrenOf(process)) {
        const Memory more = memoryOf(child);
        memory.resident += more.resident;
        memory.anonymous += more.anonymous;
    }
    return memory;
}

void endWithUs(QProcess& process) {
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
}

} // namespace process_cost
