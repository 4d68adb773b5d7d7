// SPDX-License-Identifier: MIT
// Texts of warnings of any bytes: what is read has its bounds, and every corner lies on the earth.
#include "radar/warning_texts.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const auto texts = readWarningTexts(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
    );
    if (!texts) {
        return 0;
    }
    require(texts->warnings.size() <= kMostWarningTexts);
    for (const WarningText& warning : texts->warnings) {
        require(!warning.event.isEmpty() && warning.text.size() <= kMostTextLetters);
        for (const WarningText::Polygon& polygon : warning.polygons) {
            require(!polygon.empty());
            for (const WarningText::Ring& ring : polygon) {
                require(!ring.empty());
                for (const GeoPosition& corner : ring) {
                    require(std::abs(corner.latitude) <= 90 && std::abs(corner.longitude) <= 360);
                }
            }
        }
    }
    return 0;
}
