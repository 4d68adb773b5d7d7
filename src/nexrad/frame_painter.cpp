// SPDX-License-Identifier: MIT
#include "nexrad/frame_painter.h"

#include "image/gif_writer.h"
#include "image/sample_mark.h"
#include "nexrad/rasteriser.h"
#include "palette/nws_colours.h"
#include "radar/catalogue/antenna_positions.h"

#include <algorithm>
#include <array>

namespace raincast {

namespace {

// Behind the 16 levels.
constexpr std::uint8_t kInk = 16;
constexpr std::uint8_t kRim = 17;
constexpr QRgb kInkColour = 0xFF303030;
constexpr QRgb kRimColour = 0xFFE8E8E8;

} // namespace

ImageGeometry frameGeometry(const PolarScan& scan, Range range, int detail) {
    // The layers of a known site are placed by the tree's own position of its antenna, so its
    // frames must be too; the product's own may be some hundred metres off.
    const AntennaPosition* known = findAntenna(scan.site);
    return known != nullptr ? ImageGeometry(known->latitude, known->longitude, range, detail)
                            : ImageGeometry(scan.latitude, scan.longitude, range, detail);
}

std::optional<QByteArray> renderFrame(const PolarScan& scan, Product as) {
    return renderFrame(scan, as, frameGeometry(scan, rangeOf(as)));
}

std::optional<QByteArray>
renderFrame(const PolarScan& scan, Product as, const ImageGeometry& image) {
    IndexedPicture picture = rasterise(scan, image);
    std::array<QRgb, 18> colours{};
    const auto& levels = nwsColours(quantityOf(as));
    std::copy(levels.begin(), levels.end(), colours.begin());
    colours[kInk] = kInkColour;
    colours[kRim] = kRimColour;
    if (scan.sample) {
        markAsSample(picture, kInk, kRim);
    }
    return writeGif(picture, colours);
}

std::optional<QByteArray> emptyFrame() {
    return writeGif(IndexedPicture(), nwsColours(Quantity::reflectivity));
}

} // namespace raincast
