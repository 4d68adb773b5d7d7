// SPDX-License-Identifier: MIT
#include "net/quoted_string_scanner.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using Strings = std::set<QString>;

Strings scanned(QByteArrayView bytes) {
    Strings strings;
    QuotedStringScanner(strings).scan(bytes);
    return strings;
}

TEST(QuotedStringScannerTest, CollectsWhatStandsBetweenQuotes) {
    const struct {
        const char* bytes;
        Strings strings;
    } rows[] = {
        {"", {}},
        {"no quotes", {}},
        {"\"", {}},
        {"\"unclosed", {}},
        {"\"\"", {""}},
        {"\"x\"", {"x"}},
        {"a\"x\"b\"y\"c\"x\"d", {"x", "y"}},
        {"\"x\"y\"z\"", {"x", "z"}},
        {"\"x\" \"lost", {"x"}},
        {"'x' \"it's\"", {"it's"}},
        {"\"a\r\nb\tc\"", {"a\r\nb\tc"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(scanned(row.bytes), row.strings) << row.bytes;
    }
}

TEST(QuotedStringScannerTest, BytesAreSignedCharacters) {
    const QString expected = QString(QChar(0xFF80)) + QChar(0xFFFF) + QChar(0x7F) + QChar(0xFFC3);
    EXPECT_EQ(scanned("\"\x80\xFF\x7F\xC3\""), Strings{expected});
    EXPECT_EQ(scanned(QByteArrayView("\"a\0b\"", 5)), Strings{QString("a%1b").arg(QChar(0))});
}

TEST(QuotedStringScannerTest, KeepsWhatIsThere) {
    Strings strings{"old", "x"};
    QuotedStringScanner(strings).scan("\"x\"\"y\"");
    EXPECT_EQ(strings, (Strings{"old", "x", "y"}));
}

TEST(QuotedStringScannerTest, PiecesMakeNoDifference) {
    const QByteArray bytes = "<a href=\"one.gif\">\"\" \"t\xE9wo\"x\"three\" \"lost";
    const Strings whole = scanned(bytes);
    EXPECT_EQ(whole.size(), 4U);
    for (qsizetype size = 1; size < bytes.size(); ++size) {
        Strings strings;
        QuotedStringScanner scanner(strings);
        for (qsizetype at = 0; at < bytes.size(); at += size) {
            scanner.scan(bytes.mid(at, size));
        }
        EXPECT_EQ(strings, whole) << "pieces of " << size;
    }
}

// The forms in which servers list a folder. Apart from the names each has a few quoted strings of
// its own, which differ from any frame's name.

const Strings kFrames = {"MUX_20190519_0446_N0R.gif", "MUX_20190519_0452_N0R.gif"};

void expectFramesAnd(QByteArrayView body, Strings others) {
    others.insert(kFrames.begin(), kFrames.end());
    EXPECT_EQ(scanned(body), others);
}

TEST(QuotedStringScannerTest, ApachesPlainListing) {
    expectFramesAnd(
        R"(<!DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 3.2 Final//EN">
<html>
 <head>
  <title>Index of /ridge/RadarImg/N0R/MUX</title>
 </head>
 <body>
<h1>Index of /ridge/RadarImg/N0R/MUX</h1>
<ul><li><a href="/ridge/RadarImg/N0R/"> Parent Directory</a></li>
<li><a href="MUX_20190519_0446_N0R.gif"> MUX_20190519_0446_N0R.gif</a></li>
<li><a href="MUX_20190519_0452_N0R.gif"> MUX_20190519_0452_N0R.gif</a></li>
</ul>
</body></html>
)",
        {"-//W3C//DTD HTML 3.2 Final//EN", "/ridge/RadarImg/N0R/"}
    );
}

TEST(QuotedStringScannerTest, ApachesFancyListing) {
    expectFramesAnd(
        R"(<!DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 4.01//EN" "http://www.w3.org/TR/html4/strict.dtd">
<html>
 <head>
  <title>Index of /ridge/RadarImg/N0R/MUX</title>
 </head>
 <body>
<h1>Index of /ridge/RadarImg/N0R/MUX</h1>
<pre><img src="/icons/blank.gif" alt="Icon "> <a href="?C=N;O=D">Name</a>                    <a href="?C=M;O=A">Last modified</a>      <a href="?C=S;O=A">Size</a>  <a href="?C=D;O=A">Description</a><hr><img src="/icons/back.gif" alt="[PARENTDIR]"> <a href="/ridge/RadarImg/N0R/">Parent Directory</a>                             -   
<img src="/icons/image2.gif" alt="[IMG]"> <a href="MUX_20190519_0446_N0R.gif">MUX_20190519_0446_N0R..&gt;</a> 2019-05-19 04:50   22K  
<img src="/icons/image2.gif" alt="[IMG]"> <a href="MUX_20190519_0452_N0R.gif">MUX_20190519_0452_N0R..&gt;</a> 2019-05-19 04:56   22K  
<hr></pre>
<address>Apache/2.4.57 (Debian) Server at radar.example Port 80</address>
</body></html>
)",
        {"-//W3C//DTD HTML 4.01//EN", "http://www.w3.org/TR/html4/strict.dtd", "/icons/blank.gif",
         "Icon ", "?C=N;O=D", "?C=M;O=A", "?C=S;O=A", "?C=D;O=A", "/icons/back.gif", "[PARENTDIR]",
         "/ridge/RadarImg/N0R/", "/icons/image2.gif", "[IMG]"}
    );
}

