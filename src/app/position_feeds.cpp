// SPDX-License-Identifier: MIT
// The feeds of the program's position: they listen from before the entry point to the end.
#include "position/feed_qvapi_to_gps_position.h"
#include "position/feed_rmc_to_gps_position.h"

namespace raincast {

namespace {

[[maybe_unused]] const auto& receiverFeed = CFeedRMC_to_GPSPosition::program();
[[maybe_unused]] const auto& navigatorFeed = CFeedQVAPI_to_GPSPosition::program();

} // namespace

} // namespace raincast
