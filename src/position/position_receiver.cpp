// SPDX-License-Identifier: MIT
#include "position/position_receiver.h"

#include "core/text.h"
#include "position/receiver_change.h"

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

constexpr std::chrono::seconds kFirstDelay{1};
constexpr std::chrono::seconds kLongestDelay{30};

} // namespace

PositionReceiver::PositionReceiver(Timers& timers, Make make)
    : m_timers(timers), m_make(std::move(make)), m_reader(std::in_place), m_delay(kFirstDelay),
      m_nextDelay(kFirstDelay), m_open(timers, [this] { open(); }),
      m_openAgain(timers.make([this] { m_open.call(); })) {}

PositionReceiver::~PositionReceiver() {
    close();
}

void PositionReceiver::close() {
    m_open.cancel();
    m_openAgain->stop();
    if (m_source) {
        m_source->close();
        m_source.reset();
    }
}

void PositionReceiver::use(const std::optional<PositionSourceAddress>& address) {
    close();
    m_reader.emplace();
    m_rmcSeen = false;
    m_problem.clear();
    m_nextDelay = kFirstDelay;
    m_state = State::off;
    m_address = address;
    ReceiverChange change;
    Listener<ReceiverChange>::Notify(change);
    if (address) {
        m_source = m_make(*address, m_timers);
        m_state = State::open;
        m_open.call();
    }
}

void PositionReceiver::open() {
    m_state = State::open;
    m_reader->reset();
    m_source->open(*this);
}

void PositionReceiver::received(std::string_view bytes) {
    const std::uint64_t before = m_reader->counters().sentences();
    m_reader->feed(bytes);
    if (m_reader->counters().sentences() != before) {
        m_nextDelay = kFirstDelay;
        m_problem.clear();
    }
}

void PositionReceiver::broken(const QString& why) {
    m_state = State::waiting;
    m_problem = why;
    m_delay = m_nextDelay;
    m_nextDelay = std::min(2 * m_delay, kLongestDelay);
    m_openAgain->start(m_delay);
}

void PositionReceiver::finished() {
    m_state = State::finished;
    m_problem.clear();
}

QString PositionReceiver::statusText() const {
    const QString counters = QString::fromStdString(m_reader->counters().text());
    switch (m_state) {
    case State::off:
        return Text::tr("No position source");
    case State::open:
        return m_problem.isEmpty() ? Text::tr("Open; %1").arg(counters)
                                   : Text::tr("%1; trying again; %2").arg(m_problem, counters);
    case State::waiting:
        return Text::tr("%1; opening it again after %2 s; %3")
            .arg(m_problem, QString::number(m_delay.count()), counters);
    case State::finished:
        return Text::tr("Finished; %1").arg(counters);
    }
    return {};
}

} // namespace raincast
