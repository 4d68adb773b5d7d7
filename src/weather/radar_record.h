// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"
#include "radar/radar_state.h"

namespace raincast {

class CSerialReader;
class CSerialWriter;

/// Reads what a page file keeps of a radar item: site, settings, the frames without their pictures,
/// and the cache's root. Never fails: a value that is missing, out of range or useless on this
/// machine leaves the old one, but a damaged site leaves no site. Frames beyond the most that can
/// be shown are skipped.
void readRadarRecord(CSerialReader& reader, RadarState& state, BasemapLayers& layers);

/// Writes the same; false when the writer fails.
[[nodiscard]] bool
writeRadarRecord(CSerialWriter& writer, const RadarState& state, const BasemapLayers& layers);

} // namespace raincast
