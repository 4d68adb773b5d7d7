// SPDX-License-Identifier: MIT
#pragma once

#include "core/listener.h"
#include "position/data_gps_position.h"
#include "position/nmea/nmea_gga.h"
#include "position/nmea/nmea_rmc.h"
#include "position/nmea/nmea_vtg.h"

#include <vector>

namespace raincast {

/// Keeps a copy of every record that is published of its kind.
template<class T>
class RecordListener : private Listener<T> {
public:
    std::vector<T> records;

private:
    void onPublished(T& record) override { records.push_back(record); }
};

} // namespace raincast
