// SPDX-License-Identifier: MIT
// The command line of raincast-server, an argument a line; the addresses of providers among them.
#include "server/server_options.h"

#include "input.h"
#include "radar/catalogue/sites.h"

#include <QUrl>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QStringList arguments = Input(data, size).arguments();
    for (const QString& text : arguments) {
        if (const auto address = readListenAddress(text)) {
            require(!address->address.isEmpty());
        }
    }
    const auto options =
        readServerOptions(QStringList(QStringLiteral("raincast-server")) + arguments);
    if (!options) {
        require(!options.error().text.isEmpty());
        return 0;
    }
    const auto* const serve = std::get_if<ServeOptions>(&*options);
    if (serve == nullptr) {
        return 0;
    }
    for (const QString& site : serve->publishSites) {
        require(findRadarSite(site) != nullptr);
    }
    for (const auto& url : {serve->live.frames, serve->live.fallback, serve->live.warnings}) {
        require(!url || url->isEmpty() || !QUrl(*url, QUrl::StrictMode).host().isEmpty());
    }
    require(serve->hours >= 0 && serve->hours <= 48 && (serve->listen || serve->publishDetail > 0));
    require(!serve->live.contact.contains(u'\n'));
    return 0;
}
