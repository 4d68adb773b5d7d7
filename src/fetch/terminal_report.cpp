// SPDX-License-Identifier: MIT
#include "fetch/terminal_report.h"

#include <ostream>
#include <string>

namespace raincast {

namespace {

constexpr int kBarWidth = 30;

} // namespace

TerminalReport::~TerminalReport() {
    eraseBar();
}

void TerminalReport::statusChanged(const QString& status) {
    eraseBar();
    m_stream << status.toStdString() << std::flush;
}

void TerminalReport::progress(int done, int wanted) {
    if (!m_isTerminal) {
        return;
    }
    const auto filled = static_cast<std::size_t>(kBarWidth * done / wanted);
    m_stream << "\r[" << std::string(filled, '#') << std::string(kBarWidth - filled, ' ') << "] "
             << done << " of " << wanted << std::flush;
    m_barShown = true;
}

void TerminalReport::eraseBar() {
    if (m_barShown) {
        m_stream << "\r\033[K" << std::flush; // to the line's start, and erase to its end
        m_barShown = false;
    }
}

} // namespace raincast
