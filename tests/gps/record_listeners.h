// SPDX-License-Identifier: MIT
#pragma once

#include "gps/data_gps_position.h"
#include "gps/listener.h"
#include "gps/nmea_gga.h"
#include "gps/nmea_rmc.h"
#include "gps/nmea_vtg.h"

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
