// SPDX-License-Identifier: MIT
#include "persist/record_writer.h"
#include "sample_bytes.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(RecordWriterTest, WritesTheCountAndEachFieldWithItsLength) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    CRecordWriter record(writer);
    EXPECT_TRUE(record.value(true));
    EXPECT_TRUE(record.value(-2));
    EXPECT_TRUE(record.value(2.5F));
    EXPECT_TRUE(record.value(37.0));
    EXPECT_TRUE(record.bytes(Bytes{7, 8, 9}));
    EXPECT_TRUE(record.string(u"\u20AC"));
    EXPECT_TRUE(record.string(QString()));
    EXPECT_TRUE(record.end());
    EXPECT_TRUE(writer.finish());
    const Bytes expected = {7, 0, 0, 0,                                              // count
                            1, 0, 0, 0, 1,                                           // true
                            4, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF,                      // -2
                            4, 0, 0, 0, 0,    0,    0x20, 0x40,                      // 2.5f
                            8, 0, 0, 0, 0,    0,    0,    0,    0, 0x80, 0x42, 0x40, // 37.0
                            3, 0, 0, 0, 7,    8,    9,                               // three bytes
                            2, 0, 0, 0, 0xAC, 0x20,                                  // euro sign
                            0, 0, 0, 0};                                             // empty text
    EXPECT_EQ(file.data(), toByteArray(expected));
}

TEST(RecordWriterTest, AFailureStays) {
    QBuffer closed;
    CSerialWriter writer(closed);
    writer.writeBytes(Bytes(100'000, 1));
    ASSERT_TRUE(writer.failed());
    CRecordWriter record(writer);
    EXPECT_FALSE(record.value(1));
    EXPECT_FALSE(record.string(u"a"));
    EXPECT_FALSE(record.end());
}

} // namespace
} // namespace raincast
