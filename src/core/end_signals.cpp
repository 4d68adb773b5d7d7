// SPDX-License-Identifier: MIT
#include "core/end_signals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace raincast {

namespace {

constexpr std::array<int, 3> kSignals{SIGTERM, SIGINT, SIGHUP};

// A handler may do next to nothing: it marks the request and writes into a pipe that the event
// loop listens to.
std::array<int, 2> ends{-1, -1};
std::array<struct sigaction, kSignals.size()> formerly{};
volatile std::sig_atomic_t requested = 0;

void onSignal(int /*number*/) {
    const int error = errno;
    requested = 1;
    const char byte = 0;
    // A full pipe holds a request already.
    [[maybe_unused]] const auto written = write(ends[1], &byte, 1);
    errno = error;
}

void empty(int descriptor) {
    std::array<char, 64> bytes{};
    while (read(descriptor, bytes.data(), bytes.size()) > 0) {
    }
}

} // namespace

EndSignals::EndSignals() {
    requested = 0;
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals keep their meaning
    }
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &action, &formerly[i]);
        // A signal that the parent process ignored stays ignored: "nohup raincast &".
        if (formerly[i].sa_handler == SIG_IGN) {
            sigaction(kSignals[i], &formerly[i], nullptr);
        }
    }
}

EndSignals::~EndSignals() {
    m_notifier.reset();
    requested = 0;
    if (ends[0] < 0) {
        return;
    }
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &formerly[i], nullptr);
    }
    for (int& end : ends) {
        close(end);
        end = -1;
    }
}

void EndSignals::onEnd(std::function<void()> end) {
    m_notifier.reset();
    if (!end || ends[0] < 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(
        m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
        [end = std::move(end)] {
            empty(ends[0]);
            end();
        }
    );
}

bool EndSignals::came() {
    return requested != 0;
}

void EndSignals::endWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

} // namespace raincast
