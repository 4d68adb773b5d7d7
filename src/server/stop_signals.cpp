// SPDX-License-Identifier: MIT
#include "server/stop_signals.h"

#include <QSocketNotifier>

#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace raincast {

namespace {

sigset_t stopSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

StopSignals::StopSignals() {
    const sigset_t set = stopSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    m_fd = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
}

StopSignals::~StopSignals() {
    m_notifier.reset();
    close(m_fd);
}

void StopSignals::endWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

void StopSignals::onStop(std::function<void()> stop) {
    m_notifier = std::make_unique<QSocketNotifier>(m_fd, QSocketNotifier::Read);
    QObject::connect(
        m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
        [stop = std::move(stop)] { stop(); }
    );
}

} // namespace raincast
