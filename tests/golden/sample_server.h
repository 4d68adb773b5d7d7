// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"
#include "support/http_server.h"
#include "support/time_zone.h"

namespace raincast::test {

/// A radar image server with weather that is always the same: the layers of the site MUX and three
/// frames of the product N0R, the newest of them six minutes old. The viewer's servers, clock and
/// time zone are its while it lives.
class SampleServer {
public:
    SampleServer();
    ~SampleServer();
    SampleServer(const SampleServer&) = delete;
    SampleServer& operator=(const SampleServer&) = delete;

private:
    const TimeZone m_zone{"UTC0"};
    ManualClock m_clock;
    HttpServer m_server;
};

} // namespace raincast::test
