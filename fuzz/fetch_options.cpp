// SPDX-License-Identifier: MIT
// The command line of raincast-fetch, an argument a line.
#include "fetch/fetch_options.h"

#include "input.h"
#include "net/servers.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "radar/radar_state.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const auto options = readFetchOptions(
        QStringList(QStringLiteral("raincast-fetch")) + Input(data, size).arguments()
    );
    if (!options) {
        require(!options.error().text.isEmpty());
        return 0;
    }
    require(findRadarSite(options->siteId) != nullptr && isServer(options->radarServer));
    require(
        options->product >= 0 && static_cast<std::size_t>(options->product) < kRadarProductCount
    );
    require(options->frames >= 1 && options->frames <= kMostFrames);
    require(options->intervalMinutes >= 1 && options->intervalMinutes <= kMostFrameInterval);
    return 0;
}
