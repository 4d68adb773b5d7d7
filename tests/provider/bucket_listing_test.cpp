// SPDX-License-Identifier: MIT
#include "provider/bucket_listing.h"
#include "support/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;

QByteArray listing(const QByteArray& inside) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<ListBucketResult xmlns=\"http://s3.amazonaws.com/doc/2006-03-01/\">"
           "<Name>unidata-nexrad-level3</Name><Prefix>TLX_N0B_2026_11_21_</Prefix>" +
           inside + "</ListBucketResult>";
}

TEST(BucketListingTest, ReadsObjectsWithTagsInBothForms) {
    for (const QByteArray quote : {"&quot;", "\""}) {
        const auto read = readBucketListing(listing(
            "<KeyCount>1</KeyCount><MaxKeys>1000</MaxKeys><IsTruncated>false</IsTruncated>"
            "<Key>not this one</Key><Contents><Key>TLX_N0B_2026_11_21_17_49_12</Key>"
            "<LastModified>2026-11-21T17:50:31.000Z</LastModified><ETag>" +
            quote + "a498d803" + quote +
            "</ETag><ChecksumAlgorithm><New/></ChecksumAlgorithm><Size>108244</Size></Contents>"
        ));
        ASSERT_TRUE(read) << qPrintable(read.error());
        ASSERT_EQ(read->entries.size(), 1U);
        EXPECT_EQ(read->entries[0].key, "TLX_N0B_2026_11_21_17_49_12");
        EXPECT_EQ(read->entries[0].etag, "a498d803");
        EXPECT_EQ(read->entries[0].bytes, 108244);
        EXPECT_EQ(read->entries[0].modified, fromCalendar({2026, 11, 21, 17, 50, 31}));
        EXPECT_EQ(read->nextToken, "");
    }
}

TEST(BucketListingTest, ReadsAnEmptyDay) {
    const auto read =
        readBucketListing(listing("<KeyCount>0</KeyCount><IsTruncated>false</IsTruncated>"));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->entries.empty());
}

TEST(BucketListingTest, TellsWhereTheNextPageBegins) {
    const QByteArray token = "<NextContinuationToken>1ueGcx/+pq&amp;=</NextContinuationToken>";
    EXPECT_EQ(
        readBucketListing(listing("<IsTruncated>true</IsTruncated>" + token))->nextToken,
        "1ueGcx/+pq&="
    );
    EXPECT_EQ(
        readBucketListing(listing(token + "<IsTruncated>false</IsTruncated>"))->nextToken, ""
    );
}

TEST(BucketListingTest, RefusesWhatIsNoListing) {
    EXPECT_FALSE(readBucketListing(""));
    EXPECT_FALSE(readBucketListing("<html><body>Log in</body></html>"));
    EXPECT_FALSE(readBucketListing(listing("<Contents>").left(200)));
    const auto error = readBucketListing(
        "<?xml version=\"1.0\"?><Error><Code>AccessDenied</Code><Message>No.</Message></Error>"
    );
    ASSERT_FALSE(error);
    EXPECT_THAT(error.error().toStdString(), HasSubstr("AccessDenied"));
}

TEST(BucketListingTest, OddValuesAreUnknownOnes) {
    const auto read = readBucketListing(
        listing("<Contents><Key>k</Key><Size>-5</Size><LastModified>soon</LastModified></Contents>")
    );
    ASSERT_TRUE(read);
    EXPECT_EQ(read->entries.at(0).bytes, -1);
    EXPECT_EQ(read->entries.at(0).modified, 0);
}

TEST(RealDataBucketListingTest, ReadsACapturedAnswer) {
    const QString file = qEnvironmentVariable("RAINCAST_TEST_DATA") +
                         QStringLiteral("/live/s3-list-level2-2026-07-26.xml");
    if (!QFile::exists(file)) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with live";
    }
    const auto read = readBucketListing(readFile(file));
    ASSERT_TRUE(read) << qPrintable(read.error());
    ASSERT_EQ(read->entries.size(), 3U);
    EXPECT_EQ(read->entries[0].etag, "a498d803bea8bdbf767a70d26f98d262");
    EXPECT_EQ(read->entries[0].bytes, 3887280);
    EXPECT_EQ(read->entries[2].modified, fromCalendar({2026, 7, 26, 0, 12, 5}));
}

} // namespace
} // namespace raincast
