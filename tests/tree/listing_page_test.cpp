// SPDX-License-Identifier: MIT
#include "net/quoted_string_scanner.h"
#include "tree/listing_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;

TEST(ListingPageTest, NamesAreQuotedLinks) {
    const QByteArray page = listingPage("/a/", {"LWX_20180725_1924_N0R.gif"});
    EXPECT_TRUE(
        page.contains("<a href=\"LWX_20180725_1924_N0R.gif\">LWX_20180725_1924_N0R.gif</a>\n")
    );
    EXPECT_TRUE(page.contains("Index of /a/"));
}

TEST(ListingPageTest, TheViewerFindsTheNames) {
    std::set<QString> names;
    QuotedStringScanner(names).scan(listingPage("/a/", {"b.gif", "c.gif"}));
    EXPECT_THAT(names, ElementsAre("../", "b.gif", "c.gif"));
}

} // namespace
} // namespace raincast
