// SPDX-License-Identifier: MIT
#include "provider/ring_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;

const FileTime kNow = fromCalendar({2026, 1, 2, 12, 0});

FileTime at(int month, int day, int hour, int minute, int year = 2026) {
    return fromCalendar({year, month, day, hour, minute});
}

TEST(RingPageTest, OrdersByTimeWhateverTheNumbers) {
    const QByteArray page =
        "<html><body><table><tr><td><a href=\"sn.0246\">sn.0246</a></td><td align=\"right\">"
        "01-Jan-2026 14:02  </td><td align=\"right\"> 44K</td></tr>\n"
        "<tr><td><a href=\"sn.0247\">sn.0247</a></td><td align=\"right\">01-Jan-2026 00:09  </td>"
        "<td align=\"right\"> 33K</td></tr>"
        "<tr><td><a href=\"sn.0000\">sn.0000</a></td><td align=\"right\">01-Jan-2026 14:07  </td>"
        "<tr><td><a href=\"sn.last\">sn.last</a></td><td align=\"right\">01-Jan-2026 14:07  </td>"
        "</tr></table></body></html>";
    EXPECT_THAT(
        readRingPage(page, kNow),
        ElementsAre(
            RingEntry{"sn.0000", at(1, 1, 14, 7)}, RingEntry{"sn.0246", at(1, 1, 14, 2)},
            RingEntry{"sn.0247", at(1, 1, 0, 9)}
        )
    );
}

TEST(RingPageTest, ReadsTheOtherForms) {
    EXPECT_THAT(
        readRingPage("<a href=\"sn.0001\">sn.0001</a>   2026-01-02 11:49   44K\n", kNow),
        ElementsAre(RingEntry{"sn.0001", at(1, 2, 11, 49)})
    );
    // Without a year it is of the last twelve months.
    EXPECT_THAT(
        readRingPage(
            "-rw-r--r-- 1 a b 44112 Jan  2 11:49 sn.0001\n-rw-r--r-- 1 a b 4 Dec 31 23:59 sn.0002\n"
            "-rw-r--r-- 1 a b 44 Mar 10  2025 sn.0003\n",
            kNow
        ),
        ElementsAre(
            RingEntry{"sn.0001", at(1, 2, 11, 49)}, RingEntry{"sn.0002", at(12, 31, 23, 59, 2025)},
            RingEntry{"sn.0003", at(3, 10, 0, 0, 2025)}
        )
    );
}

TEST(RingPageTest, FilesWithoutATimeComeLast) {
    EXPECT_THAT(
        readRingPage(
            "<a href=\"sn.0009\">x</a> yesterday <a href=\"sn.0001\">sn.0001</a> "
            "99-Xyz-2026 14:02 sn.last sn.12345 <a href=\"sn.0002\">sn.0002</a>"
            "</td><td>02-Jan-2026 01:00",
            kNow
        ),
        ElementsAre(
            RingEntry{"sn.0002", at(1, 2, 1, 0)}, RingEntry{"sn.0001", 0}, RingEntry{"sn.0009", 0}
        )
    );
}

TEST(RingPageTest, OtherPagesHaveNone) {
    EXPECT_TRUE(readRingPage("", kNow).empty());
    EXPECT_TRUE(readRingPage("<html>404 Not found</html>", kNow).empty());
}

} // namespace
} // namespace raincast
