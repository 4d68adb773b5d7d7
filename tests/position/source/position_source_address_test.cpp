// SPDX-License-Identifier: MIT
#include "position/source/position_source_address.h"

#include <gtest/gtest.h>

#include <string>

namespace raincast {
namespace {

using Kind = PositionSourceAddress::Kind;

PositionSourceAddress serial(const char* path, int baud) {
    return {Kind::serial, QString::fromLatin1(path), baud, {}, 0, 0};
}
PositionSourceAddress network(Kind kind, const char* host, std::uint16_t port) {
    return {kind, {}, 0, QString::fromLatin1(host), port, 0};
}
PositionSourceAddress file(const char* path, double rate) {
    return {Kind::file, QString::fromLatin1(path), 0, {}, 0, rate};
}

TEST(PositionSourceAddressTest, ReadsEveryForm) {
    const struct {
        const char* text;
        PositionSourceAddress address;
    } rows[] = {
        {"serial:/dev/ttyUSB0", serial("/dev/ttyUSB0", 4800)},
        {"serial:/dev/ttyUSB0@115200", serial("/dev/ttyUSB0", 115200)},
        {"serial:/dev/serial/by-id/usb-a@b@9600", serial("/dev/serial/by-id/usb-a@b", 9600)},
        {"serial:COM 1", serial("COM 1", 4800)},
        {"tcp:localhost:10110", network(Kind::tcp, "localhost", 10110)},
        {"tcp:192.168.1.2:1", network(Kind::tcp, "192.168.1.2", 1)},
        {"tcp:[::1]:65535", network(Kind::tcp, "::1", 65535)},
        {"udp:10110", network(Kind::udp, "", 10110)},
        {"gpsd:", network(Kind::gpsd, "localhost", 2947)},
        {"gpsd:boat", network(Kind::gpsd, "boat", 2947)},
        {"gpsd:boat:2948", network(Kind::gpsd, "boat", 2948)},
        {"gpsd::2948", network(Kind::gpsd, "localhost", 2948)},
        {"gpsd:[fe80::1]", network(Kind::gpsd, "fe80::1", 2947)},
        {"gpsd:[fe80::1]:2948", network(Kind::gpsd, "fe80::1", 2948)},
        {"file:/tmp/a.nmea", file("/tmp/a.nmea", 1)},
        {"file:a.nmea?rate=10", file("a.nmea", 10)},
        {"file:a.nmea?rate=0", file("a.nmea", 0)},
        {"file:a.nmea?rate=0.5", file("a.nmea", 0.5)},
        {"file:a.nmea?rate=1e3", file("a.nmea", 1000)},
        {"file:a?rate=1?rate=2", file("a?rate=1", 2)},
        {"file:what?.nmea", file("what?.nmea", 1)},
    };
    for (const auto& row : rows) {
        const auto address = PositionSourceAddress::parse(QString::fromLatin1(row.text));
        ASSERT_TRUE(address) << row.text << ": " << qPrintable(address.error());
        EXPECT_EQ(*address, row.address) << row.text;
    }
}

TEST(PositionSourceAddressTest, SaysWhatIsWrongWithWhichPart) {
    const char* const unknown = "it does not start with serial:, tcp:, udp:, gpsd: or file:";
    const struct {
        const char* text;
        std::string error;
    } rows[] = {
        {"", unknown},
        {"gpsd", unknown},
        {"/dev/ttyUSB0", unknown},
        {"SERIAL:/dev/ttyUSB0", unknown},
        {" tcp:a:1", unknown},
        {"serial:", "the device is missing"},
        {"serial:@4800", "the device is missing"},
        {"serial:/dev/x@", "\"\" is not a speed of serial devices, as 4800 is"},
        {"serial:/dev/x@fast", "\"fast\" is not a speed of serial devices, as 4800 is"},
        {"serial:/dev/x@4801", "\"4801\" is not a speed of serial devices, as 4800 is"},
        {"serial:/dev/x@-4800", "\"-4800\" is not a speed of serial devices, as 4800 is"},
        {"tcp:", "the host is missing"},
        {"tcp:host", "the port is missing"},
        {"tcp::80", "the host is missing"},
        {"tcp:host:", "the port \"\" is not a number from 1 to 65535"},
        {"tcp:host:0", "the port \"0\" is not a number from 1 to 65535"},
        {"tcp:host:65536", "the port \"65536\" is not a number from 1 to 65535"},
        {"tcp:host:99999999999999", "the port \"99999999999999\" is not a number from 1 to 65535"},
        {"tcp:host:-1", "the port \"-1\" is not a number from 1 to 65535"},
        {"tcp:host:http", "the port \"http\" is not a number from 1 to 65535"},
        {"tcp:host:80x", "the port \"80x\" is not a number from 1 to 65535"},
        {"tcp:::1:80", "\"::1:80\" has more than one colon (an IPv6 address stands in brackets)"},
        {"tcp:[::1:80", "the bracket of the address \"[::1:80\" is not closed"},
        {"tcp:[::1]80", "what follows the bracket in \"[::1]80\" is not a port"},
        {"tcp:[]:80", "the host is missing"},
        {"udp:", "the port \"\" is not a number from 1 to 65535"},
        {"udp:host:1", "the port \"host:1\" is not a number from 1 to 65535"},
        {"gpsd:boat:x", "the port \"x\" is not a number from 1 to 65535"},
        {"file:", "the file is missing"},
        {"file:?rate=1", "the file is missing"},
        {"file:a?rate=", "the rate \"\" is not a number from 0 to 1000"},
        {"file:a?rate=-1", "the rate \"-1\" is not a number from 0 to 1000"},
        {"file:a?rate=1001", "the rate \"1001\" is not a number from 0 to 1000"},
        {"file:a?rate=nan", "the rate \"nan\" is not a number from 0 to 1000"},
        {"file:a?rate=inf", "the rate \"inf\" is not a number from 0 to 1000"},
        {"file:a?rate=0,5", "the rate \"0,5\" is not a number from 0 to 1000"},
    };
    for (const auto& row : rows) {
        const auto address = PositionSourceAddress::parse(QString::fromLatin1(row.text));
        ASSERT_FALSE(address) << row.text;
        EXPECT_EQ(
            address.error().toStdString(),
            '"' + std::string(row.text) + "\" is not a source of positions: " + row.error
        );
    }
}

TEST(PositionSourceAddressTest, AMessageCutsWhatIsTooLongToRead) {
    const QString host(100'000, u'x');
    const auto address = PositionSourceAddress::parse(QStringLiteral("udp:") + host);
    ASSERT_FALSE(address);
    EXPECT_LT(address.error().size(), 250);
    EXPECT_EQ(
        PositionSourceAddress::mistake(QStringLiteral("udp:") + host)->toStdString(),
        "the port \"" + std::string(60, 'x') + "...\" is not a number from 1 to 65535"
    );
}

TEST(PositionSourceAddressTest, AMistakeIsThatOfParsing) {
    EXPECT_EQ(PositionSourceAddress::mistake(u"gpsd:"), std::nullopt);
    EXPECT_EQ(PositionSourceAddress::mistake(u"tcp:boat"), QStringLiteral("the port is missing"));
}

TEST(PositionSourceAddressTest, TheSchemeTellsTheKind) {
    const struct {
        Kind kind;
        const char* scheme;
    } rows[] = {
        {Kind::serial, "serial:"}, {Kind::tcp, "tcp:"},   {Kind::udp, "udp:"},
        {Kind::gpsd, "gpsd:"},     {Kind::file, "file:"},
    };
    for (const auto& row : rows) {
        const QString scheme = PositionSourceAddress::scheme(row.kind);
        EXPECT_EQ(scheme.toStdString(), row.scheme);
        EXPECT_EQ(PositionSourceAddress::kindOf(scheme + "whatever"), row.kind);
    }
    EXPECT_FALSE(PositionSourceAddress::kindOf(u""));
    EXPECT_FALSE(PositionSourceAddress::kindOf(u"tcp"));
    EXPECT_FALSE(PositionSourceAddress::kindOf(u"http://boat"));
}

} // namespace
} // namespace raincast
