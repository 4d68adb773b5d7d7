// SPDX-License-Identifier: MIT
#include "server/server_options.h"

#include "core/clock.h"
#include "radar/catalogue/sites.h"

#include <QUrl>

#include <array>

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
        option("sample", "Serve sample weather (the default)."),
        option("level3", "Serve the NEXRAD Level III products of a folder.", "DIR"),
        option("live", "Fetch what people look at from public providers and serve it."),
        option("live-frames", "Where --live finds products, or \"none\".", "URL"),
        option("live-fallback", "Where it finds them when that fails, or \"none\".", "URL"),
        option("live-warnings", "Where it finds warnings, or \"none\".", "URL"),
        option(
            "replay",
            "Let --live begin at a time of the past (UTC) and run up to 60 times as fast.",
            "2021-12-11T02:00Z[xN]"
        ),
        option("contact", "An address that --live tells to the providers.", "ADDRESS"),
        option("hours", "How long frames are kept, 1 to 48 hours; 0: for good.", "N", "4"),
        option(
            "listen", "Where to listen; port 0 is any free one.", "ADDRESS:PORT", "127.0.0.1:8155"
        ),
        option("publish", "Write the whole tree as files to a folder.", "DIR"),
        option("sites", "Publish these sites only.", "SSS,SSS..."),
        option("once", "Publish once, then end."),
        option(
            "detail",
            "Render, or publish too, pictures of 2 or 4 pixels in the place of one, each way.", "N",
            "1"
        ),
        option("roads", "The lines of the highways layer: GeoJSON or a shapefile.", "FILE"),
        option("cache", "The folder that keeps painted layers, frames and products.", "DIR"),
        option("end-with-parent", "End when the program that started this one ends."),
        option("quiet", "Log nothing."),
    };
}

using Reading = tl::expected<void, QString>;

Reading wrong(const QString& sentence) {
    return tl::unexpected(sentence);
}

/// Site ids between commas.
tl::expected<QStringList, QString> sitesIn(const QString& text) {
    QStringList sites;
    for (const QString& word : text.split(u',', Qt::SkipEmptyParts)) {
        if (findRadarSite(word.toUpper()) == nullptr) {
            return tl::unexpected(QStringLiteral("There is no site %1.").arg(word));
        }
        sites += word.toUpper();
    }
    return sites;
}

tl::expected<SourceKind, QString> sourceIn(const QCommandLineParser& parser) {
    struct Choice {
        const char* option;
        SourceKind kind;
    };
    constexpr std::array kChoices = {
        Choice{"sample", SourceKind::sample}, Choice{"level3", SourceKind::level3},
        Choice{"live", SourceKind::live}};
    std::optional<Choice> chosen;
    for (const Choice& choice : kChoices) {
        if (!parser.isSet(QLatin1String(choice.option))) {
            continue;
        }
        if (chosen) {
            return tl::unexpected(QStringLiteral("--%1 and --%2 exclude each other.")
                                      .arg(QLatin1String(chosen->option))
                                      .arg(QLatin1String(choice.option)));
        }
        chosen = choice;
    }
    return chosen ? chosen->kind : SourceKind::sample;
}

/// An address without its last slash, or an empty text for "none".
tl::expected<std::optional<QString>, QString>
addressIn(const QCommandLineParser& parser, const QString& option) {
    if (!parser.isSet(option)) {
        return std::nullopt;
    }
    QString text = parser.value(option);
    if (text == u"none") {
        return QString();
    }
    const QUrl url(text, QUrl::StrictMode);
    const bool isHttp = url.scheme() == u"http" || url.scheme() == u"https";
    if (!url.isValid() || !isHttp || url.host().isEmpty() || url.hasQuery() || url.hasFragment()) {
        return tl::unexpected(QStringLiteral("--%1 takes an address that begins with http:// or "
                                             "https://, or the word none.")
                                  .arg(option));
    }
    while (text.endsWith(u'/')) {
        text.chop(1);
    }
    return text;
}

Reading readReplayIn(const QCommandLineParser& parser, ServeOptions& result) {
    const QString option = QStringLiteral("replay");
    if (!parser.isSet(option)) {
        return {};
    }
    if (result.source != SourceKind::live) {
        return wrong(QStringLiteral("--replay needs --live."));
    }
    const auto replay = readReplay(parser.value(option));
    if (!replay) {
        return wrong(QStringLiteral("--replay takes a time like 2021-12-11T02:00Z, and behind it x "
                                    "and a speed from 1 to %1 if the weather is to run faster.")
                         .arg(Replay::kMostSpeed));
    }
    if (!canReplay(*replay)) {
        return wrong(QStringLiteral("--replay begins between 2020 and now."));
    }
    result.live.replay = replay;
    return {};
}

Reading readLive(const QCommandLineParser& parser, ServeOptions& result) {
    LiveOptions& live = result.live;
    const std::pair<const char*, std::optional<QString>*> addresses[] = {
        {"live-frames", &live.frames},
        {"live-fallback", &live.fallback},
        {"live-warnings", &live.warnings},
    };
    for (const auto& [name, value] : addresses) {
        const QString option = QLatin1String(name);
        if (parser.isSet(option) && result.source != SourceKind::live) {
            return wrong(QStringLiteral("--%1 needs --live.").arg(option));
        }
        const auto address = addressIn(parser, option);
        if (!address) {
            return wrong(address.error());
        }
        *value = *address;
    }
    live.contact = parser.value(QStringLiteral("contact")).simplified();
    if (!live.contact.isEmpty() && result.source != SourceKind::live) {
        return wrong(QStringLiteral("--contact needs --live."));
    }
    const bool publishesAll = !parser.value(QStringLiteral("publish")).isEmpty() &&
                              parser.value(QStringLiteral("sites")).isEmpty();
    if (result.source == SourceKind::live && publishesAll) {
        return wrong(QStringLiteral("--live with --publish needs --sites: all of them would ask "
                                    "the providers for too much."));
    }
    return {};
}