TEST(QuotedStringScannerTest, ApachesTableListing) {
    expectFramesAnd(
        R"(<table>
   <tr><th valign="top"><img src="/icons/blank.gif" alt="[ICO]"></th><th><a href="?C=N;O=D">Name</a></th></tr>
   <tr><th colspan="5"><hr></th></tr>
<tr><td valign="top"><img src="/icons/image2.gif" alt="[IMG]"></td><td><a href="MUX_20190519_0446_N0R.gif">MUX_20190519_0446_N0R.gif</a></td><td align="right">2019-05-19 04:50  </td></tr>
<tr><td valign="top"><img src="/icons/image2.gif" alt="[IMG]"></td><td><a href="MUX_20190519_0452_N0R.gif">MUX_20190519_0452_N0R.gif</a></td><td align="right">2019-05-19 04:56  </td></tr>
</table>
)",
        {"top", "/icons/blank.gif", "[ICO]", "?C=N;O=D", "5", "/icons/image2.gif", "[IMG]", "right"}
    );
}

TEST(QuotedStringScannerTest, NginxListing) {
    expectFramesAnd(
        "<html>\r\n<head><title>Index of /ridge/RadarImg/N0R/MUX/</title></head>\r\n<body>\r\n"
        "<h1>Index of /ridge/RadarImg/N0R/MUX/</h1><hr><pre><a href=\"../\">../</a>\r\n"
        "<a href=\"MUX_20190519_0446_N0R.gif\">MUX_20190519_0446_N0R.gif</a>"
        "                          19-May-2019 04:50               22649\r\n"
        "<a href=\"MUX_20190519_0452_N0R.gif\">MUX_20190519_0452_N0R.gif</a>"
        "                          19-May-2019 04:56               22263\r\n"
        "</pre><hr></body>\r\n</html>\r\n",
        {"../"}
    );
}

TEST(QuotedStringScannerTest, PythonsListing) {
    expectFramesAnd(
        R"(<!DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 4.01//EN" "http://www.w3.org/TR/html4/strict.dtd">
<html>
<head>
<meta http-equiv="Content-Type" content="text/html; charset=utf-8">
<title>Directory listing for /ridge/RadarImg/N0R/MUX/</title>
</head>
<body>
<h1>Directory listing for /ridge/RadarImg/N0R/MUX/</h1>
<hr>
<ul>
<li><a href="MUX_20190519_0446_N0R.gif">MUX_20190519_0446_N0R.gif</a></li>
<li><a href="MUX_20190519_0452_N0R.gif">MUX_20190519_0452_N0R.gif</a></li>
</ul>
<hr>
</body>
</html>
)",
        {"-//W3C//DTD HTML 4.01//EN", "http://www.w3.org/TR/html4/strict.dtd", "Content-Type",
         "text/html; charset=utf-8"}
    );
}

} // namespace
} // namespace raincast
