// SPDX-License-Identifier: MIT
#pragma once

#include "radar/radar_update.h"

#include <iosfwd>

namespace raincast {

/// Reports an update on a text stream: the status texts and, if the stream is a terminal, a
/// progress bar that is redrawn in place and erased in the end.
class TerminalReport : public RadarUpdateObserver {
public:
    /// The stream is borrowed.
    TerminalReport(std::ostream& stream, bool isTerminal)
        : m_stream(stream), m_isTerminal(isTerminal) {}
    ~TerminalReport() override;

    void statusChanged(const QString& status) override;
    void repaint() override {}
    void progress(int done, int wanted) override;

private:
    void eraseBar();

    std::ostream& m_stream;
    bool m_isTerminal;
    bool m_barShown = false;
};

} // namespace raincast
