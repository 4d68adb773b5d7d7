// SPDX-License-Identifier: MIT
#include "app/app_options.h"

#include "core/text.h"
#include "position/source/position_source_address.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "weather/servers_setting.h"

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include <optional>

namespace raincast {

namespace {

constexpr int kLeastExtent = 100;
constexpr int kMostExtent = 16384;

QList<QCommandLineOption> ownOptions() {
    return {
        {QStringLiteral("page-file"),
         Text::tr("Use this file of pages, and leave the usual one alone."),
         QStringLiteral("FILE")},
        {QStringLiteral("geometry"), Text::tr("The size of the window, such as 480x640."),
         QStringLiteral("WxH")},
        {QStringLiteral("screenshot"),
         Text::tr("Save a picture of the window as PNG and end; needs no display."),
         QStringLiteral("FILE")},
        {QStringLiteral("loop"),
         Text::tr("Save the first radar item's loop as an animated GIF and end; needs no "
                  "display."),
         QStringLiteral("FILE")},
        {QStringLiteral("nmea"),
         Text::tr("Where the position comes from: serial:PATH[@SPEED], tcp:HOST:PORT, "
                  "udp:PORT, gpsd:[HOST[:PORT]] or file:PATH[?rate=N]."),
         QStringLiteral("SOURCE")},
        {QStringLiteral("radar-server"), Text::tr("Where the radar images come from."),
         QStringLiteral("HOST[:PORT]")},
        {QStringLiteral("basemap-server"), Text::tr("Where counties and cities come from."),
         QStringLiteral("HOST[:PORT]")},
        {QStringLiteral("live-arguments"),
         Text::tr("Options for the server that the viewer starts for live radar."),
         QStringLiteral("TEXT")},
        {QStringLiteral("site"), Text::tr("Show this radar site first, such as MUX."),
         QStringLiteral("SITE")},
        {QStringLiteral("product"),
         Text::tr("With --site, instead of the item's own: N0R, NCR, N0Z, N1P, NTP, N0V or N0S."),
         QStringLiteral("PRODUCT")},
        {QStringLiteral("welcome"),
         Text::tr("If no radar site was chosen yet, show this one, animated, instead of "
                  "asking."),
         QStringLiteral("SITE")},
    };
}

// Options of the part of Qt that talks to the window system.
QList<QCommandLineOption> qtOptions() {
    QList<QCommandLineOption> options;
    for (const char* name :
         {"platform", "platformpluginpath", "platformtheme", "plugin", "qwindowgeometry",
          "qwindowicon", "qwindowtitle", "session", "display", "style", "stylesheet"}) {
        options.append({QString::fromLatin1(name), QString(), QStringLiteral("VALUE")});
    }
    for (const char* name : {"reverse", "nograb", "dograb", "sync", "widgetcount"}) {
        options.append(QCommandLineOption(QString::fromLatin1(name)));
    }
    for (QCommandLineOption& option : options) {
        option.setFlags(QCommandLineOption::HiddenFromHelp);
    }
    return options;
}

QStringList takenForQt(const QCommandLineParser& parser) {
    QStringList arguments;
    for (const QCommandLineOption& option : qtOptions()) {
        const QString name = option.names().constFirst();
        if (!parser.isSet(name)) {
            continue;
        }
        if (option.valueName().isEmpty()) {
            arguments << u'-' + name;
        }
        for (const QString& value : parser.values(name)) {
            arguments << u'-' + name << value;
        }
    }
    return arguments;
}

std::optional<QSize> sizeIn(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,5})[xX]([0-9]{1,5})$"));
    const auto match = form.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const bool good = match.hasMatch() && size.width() >= kLeastExtent &&
                      size.height() >= kLeastExtent && size.width() <= kMostExtent &&
                      size.height() <= kMostExtent;
    return good ? std::optional(size) : std::nullopt;
}

