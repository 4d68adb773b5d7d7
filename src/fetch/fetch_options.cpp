// SPDX-License-Identifier: MIT
#include "fetch/fetch_options.h"

#include "core/number_in_range.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "radar/radar_state.h"
#include "radar/servers.h"

#include <QCommandLineParser>

#include <optional>

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
         QStringLiteral("Print nothing but the frames and wrong usage.")},
        {QStringLiteral("verbose"),
         QStringLiteral("Name each URL with its HTTP status or why it failed.")},
    };
}

FetchAnswer wrong(const QString& text) {
    return {text, true};
}

/// "a, b or c"
QString enumeration(QStringList words) {
    if (words.size() < 2) {
        return words.join(QString());
    }
    const QString last = words.takeLast();
    return words.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
}

FetchAnswer unknownSite(const QString& typed) {
    QStringList nearest;
    for (const RadarSite* site : suggestRadarSites(typed, kMostSuggestions)) {
        nearest += QStringLiteral("%1 (%2)").arg(site->idText(), site->nameText());
    }
    return wrong(
        QStringLiteral("There is no site %1. The nearest are %2.").arg(typed, enumeration(nearest))
    );
}

FetchAnswer unknownProduct(const QString& typed) {
    QStringList nearest;
    for (const RadarProduct* product : suggestRadarProducts(typed)) {
        nearest += QStringLiteral("%1 (%2)").arg(product->codeText(), product->nameText());
    }
    return wrong(QStringLiteral("There is no product %1. The nearest are %2.")
                     .arg(typed, enumeration(nearest)));
}

/// Takes site and product from the words that are no options.
std::optional<FetchAnswer> readNames(const QStringList& words, FetchOptions& result) {
    if (words.isEmpty() || words.size() > 2) {
        return wrong(QStringLiteral("One site, and at most one product, are wanted."));
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
    return std::nullopt;
}

std::optional<FetchAnswer> readValues(const QCommandLineParser& parser, FetchOptions& result) {
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
    return std::nullopt;
}

} // namespace

std::variant<FetchOptions, FetchAnswer> readFetchOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Fetches the newest radar images of a site into the image cache and prints their files."
    ));
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")
    );
    const QCommandLineOption version = parser.addVersionOption();
    parser.addOption(help);
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

    if (!parser.parse(arguments)) {
        return wrong(parser.errorText());
    }
    if (parser.isSet(help)) {
        return FetchAnswer{parser.helpText(), false};
    }
    if (parser.isSet(version)) {
        return FetchAnswer{QStringLiteral("raincast-fetch " RAINCAST_VERSION "\n"), false};
    }
    FetchOptions result;
    if (auto answer = readNames(parser.positionalArguments(), result)) {
        return *answer;
    }
    if (auto answer = readValues(parser, result)) {
        return *answer;
    }
    return result;
}

} // namespace raincast
