// SPDX-License-Identifier: MIT
#include "fetch/fetch_options.h"

#include "core/number_in_range.h"
#include "net/servers.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "radar/radar_state.h"

namespace raincast {

namespace {

constexpr std::size_t kMostSuggestions = 5;

QList<QCommandLineOption> options() {
    return {
        {QStringLiteral("frames"), QStringLiteral("How many frames to fetch, 1 to 25."),
         QStringLiteral("N"), QStringLiteral("1")},
        {QStringLiteral("interval"),
         QStringLiteral("The least time between two frames, 1 to 60 minutes."),
         QStringLiteral("MINUTES"), QStringLiteral("9")},
        {QStringLiteral("cache"), QStringLiteral("The folder that keeps the frames."),
         QStringLiteral("DIR")},
        {QStringLiteral("radar-server"), QStringLiteral("Where the images come from."),
         QStringLiteral("HOST[:PORT]"), QString::fromUtf16(kLocalServer)},
        {QStringLiteral("no-warnings"), QStringLiteral("Do not fetch the warnings image.")},
        {{QStringLiteral("q"), QStringLiteral("quiet")},
         QStringLiteral("Print only the frames and usage errors.")},
        {QStringLiteral("verbose"),
         QStringLiteral("Name each URL with its HTTP status or why it failed.")},
    };
}

using Reading = tl::expected<void, QString>;

Reading wrong(const QString& sentence) {
    return tl::unexpected(sentence);
}

/// "a, b or c"
QString enumeration(QStringList words) {
    if (words.size() < 2) {
        return words.join(QString());
    }
    const QString last = words.takeLast();
    return words.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
}

Reading unknownSite(const QString& typed) {
    QStringList nearest;
    for (const RadarSite* site : suggestRadarSites(typed, kMostSuggestions)) {
        nearest += QStringLiteral("%1 (%2)").arg(site->idText(), site->nameText());
    }
    return wrong(
        QStringLiteral("There is no site %1. The nearest are %2.").arg(typed, enumeration(nearest))
    );
}

Reading unknownProduct(const QString& typed) {
    QStringList nearest;
    for (const RadarProduct* product : suggestRadarProducts(typed)) {
        nearest += QStringLiteral("%1 (%2)").arg(product->codeText(), product->nameText());
    }
    return wrong(QStringLiteral("There is no product %1. The nearest are %2.")
                     .arg(typed, enumeration(nearest)));
}

/// Takes the site and the product from the positional arguments.
Reading readNames(const QStringList& words, FetchOptions& result) {
    if (words.isEmpty() || words.size() > 2) {
        return wrong(QStringLiteral("Give one site and at most one product."));
    }
    const RadarSite* site = findRadarSite(words[0].toUpper());
    if (site == nullptr) {
        return unknownSite(words[0]);
    }
    result.siteId = site->idText().toString();
    if (words.size() == 2) {
        const auto product = findRadarProduct(words[1].toUpper());
        if (!product) {
            return unknownProduct(words[1]);
        }
        result.product = *product;
    }
    return {};
}

Reading readValues(const QCommandLineParser& parser, FetchOptions& result) {
    const auto frames = numberInRange(parser.value(QStringLiteral("frames")), 1, kMostFrames);
    if (!frames) {
        return wrong(QStringLiteral("--frames takes a number from 1 to %1.").arg(kMostFrames));
    }
    const auto interval =
        numberInRange(parser.value(QStringLiteral("interval")), 1, kMostFrameInterval);
    if (!interval) {
        return wrong(
            QStringLiteral("--interval takes a number from 1 to %1.").arg(kMostFrameInterval)
        );
    }
    result.frames = *frames;
    result.intervalMinutes = *interval;
    result.cacheFolder = parser.value(QStringLiteral("cache"));
    result.radarServer = parser.value(QStringLiteral("radar-server"));
    result.warnings = !parser.isSet(QStringLiteral("no-warnings"));
    result.quiet = parser.isSet(QStringLiteral("quiet"));
    result.verbose = parser.isSet(QStringLiteral("verbose"));
    if (!isServer(result.radarServer)) {
        return wrong(QStringLiteral("--radar-server takes HOST or HOST:PORT, the port 1 to 65535.")
        );
    }
    return {};
}

} // namespace

tl::expected<FetchOptions, CommandLineAnswer> readFetchOptions(const QStringList& arguments) {
    CommandLine line(
        QStringLiteral("raincast-fetch"),
        QStringLiteral(
            "Fetches the newest radar images of a site into the image cache and prints their files."
        )
    );
    QCommandLineParser& parser = line.parser();
    parser.addOptions(options());
    parser.addPositionalArgument(
        QStringLiteral("SITE"),
        QStringLiteral("The three letters of a radar site, MUX for example.")
    );
    parser.addPositionalArgument(
        QStringLiteral("PRODUCT"),
        QStringLiteral("N0R (the default), NCR, N0Z, N1P, NTP, N0V or N0S."),
        QStringLiteral("[PRODUCT]")
    );
    if (auto parsed = line.parse(arguments); !parsed) {
        return tl::unexpected(parsed.error());
    }
    FetchOptions result;
    const Reading read = readNames(parser.positionalArguments(), result).and_then([&] {
        return readValues(parser, result);
    });
    if (!read) {
        return tl::unexpected(line.usageError(read.error()));
    }
    return result;
}

} // namespace raincast
