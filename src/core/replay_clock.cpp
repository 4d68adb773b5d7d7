// SPDX-License-Identifier: MIT
#include "core/replay_clock.h"

#include "core/utc_date_time.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

namespace raincast {

std::optional<Replay> readReplay(const QString& text) {
    static const QRegularExpression form(QRegularExpression::anchoredPattern(
        QStringLiteral("(\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d)Z(?:x([1-9]\\d?))?")
    ));
    const auto match = form.match(text);
    const auto begin = QDateTime::fromString(match.captured(1) + u'Z', Qt::ISODate);
    const int speed = match.captured(2).isEmpty() ? 1 : match.captured(2).toInt();
    if (!match.hasMatch() || !begin.isValid() || begin.toSecsSinceEpoch() < 0 ||
        speed > Replay::kMostSpeed) {
        return std::nullopt;
    }
    return Replay{kUnixEpoch + begin.toSecsSinceEpoch() * kFileTimePerSecond, speed};
}

QString textOf(const Replay& replay) {
    const auto begin = utcDateTime(replay.begin);
    const QString text = begin.toString(QStringLiteral("yyyy-MM-ddTHH:mm'Z'"));
    return replay.speed == 1 ? text : text + u'x' + QString::number(replay.speed);
}

bool canReplay(const Replay& replay) {
    return kFirstReplay <= replay.begin && replay.begin <= Clock::real().now();
}

QString folderTextOf(const Replay& replay) {
    return textOf(Replay{replay.begin}).remove(u':');
}

FileTime ReplayClock::now() const {
    const FileTime world = real().now();
    const FileTime latest = std::max(world, m_replay.begin);
    // A clock of the world that was set back must not lead to weather before the begin.
    const FileTime passed = std::max<FileTime>(world - m_start, 0);
    // A server's clock may be centuries behind: that many times the speed is no time any more.
    const bool isOver = passed > (latest - m_replay.begin) / m_replay.speed;
    return isOver ? latest : m_replay.begin + passed * m_replay.speed;
}

FileTime ReplayClock::until(FileTime time) const {
    const FileTime left = time - now();
    if (left <= 0) {
        return left;
    }
    // Slower than its speed where it meets the present.
    return std::max((left + m_replay.speed - 1) / m_replay.speed, time - real().now());
}

} // namespace raincast