Reading readSource(const QCommandLineParser& parser, ServeOptions& result) {
    const auto source = sourceIn(parser);
    if (!source) {
        return wrong(source.error());
    }
    result.source = *source;
    bool isNumber = false;
    result.hours = parser.value(QStringLiteral("hours")).toInt(&isNumber);
    if (!isNumber || result.hours < 0 || result.hours > kMostHours) {
        return wrong(QStringLiteral("--hours takes a number from 0 to %1.").arg(kMostHours));
    }
    if (result.hours == 0 && result.source != SourceKind::level3) {
        return wrong(QStringLiteral("--hours 0 needs --level3: other weather has no beginning."));
    }
    result.level3Folder = parser.value(QStringLiteral("level3"));
    return readLive(parser, result);
}

tl::expected<int, QString> detailIn(const QCommandLineParser& parser) {
    const QString detail = parser.value(QStringLiteral("detail"));
    if (detail != u"1" && detail != u"2" && detail != u"4") {
        return tl::unexpected(QStringLiteral("--detail takes 1, 2 or 4."));
    }
    return detail.toInt();
}

Reading readPublishedDetail(const QCommandLineParser& parser, ServeOptions& result) {
    const auto detail = detailIn(parser);
    if (!detail) {
        return wrong(detail.error());
    }
    if (parser.isSet(QStringLiteral("detail")) && result.publishFolder.isEmpty()) {
        return wrong(QStringLiteral("--detail goes with render or --publish."));
    }
    result.publishDetail = *detail;
    return {};
}

Reading readPublishing(const QCommandLineParser& parser, ServeOptions& result) {
    result.publishFolder = parser.value(QStringLiteral("publish"));
    result.once = parser.isSet(QStringLiteral("once"));
    const bool publishes = !result.publishFolder.isEmpty();
    if ((result.once || parser.isSet(QStringLiteral("sites"))) && !publishes) {
        return wrong(QStringLiteral("--once and --sites need --publish."));
    }
    result.listen = readListenAddress(parser.value(QStringLiteral("listen")));
    if (!result.listen) {
        return wrong(QStringLiteral("--listen takes ADDRESS:PORT."));
    }
    // A publisher has a web server of its own.
    if (publishes && !parser.isSet(QStringLiteral("listen"))) {
        result.listen.reset();
    }
    const auto sites = sitesIn(parser.value(QStringLiteral("sites")));
    result.publishSites = sites.value_or(QStringList());
    return sites ? Reading() : wrong(sites.error());
}

Reading readRest(const QCommandLineParser& parser, ServeOptions& result) {
    result.roadsFile = parser.value(QStringLiteral("roads"));
    result.cacheFolder = parser.value(QStringLiteral("cache"));
    result.endWithParent = parser.isSet(QStringLiteral("end-with-parent"));
    result.quiet = parser.isSet(QStringLiteral("quiet"));
    return {};
}

/// The command's words, "render" first.
tl::expected<ServerOptions, QString>
readRender(const QCommandLineParser& parser, const QStringList& words) {
    return detailIn(parser).map([&words](int detail) {
        return ServerOptions(RenderOptions{words[1], words[2], detail});
    });
}

tl::expected<ServerOptions, QString> readCommand(const CommandLine& line) {
    const QCommandLineParser& parser = line.parser();
    if (const auto values = line.requireValues(options()); !values) {
        return tl::unexpected(values.error());
    }
    const QStringList words = parser.positionalArguments();
    if (words.size() == 3 && words[0] == u"render") {
        return readRender(parser, words);
    }
    if (!words.isEmpty()) {
        return tl::unexpected(QStringLiteral("The only command is: render FILE OUT.gif"));
    }
    ServeOptions result;
    for (const auto read :
         {readSource, readReplayIn, readPublishing, readPublishedDetail, readRest}) {
        if (const Reading done = read(parser, result); !done) {
            return tl::unexpected(done.error());
        }
    }
    return result;
}

} // namespace

tl::expected<ServerOptions, CommandLineAnswer> readServerOptions(const QStringList& arguments) {
    CommandLine line(
        QStringLiteral("raincast-server"),
        QStringLiteral("Serves an image tree of weather radar: frames, warnings and map layers.\n"
                       "With \"render FILE OUT.gif\" it renders one Level III product instead.")
    );
    line.parser().addOptions(options());
    line.parser().addPositionalArgument(
        QStringLiteral("render FILE OUT.gif"), QStringLiteral("Renders one product."),
        QStringLiteral("[render FILE OUT.gif]")
    );
    if (auto parsed = line.parse(arguments); !parsed) {
        return tl::unexpected(parsed.error());
    }
    return readCommand(line).map_error([&line](const QString& sentence) {
        return line.usageError(sentence);
    });
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
    // Without brackets, nobody can see where an address of colons ends.
    if (!isPort || address.isEmpty() || (!bracketed && address.contains(u':'))) {
        return std::nullopt;
    }
    return ListenAddress{address, static_cast<std::uint16_t>(port)};
}

} // namespace raincast
