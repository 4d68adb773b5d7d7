// SPDX-License-Identifier: MIT
#include "server/server_options.h"

#include "radar/catalogue/sites.h"

#include <QCommandLineParser>

namespace raincast {

namespace {

// Two days of 155 sites' frames fill some twenty gigabytes.
constexpr int kMostHours = 48;

QList<QCommandLineOption> options() {
    const auto option = [](const char* name, const char* text, const char* value = "",
                           const char* preset = "") {
        return QCommandLineOption(
            QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value),
            QString::fromLatin1(preset)
        );
    };
    return {
        option("sample", "Serve sample weather (the default without --level3)."),
        option("level3", "Serve the NEXRAD Level III products of a folder.", "DIR"),
        option("hours", "How long frames are kept, 1 to 48 hours; 0: for good.", "N", "4"),
        option(
            "listen", "Where to listen; port 0 is any free one.", "ADDRESS:PORT", "127.0.0.1:8155"
        ),
        option("publish", "Write the whole tree as files to a folder.", "DIR"),
        option("sites", "Publish these sites only.", "SSS,SSS..."),
        option("once", "Publish once, then end."),
        option("roads", "The lines of the highways layer: GeoJSON or a shapefile.", "FILE"),
        option("map-data", "The folder that scripts/install-map-data has filled.", "DIR"),
        option("cache", "The folder that keeps painted layers and frames.", "DIR"),
        option("end-with-parent", "End when the program that started this one ends."),
        option("quiet", "Log nothing."),
    };
}

ServerAnswer wrong(const QString& text) {
    return {text, true};
}

/// An option that was given, but with nothing in it: a script's variable that is not set must not
/// make sample weather of a feed.
QString emptyOption(const QCommandLineParser& parser) {
    for (const QCommandLineOption& option : options()) {
        const QString name = option.names().constFirst();
        if (!option.valueName().isEmpty() && parser.isSet(name) && parser.value(name).isEmpty()) {
            return name;
        }
    }
    return {};
}

/// Site ids between commas; nothing and the first that is none in `unknown` otherwise.
std::optional<QStringList> readSites(const QString& text, QString& unknown) {
    QStringList sites;
    for (const QString& word : text.split(u',', Qt::SkipEmptyParts)) {
        if (findRadarSite(word.toUpper()) == nullptr) {
            unknown = word;
            return std::nullopt;
        }
        sites += word.toUpper();
    }
    return sites;
}

std::optional<ServerAnswer> readServing(const QCommandLineParser& parser, ServeOptions& result) {
    const auto value = [&parser](const char* name) { return parser.value(QLatin1String(name)); };
    const auto isSet = [&parser](const char* name) { return parser.isSet(QLatin1String(name)); };
    result.level3Folder = value("level3");
    if (isSet("sample") && isSet("level3")) {
        return wrong(QStringLiteral("--sample and --level3 exclude each other."));
    }
    bool isNumber = false;
    result.hours = value("hours").toInt(&isNumber);
    if (!isNumber || result.hours < 0 || result.hours > kMostHours) {
        return wrong(QStringLiteral("--hours takes a number from 0 to %1.").arg(kMostHours));
    }
    if (result.hours == 0 && !isSet("level3")) {
        return wrong(QStringLiteral("--hours 0 needs --level3: sample weather has no beginning."));
    }
    result.publishFolder = value("publish");
    result.once = isSet("once");
    if ((result.once || isSet("sites")) && result.publishFolder.isEmpty()) {
        return wrong(QStringLiteral("--once and --sites need --publish."));
    }
    result.listen = readListenAddress(value("listen"));
    if (!result.listen) {
        return wrong(QStringLiteral("--listen takes ADDRESS:PORT."));
    }
    // Who publishes has a web server of his own.
    if (!result.publishFolder.isEmpty() && !isSet("listen")) {
        result.listen.reset();
    }
    QString unknown;
    if (const auto sites = readSites(value("sites"), unknown)) {
        result.publishSites = *sites;
    } else {
        return wrong(QStringLiteral("There is no site %1.").arg(unknown));
    }
    result.roadsFile = value("roads");
    result.mapDataFolder = value("map-data");
    result.cacheFolder = value("cache");
    result.endWithParent = isSet("end-with-parent");
    result.quiet = isSet("quiet");
    return std::nullopt;
}

QString helpText(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        QStringLiteral("Serves an image tree of weather radar: frames, warnings and map layers.\n"
                       "With \"render FILE OUT.gif\" it renders one Level III product instead.")
    );
    return parser.helpText();
}

} // namespace

std::variant<ServeOptions, RenderOptions, ServerAnswer>
readServerOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")
    );
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version.")
    );
    parser.addOptions(options());
    parser.addOptions({help, version});
    parser.addPositionalArgument(
        QStringLiteral("render FILE OUT.gif"), QStringLiteral("Renders one product."),
        QStringLiteral("[render FILE OUT.gif]")
    );
    if (!parser.parse(arguments)) {
        // Some versions of Qt end the sentence, some do not.
        const QString error = parser.errorText();
        return wrong(error.endsWith(u'.') ? error : error + u'.');
    }
    if (parser.isSet(help)) {
        return ServerAnswer{helpText(parser), false};
    }
    if (parser.isSet(version)) {
        return ServerAnswer{QStringLiteral("raincast-server " RAINCAST_VERSION "\n"), false};
    }
    if (const QString empty = emptyOption(parser); !empty.isEmpty()) {
        return wrong(QStringLiteral("--%1 takes a value.").arg(empty));
    }
    const QStringList words = parser.positionalArguments();
    if (words.size() == 3 && words[0] == u"render") {
        return RenderOptions{words[1], words[2]};
    }
    if (!words.isEmpty()) {
        return wrong(QStringLiteral("The only command is: render FILE OUT.gif"));
    }
    ServeOptions result;
    if (auto answer = readServing(parser, result)) {
        return *answer;
    }
    return result;
}

std::optional<ListenAddress> readListenAddress(const QString& text) {
    const qsizetype colon = text.lastIndexOf(u':');
    QString address = text.left(qMax<qsizetype>(0, colon));
    bool isPort = false;
    const uint port = text.sliced(colon + 1).toUShort(&isPort);
    const bool bracketed = address.startsWith(u'[') && address.endsWith(u']');
    if (bracketed) {
        address = address.sliced(1, address.size() - 2);
    }
    // Colons without brackets: nobody can tell where the address ends.
    if (!isPort || address.isEmpty() || (!bracketed && address.contains(u':'))) {
        return std::nullopt;
    }
    return ListenAddress{address, static_cast<std::uint16_t>(port)};
}

} // namespace raincast
