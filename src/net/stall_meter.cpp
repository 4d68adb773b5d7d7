// SPDX-License-Identifier: MIT
#include "net/stall_meter.h"

namespace raincast {

namespace {

constexpr int kMarksPerWindow = 32;

} // namespace

bool StallMeter::stalled(Time now, qint64 bytes) {
    if (m_marks.empty() || now - m_marks.back().time >= m_window / kMarksPerWindow) {
        m_marks.push_back({now, bytes});
    }
    while (m_marks.size() > 1 && now - m_marks[1].time >= m_window) {
        m_marks.pop_front();
    }
    const auto elapsed = now - m_marks.front().time;
    const double seconds = std::chrono::duration<double>(elapsed).count();
    const auto brought = static_cast<double>(bytes - m_marks.front().bytes);
    return elapsed >= m_window && brought < seconds * m_bytesPerSecond;
}

} // namespace raincast
