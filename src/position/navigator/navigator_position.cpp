// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_position.h"

#include "position/data_gps_position.h"
#include "position/navigator/qv_transaction.h"

#include <algorithm>

namespace raincast {

namespace {

NavigatorStatus read(CQV_transaction& file, NavigatorPosition& position) {
    const NavigatorStatus read[] = {
        file.ReadDouble(position.latitude), file.ReadDouble(position.longitude),
        file.ReadFloat(position.course),    file.ReadFloat(position.speed),
        file.ReadFloat(position.altitude),  file.ReadUInt32(position.unixSeconds),
        file.ReadBool(position.valid),      file.ReadFloat(position.extra1),
        file.ReadFloat(position.extra2),
    };
    return *std::max_element(std::begin(read), std::end(read)); // success or the one failure
}

NavigatorStatus get(NavigatorRequest request, NavigatorPosition& position) {
    CQV_transaction transaction;
    const NavigatorStatus status = transaction.Call(request);
    return status == kNavigatorSuccess ? read(transaction, position) : status;
}

} // namespace

NavigatorStatus getNavigatorPosition(NavigatorPosition& position) {
    const NavigatorStatus status = get(kNavigatorGetPositionNewer, position);
    return status == kNavigatorUnknownRequest ? get(kNavigatorGetPosition, position) : status;
}

NavigatorStatus setNavigatorPosition(const CDataGPSPosition& position) {
    CQV_transaction transaction;
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
