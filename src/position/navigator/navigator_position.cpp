// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_position.h"

#include "position/data_gps_position.h"
#include "position/navigator/qv_transaction.h"

#include <algorithm>

namespace raincast {

namespace {

using Result = tl::expected<NavigatorPosition, NavigatorStatus>;

Result read(CQV_transaction& file) {
    NavigatorPosition position;
    const NavigatorStatus read[] = {
        file.ReadDouble(position.latitude), file.ReadDouble(position.longitude),
        file.ReadFloat(position.course),    file.ReadFloat(position.speed),
        file.ReadFloat(position.altitude),  file.ReadUInt32(position.unixSeconds),
        file.ReadBool(position.valid),      file.ReadFloat(position.extra1),
        file.ReadFloat(position.extra2),
    };
    const auto status = *std::max_element(std::begin(read), std::end(read)); // or the one failure
    return status == kNavigatorSuccess ? Result(position) : tl::unexpected(status);
}

Result get(NavigatorLink& link, NavigatorRequest request) {
    CQV_transaction transaction(link);
    const NavigatorStatus status = transaction.Call(request);
    return status == kNavigatorSuccess ? read(transaction) : tl::unexpected(status);
}

} // namespace

Result getNavigatorPosition(NavigatorLink& link) {
    const Result newer = get(link, kNavigatorGetPositionNewer);
    const bool unknown = !newer && newer.error() == kNavigatorUnknownRequest;
    return unknown ? get(link, kNavigatorGetPosition) : newer;
}

NavigatorStatus setNavigatorPosition(NavigatorLink& link, const CDataGPSPosition& position) {
    CQV_transaction transaction(link);
    transaction.WriteDouble(position.latitude);
    transaction.WriteDouble(position.longitude);
    for (const float value : {position.course, position.speed, position.altitude}) {
        transaction.WriteDouble(value);
    }
    transaction.WriteUInt32(static_cast<std::uint32_t>(toUnixSeconds(position.time)));
    transaction.WriteUInt32(position.valid() ? 1 : 0);
    transaction.WriteDouble(position.extra1);
    transaction.WriteDouble(position.extra2);
    return transaction.Call(kNavigatorSetPosition);
}

} // namespace raincast
