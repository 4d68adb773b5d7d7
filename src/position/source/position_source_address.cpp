// SPDX-License-Identifier: MIT
#include "position/source/position_source_address.h"

#include "core/text.h"
#include "position/source/serial_source.h"

#include <QLocale>

#include <algorithm>
#include <iterator>
#include <limits>

namespace raincast {

namespace {

using Address = PositionSourceAddress;
using Mistake = std::optional<QString>;

// Keeps messages short enough to read.
QString shortened(QStringView text) {
    constexpr qsizetype kMost = 60;
    return text.size() <= kMost ? text.toString()
                                : text.left(kMost).toString() + QStringLiteral("...");
}

// Each of these reads the text behind the scheme and returns the mistake in it.

Mistake readPort(QStringView text, Address& address) {
    bool isNumber = false;
    const uint port = QLocale::c().toUInt(text, &isNumber);
    const bool inRange = 1 <= port && port <= std::numeric_limits<std::uint16_t>::max();
    if (!isNumber || !inRange) {
        return Text::tr("the port \"%1\" is not a number from 1 to 65535").arg(shortened(text));
    }
    address.port = static_cast<std::uint16_t>(port);
    return std::nullopt;
}

// "host", "host:port", "[::1]", "[::1]:port". Without a port the address keeps its own.
Mistake readHostAndPort(QStringView text, Address& address) {
    const qsizetype bracket = text.startsWith(u'[') ? text.indexOf(u']') : -1;
    if (text.startsWith(u'[') && bracket < 0) {
        return Text::tr("the bracket of the address \"%1\" is not closed").arg(shortened(text));
    }
    const qsizetype colon = text.indexOf(u':', bracket + 1);
    const QStringView host = bracket > 0 ? text.sliced(1, bracket - 1) : text.left(colon);
    if (bracket > 0 && bracket + 1 != (colon < 0 ? text.size() : colon)) {
        return Text::tr("what follows the bracket in \"%1\" is not a port").arg(shortened(text));
    }
    if (colon >= 0 && text.indexOf(u':', colon + 1) >= 0) {
        return Text::tr("\"%1\" has more than one colon (an IPv6 address stands in brackets)")
            .arg(shortened(text));
    }
    if (!host.isEmpty()) {
        address.host = host.toString();
    }
    return colon < 0 ? std::nullopt : readPort(text.sliced(colon + 1), address);
}

Mistake readSerial(QStringView text, Address& address) {
    address.baud = Address::kDefaultBaud;
    const qsizetype at = text.lastIndexOf(u'@');
    const QStringView path = at < 0 ? text : text.left(at);
    if (path.isEmpty()) {
        return Text::tr("the device is missing");
    }
    address.path = path.toString();
    if (at < 0) {
        return std::nullopt;
    }
    const QStringView speed = text.sliced(at + 1);
    bool isNumber = false;
    address.baud = QLocale::c().toInt(speed, &isNumber);
    if (!isNumber || !SerialSource::isSpeed(address.baud)) {
        return Text::tr("\"%1\" is not a speed of serial devices, as 4800 is")
            .arg(shortened(speed));
    }
    return std::nullopt;
}

Mistake readTcp(QStringView text, Address& address) {
    if (const Mistake mistake = readHostAndPort(text, address)) {
        return mistake;
    }
    if (address.host.isEmpty()) {
        return Text::tr("the host is missing");
    }
    return address.port == 0 ? Mistake(Text::tr("the port is missing")) : std::nullopt;
}

Mistake readGpsd(QStringView text, Address& address) {
    address.host = QStringLiteral("localhost");
    address.port = Address::kGpsdPort;
    return readHostAndPort(text, address);
}

Mistake readFile(QStringView text, Address& address) {
    constexpr QStringView kRate = u"?rate=";
    address.rate = 1;
    const qsizetype at = text.lastIndexOf(kRate);
    const QStringView path = at < 0 ? text : text.left(at);
    if (path.isEmpty()) {
        return Text::tr("the file is missing");
    }
    address.path = path.toString();
    if (at < 0) {
        return std::nullopt;
    }
    const QStringView rate = text.sliced(at + kRate.size());
    bool isNumber = false;
    address.rate = QLocale::c().toDouble(rate, &isNumber);
    // Written so that not-a-number fails as well.
    if (!isNumber || !(address.rate >= 0 && address.rate <= Address::kMaxRate)) {
        return Text::tr("the rate \"%1\" is not a number from 0 to 1000").arg(shortened(rate));
    }
    return std::nullopt;
}

struct Scheme {
    QLatin1String name;
    Address::Kind kind;
    Mistake (*read)(QStringView text, Address& address);
};

const Scheme kSchemes[] = {
    {QLatin1String("serial:"), Address::Kind::serial, readSerial},
    {QLatin1String("tcp:"), Address::Kind::tcp, readTcp},
    {QLatin1String("udp:"), Address::Kind::udp, readPort},
    {QLatin1String("gpsd:"), Address::Kind::gpsd, readGpsd},
    {QLatin1String("file:"), Address::Kind::file, readFile},
};

const Scheme* findScheme(QStringView text) {
    const Scheme* const found =
        std::find_if(std::begin(kSchemes), std::end(kSchemes), [text](const Scheme& scheme) {
            return text.startsWith(scheme.name);
        });
    return found != std::end(kSchemes) ? found : nullptr;
}

Mistake read(QStringView text, Address& address) {
    const Scheme* const scheme = findScheme(text);
    if (scheme == nullptr) {
        return Text::tr("it does not start with serial:, tcp:, udp:, gpsd: or file:");
    }
    address.kind = scheme->kind;
    return scheme->read(text.sliced(scheme->name.size()), address);
}

} // namespace

QLatin1String PositionSourceAddress::scheme(Kind kind) {
    for (const Scheme& scheme : kSchemes) {
        if (scheme.kind == kind) {
            return scheme.name;
        }
    }
    return {};
}

std::optional<PositionSourceAddress::Kind> PositionSourceAddress::kindOf(QStringView text) {
    const Scheme* const scheme = findScheme(text);
    return scheme != nullptr ? std::optional(scheme->kind) : std::nullopt;
}

std::optional<QString> PositionSourceAddress::mistake(QStringView text) {
    Address address;
    return read(text, address);
}

tl::expected<PositionSourceAddress, QString> PositionSourceAddress::parse(const QString& text) {
    Address address;
    if (const Mistake wrong = read(text, address)) {
        return tl::unexpected(
            Text::tr("\"%1\" is not a source of positions: %2").arg(shortened(text), *wrong)
        );
    }
    return address;
}

} // namespace raincast
