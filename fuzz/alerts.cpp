// SPDX-License-Identifier: MIT
// Messages about warnings, in both providers' forms: whatever the bytes, what is found can be drawn
// and told.
#include "provider/alert_reader.h"
#include "radar/catalogue/image_geometry.h"
#include "tree/warnings_text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const ImageGeometry image(35, -97, Range::longRange);
    for (const auto read : {readAlerts, readStormWarnings}) {
        const auto alerts = read(bytes);
        if (!alerts) {
            if (alerts.error().isEmpty()) {
                std::abort();
            }
            continue;
        }
        const std::vector<WeatherWarning> warnings = warningsOf(*alerts);
        for (const WeatherWarning& warning : warnings) {
            for (const WeatherWarning::Polygon& polygon : warning.polygons) {
                if (polygon.empty() || polygon.front().size() < 3) {
                    std::abort();
                }
            }
        }
        static_cast<void>(warningsText(image, {warnings, false}));
    }
    return 0;
}
