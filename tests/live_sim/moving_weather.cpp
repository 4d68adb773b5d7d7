// SPDX-License-Identifier: MIT
#include "live_sim/moving_weather.h"

#include "core/clock.h"
#include "core/utc_date_time.h"
#include "provider/live_object.h"
#include "provider/live_products.h"
#include "radar/catalogue/antenna_positions.h"
#include "support/level3_maker.h"

#include <algorithm>

namespace raincast {

namespace {

constexpr FileTime kVolume = 5 * kFileTimePerMinute;
constexpr int kReflectivity = 153;
constexpr int kRadials = 90;
constexpr std::size_t kGates = 230;

/// Echoes on a part of the circle, which turns.
Level3ToMake volumeOf(const std::string& radar, FileTime time) {
    Level3ToMake wanted = digitalProduct("N0B" + radar, kReflectivity, time);
    wanted.packed = true;
    wanted.rows.clear();
    const int turned = static_cast<int>(time / kVolume);
    for (int i = 0; i < kRadials; ++i) {
        std::vector<std::uint8_t> cells(kGates, 0);
        const int place = (i + turned) % kRadials;
        if (place < kRadials / 3) {
            std::fill(cells.begin() + place, cells.end() - 2 * place, 90 + place);
        }
        wanted.rows.push_back({i * 3600 / kRadials, 3600 / kRadials, std::move(cells)});
    }
    return wanted;
}

QByteArray warningAt(double latitude, double longitude, FileTime end) {
    const auto corner = [&](double north, double east) {
        return '[' + QByteArray::number(longitude + east) + ',' +
               QByteArray::number(latitude + north) + ']';
    };
    return R"({"features":[{"geometry":{"type":"Polygon","coordinates":[[)" + corner(0, 0) + ',' +
           corner(0, 1) + ',' + corner(1, 1) + ',' + corner(0, 0) + R"(]]},"properties":{"id":")" +
           QByteArray::number(longitude) +
           R"(","event":"Tornado Warning","headline":"Take cover","ends":")" +
           utcDateTime(end).toString(Qt::ISODate).toLatin1() + R"("}}]})";
}

} // namespace

MovingWeather::MovingWeather(LiveSim& sim, int hours)
    : m_sim(sim), m_kept(hours * 60 * kFileTimePerMinute), m_upTo(SystemClock().now() - m_kept) {}

void MovingWeather::update() {
    const FileTime now = SystemClock().now();
    updateVolumes(now);
    updateWarnings(now);
}

void MovingWeather::updateVolumes(FileTime now) {
    const auto& antennas = antennaPositions();
    const FileTime step = kVolume / static_cast<FileTime>(antennas.size());
    for (std::size_t i = 0; i < antennas.size(); ++i) {
        const std::string radar(radarOf(antennas[i].id, now));
        // Whole seconds, as keys have them.
        const FileTime offset =
            static_cast<FileTime>(i) * step / kFileTimePerSecond * kFileTimePerSecond;
        FileTime time = (m_upTo - offset) / kVolume * kVolume + offset + kVolume;
        for (; time <= now; time += kVolume) {
            const LiveName name{radar, "N0B"};
            const QByteArray bytes = QByteArray::fromStdString(makeLevel3(volumeOf(radar, time)));
            m_sim.bucket.put(keyOf(name, time), bytes, time);
            m_sim.bucket.remove(keyOf(name, time - m_kept / kVolume * kVolume));
        }
    }
    m_upTo = std::max(m_upTo, now);
}

void MovingWeather::updateWarnings(FileTime now) {
    if (now - m_warnedAt < kVolume) {
        return;
    }
    m_warnedAt = now;
    const double way = static_cast<double>(now / kVolume % 400) / 10; // degrees
    m_sim.alerts.setAlerts(warningAt(35.3, -120 + way, now + 30 * kFileTimePerMinute));
}

} // namespace raincast
