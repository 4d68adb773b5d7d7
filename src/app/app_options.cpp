// SPDX-License-Identifier: MIT
#include "app/app_options.h"

#include "position/source/position_source_address.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "weather/servers_setting.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

#include <optional>

namespace raincast {

namespace {

constexpr int kLeastExtent = 100;
constexpr int kMostExtent = 16384;

QList<QCommandLineOption> ownOptions() {
    return {
        {QStringLiteral("page-file"),
         QStringLiteral("Use this file of pages, and leave the usual one alone."),
         QStringLiteral("FILE")},
        {QStringLiteral("geometry"), QStringLiteral("The size of the window, such as 480x640."),
         QStringLiteral("WxH")},
        {QStringLiteral("screenshot"),
         QStringLiteral("Save a picture of the window as PNG and end; needs no display."),
         QStringLiteral("FILE")},
        {QStringLiteral("nmea"),
         QStringLiteral("Where the position comes from: serial:PATH[@SPEED], tcp:HOST:PORT, "
                        "udp:PORT, gpsd:[HOST[:PORT]] or file:PATH[?rate=N]."),
         QStringLiteral("SOURCE")},
        {QStringLiteral("radar-server"), QStringLiteral("Where the radar images come from."),
         QStringLiteral("HOST[:PORT]")},
        {QStringLiteral("basemap-server"), QStringLiteral("Where counties and cities come from."),
         QStringLiteral("HOST[:PORT]")},
        {QStringLiteral("site"), QStringLiteral("Show this radar site first, such as MUX."),
         QStringLiteral("SITE")},
        {QStringLiteral("product"),
         QStringLiteral(
             "With --site, instead of the item's own: N0R, NCR, N0Z, N1P, NTP, N0V or N0S."
         ),
         QStringLiteral("PRODUCT")},
        {QStringLiteral("welcome"),
         QStringLiteral("Where no radar site was chosen yet, show this one, animated, instead of "
                        "asking."),
         QStringLiteral("SITE")},
    };
}

// Those that the window system's part of Qt understands.
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

QString helpText(const QCommandLineParser& parser, const QString& program) {
    // Only an application object knows the name that the help begins with.
    QByteArray name = program.toLocal8Bit();
    int count = 1;
    char* arguments[] = {name.data(), nullptr};
    const QCoreApplication application(count, arguments);
    return parser.helpText() +
           QStringLiteral("\nQt's own options, such as -platform and -style, are understood too.\n"
           );
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

// An option that was given, but with nothing in it.
QString emptyOption(const QCommandLineParser& parser) {
    for (const QCommandLineOption& option : ownOptions()) {
        const QString name = option.names().constFirst();
        if (parser.isSet(name) && parser.value(name).isEmpty()) {
            return name;
        }
    }
    return {};
}

QString absolute(const QString& path) {
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

AppAnswer wrong(const QString& text) {
    return {text + QStringLiteral("\nTry raincast --help.\n"), true};
}

std::optional<AppAnswer> readServers(const QCommandLineParser& parser, AppOptions& result) {
    result.radarServer = parser.value(QStringLiteral("radar-server"));
    result.basemapServer = parser.value(QStringLiteral("basemap-server"));
    for (const QString& host : {result.radarServer, result.basemapServer}) {
        if (!host.isEmpty() && !isServer(host)) {
            return wrong(QStringLiteral("\"%1\" is not HOST or HOST:PORT.").arg(host));
        }
    }
    return std::nullopt;
}

std::optional<AppAnswer> readSite(const QCommandLineParser& parser, AppOptions& result) {
    result.siteId = parser.value(QStringLiteral("site")).toUpper();
    result.welcomeSiteId = parser.value(QStringLiteral("welcome")).toUpper();
    for (const QString& site : {result.siteId, result.welcomeSiteId}) {
        if (!site.isEmpty() && findRadarSite(site) == nullptr) {
            return wrong(QStringLiteral("There is no site %1.").arg(site));
        }
    }
    const QString product = parser.value(QStringLiteral("product"));
    if (result.siteId.isEmpty()) {
        return product.isEmpty() ? std::nullopt
                                 : std::optional(wrong(QStringLiteral("--product needs --site.")));
    }
    if (!product.isEmpty()) {
        const auto index = findRadarProduct(product.toUpper());
        if (!index) {
            return wrong(QStringLiteral("There is no product %1.").arg(product));
        }
        result.product = *index;
    }
    return std::nullopt;
}

std::variant<AppOptions, AppAnswer> readValues(const QCommandLineParser& parser) {
    const QString empty = emptyOption(parser);
    if (!empty.isEmpty()) {
        return wrong(QStringLiteral("--%1 takes a value.").arg(empty));
    }
    if (!parser.positionalArguments().isEmpty()) {
        return wrong(QStringLiteral("There is no use for \"%1\".")
                         .arg(parser.positionalArguments().constFirst()));
    }
    AppOptions result;
    if (parser.isSet(QStringLiteral("geometry"))) {
        const auto size = sizeIn(parser.value(QStringLiteral("geometry")));
        if (!size) {
            return wrong(QStringLiteral("--geometry takes WIDTHxHEIGHT, each from %1 to %2.")
                             .arg(kLeastExtent)
                             .arg(kMostExtent));
        }
        result.geometry = *size;
    }
    result.pageFile = absolute(parser.value(QStringLiteral("page-file")));
    result.screenshot = absolute(parser.value(QStringLiteral("screenshot")));
    result.nmea = parser.value(QStringLiteral("nmea"));
    QString error;
    if (!result.nmea.isEmpty() && !PositionSourceAddress::parse(result.nmea, &error)) {
        return wrong(QStringLiteral("--nmea: %1").arg(error));
    }
    for (const auto read : {readServers, readSite}) {
        if (const auto complaint = read(parser, result)) {
            return *complaint;
        }
    }
    result.qtArguments = takenForQt(parser);
    return result;
}

} // namespace

std::variant<AppOptions, AppAnswer> readAppOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(
        QStringLiteral("Shows weather radar images: the newest of a site, animated, on a map.")
    );
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")
    );
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version.")
    );
    parser.addOptions(ownOptions() + qtOptions());
    parser.addOptions({help, version});

    if (!parser.parse(arguments)) {
        // Some versions of Qt end the sentence, some do not.
        const QString error = parser.errorText();
        return wrong(error.endsWith(u'.') ? error : error + u'.');
    }
    if (parser.isSet(help)) {
        return AppAnswer{helpText(parser, arguments.value(0)), false};
    }
    if (parser.isSet(version)) {
        return AppAnswer{QStringLiteral("raincast " RAINCAST_VERSION "\n"), false};
    }
    return readValues(parser);
}

} // namespace raincast
