// SPDX-License-Identifier: MIT
// The viewer's command line, an argument a line, as a file manager, a script or a stranger's link
// gives it: what is read can be used, or a usage error says why not.
#include "app/app_options.h"

#include "input.h"
#include "net/servers.h"
#include "position/source/position_source_address.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const auto options =
        readAppOptions(QStringList(QStringLiteral("raincast")) + Input(data, size).arguments());
    if (!options) {
        require(!options.error().text.isEmpty());
        return 0;
    }
    for (const QString& server : {options->radarServer, options->basemapServer}) {
        require(server.isEmpty() || isServer(server));
    }
    for (const QString& site : {options->siteId, options->welcomeSiteId}) {
        require(site.isEmpty() || findRadarSite(site) != nullptr);
    }
    for (const QString& path : {options->pageFile, options->screenshot, options->loop}) {
        require(path.isEmpty() || path.startsWith(u'/'));
    }
    require(
        !options->product ||
        (*options->product >= 0 && static_cast<std::size_t>(*options->product) < kRadarProductCount)
    );
    require(options->nmea.isEmpty() || PositionSourceAddress::parse(options->nmea));
    require(options->geometry.isEmpty() || options->geometry.width() <= 16384);
    return 0;
}
