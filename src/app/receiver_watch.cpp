// SPDX-License-Identifier: MIT
#include "app/receiver_watch.h"

#include "core/text.h"
#include "position/data_gps_position.h"
#include "position/position_receiver.h"
#include "units/units.h"

#include <QStringList>

namespace raincast {

namespace {

constexpr FileTime kWindow = 5 * kFileTimePerSecond;
constexpr FileTime kLongestGap = 20 * kFileTimePerSecond; // beyond: the computer slept
constexpr FileTime kFixHolds = kSecondsToLoss * kFileTimePerSecond;

QString rateText(double perSecond) {
    if (perSecond == 0) {
        return Text::tr("No sentences");
    }
    return Text::tr("%1 sentences per second")
        .arg(Text::number(perSecond, 'f', perSecond < 9.95 ? 1 : 0));
}

} // namespace

void ReceiverWatch::onPublished(ReceiverChange& /*change*/) {
    m_samples.clear();
    m_fix.reset();
    m_heard = false;
}

void ReceiverWatch::onPublished(CNMEA_GPS::RMC& rmc) {
    take(rmc.valid, {rmc.latitude, rmc.longitude});
}

void ReceiverWatch::onPublished(CNMEA_GPS::GGA& gga) {
    if (!m_receiver.rmcSeen()) {
        take(gga.quality != 0, {gga.latitude, gga.longitude});
    }
}

void ReceiverWatch::take(bool valid, GeoPosition position) {
    m_fix = valid ? std::optional(position) : std::nullopt;
    m_heard = valid;
}

void ReceiverWatch::look(FileTime now) {
    lookAtSentences(now);
    lookAtFix(now);
}

void ReceiverWatch::lookAtSentences(FileTime now) {
    const std::uint64_t sentences = m_receiver.counters().sentences();
    if (!m_samples.empty()) {
        const Sample& last = m_samples.back();
        const bool follows = last.time < now && now - last.time <= kLongestGap;
        if (!follows || sentences < last.sentences) {
            m_samples.clear();
        }
    }
    m_samples.push_back({now, sentences});
    while (m_samples.size() > 2 && now - m_samples.front().time > kWindow) {
        m_samples.pop_front();
    }
}

void ReceiverWatch::lookAtFix(FileTime now) {
    if (m_heard || now < m_fixTime) {
        m_fixTime = now;
        m_heard = false;
    } else if (now - m_fixTime >= kFixHolds) {
        m_fix.reset();
    }
}

std::optional<double> ReceiverWatch::sentencesPerSecond() const {
    if (m_samples.size() < 2) {
        return std::nullopt;
    }
    const Sample& first = m_samples.front();
    const Sample& last = m_samples.back();
    const double seconds = static_cast<double>(last.time - first.time) / kFileTimePerSecond;
    return static_cast<double>(last.sentences - first.sentences) / seconds;
}

QString ReceiverWatch::text() const {
    QStringList lines;
    const auto rate = sentencesPerSecond();
    if (rate && m_receiver.state() != PositionReceiver::State::off) {
        lines += (m_fix ? Text::tr("%1, fix") : Text::tr("%1, no fix")).arg(rateText(*rate));
    }
    if (m_fix) {
        lines += CUnits::global().formatPosition(*m_fix);
    }
    lines += m_receiver.statusText();
    return lines.join(u'\n');
}

} // namespace raincast