QString absolute(const QString& path) {
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

using Reading = tl::expected<void, QString>;

Reading wrong(const QString& sentence) {
    return tl::unexpected(sentence);
}

/// The page file that a file manager hands over. One that is missing is no file that a user has
/// clicked, rather a word that has lost its option.
Reading readFile(const QCommandLineParser& parser, AppOptions& result) {
    const QStringList files = parser.positionalArguments();
    result.pageFile = absolute(parser.value(QStringLiteral("page-file")));
    if (files.isEmpty()) {
        return {};
    }
    if (files.size() > 1 || !result.pageFile.isEmpty()) {
        return wrong(Text::tr("Unexpected argument \"%1\".").arg(files.constLast()));
    }
    if (!QFileInfo(files.constFirst()).isFile()) {
        return wrong(Text::tr("There is no file %1.").arg(files.constFirst()));
    }
    result.pageFile = absolute(files.constFirst());
    return {};
}

Reading readPlainValues(const QCommandLineParser& parser, AppOptions& result) {
    if (parser.isSet(QStringLiteral("geometry"))) {
        const auto size = sizeIn(parser.value(QStringLiteral("geometry")));
        if (!size) {
            return wrong(Text::tr("--geometry takes WIDTHxHEIGHT, each from %1 to %2.")
                             .arg(kLeastExtent)
                             .arg(kMostExtent));
        }
        result.geometry = *size;
    }
    result.screenshot = absolute(parser.value(QStringLiteral("screenshot")));
    result.loop = absolute(parser.value(QStringLiteral("loop")));
    return {};
}

Reading readPositionSource(const QCommandLineParser& parser, AppOptions& result) {
    result.nmea = parser.value(QStringLiteral("nmea"));
    if (!result.nmea.isEmpty()) {
        if (const auto source = PositionSourceAddress::parse(result.nmea); !source) {
            return wrong(QStringLiteral("--nmea: ") + source.error());
        }
    }
    return {};
}

Reading readServers(const QCommandLineParser& parser, AppOptions& result) {
    result.radarServer = parser.value(QStringLiteral("radar-server"));
    result.basemapServer = parser.value(QStringLiteral("basemap-server"));
    for (const QString& host : {result.radarServer, result.basemapServer}) {
        if (!host.isEmpty() && !isServer(host)) {
            return wrong(Text::tr("\"%1\" is not HOST or HOST:PORT.").arg(host));
        }
    }
    result.liveArguments = QProcess::splitCommand(parser.value(QStringLiteral("live-arguments")));
    return {};
}

Reading readSites(const QCommandLineParser& parser, AppOptions& result) {
    result.siteId = parser.value(QStringLiteral("site")).toUpper();
    result.welcomeSiteId = parser.value(QStringLiteral("welcome")).toUpper();
    for (const QString& site : {result.siteId, result.welcomeSiteId}) {
        if (!site.isEmpty() && findRadarSite(site) == nullptr) {
            return wrong(Text::tr("There is no site %1.").arg(site));
        }
    }
    return {};
}

Reading readProduct(const QCommandLineParser& parser, AppOptions& result) {
    const QString product = parser.value(QStringLiteral("product"));
    if (product.isEmpty()) {
        return {};
    }
    if (result.siteId.isEmpty()) {
        return wrong(Text::tr("--product needs --site."));
    }
    result.product = findRadarProduct(product.toUpper());
    return result.product ? Reading() : wrong(Text::tr("There is no product %1.").arg(product));
}

tl::expected<AppOptions, QString> readValues(const CommandLine& line) {
    const QCommandLineParser& parser = line.parser();
    if (const auto values = line.requireValues(ownOptions()); !values) {
        return tl::unexpected(values.error());
    }
    AppOptions result;
    for (const auto read :
         {readFile, readPlainValues, readPositionSource, readServers, readSites, readProduct}) {
        if (const Reading done = read(parser, result); !done) {
            return tl::unexpected(done.error());
        }
    }
    result.qtArguments = takenForQt(parser);
    return result;
}

} // namespace

tl::expected<AppOptions, CommandLineAnswer> readAppOptions(const QStringList& arguments) {
    CommandLine line(
        QStringLiteral("raincast"),
        Text::tr("Shows weather radar images: the newest of a site, animated, on a map.")
    );
    line.parser().setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    line.parser().addOptions(ownOptions() + qtOptions());
    line.parser().addPositionalArgument(
        QStringLiteral("FILE"), Text::tr("The same as --page-file FILE, if it is there."),
        QStringLiteral("[FILE]")
    );
    line.setHelpFooter(
        Text::tr("\nQt's own options, such as -platform and -style, are understood too.\n")
    );
    if (auto parsed = line.parse(arguments); !parsed) {
        return tl::unexpected(parsed.error());
    }
    return readValues(line).map_error([&line](const QString& sentence) {
        return line.usageError(sentence);
    });
}

} // namespace raincast
