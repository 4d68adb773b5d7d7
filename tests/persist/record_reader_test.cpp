// SPDX-License-Identifier: MIT
#include "persist/record_reader.h"
#include "sample_bytes.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(RecordReaderTest, AMemberTakesTheFirstBytesOfALongerField) {
    const Bytes bytes = join(
        number(2), number(8), Bytes{1, 0, 0, 0, 9, 9, 9, 9}, number(4), number(7), number(0xABCD)
    );
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    std::int32_t first = -1;
    std::int32_t second = -1;
    EXPECT_EQ(record.value(first), 4);
    EXPECT_EQ(first, 1);
    EXPECT_TRUE(reader.skippedData());
    EXPECT_EQ(record.value(second), 4);
    EXPECT_EQ(second, 7);
    EXPECT_TRUE(record.end());
    std::uint32_t behind = 0;
    EXPECT_TRUE(reader.readValue(behind));
    EXPECT_EQ(behind, 0xABCDU);
}

TEST(RecordReaderTest, AShorterFieldChangesTheFirstBytesOnly) {
    const Bytes bytes =
        join(number(3), number(2), Bytes{0x11, 0x22}, number(0), number(1), Bytes{5});
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    std::uint32_t number = 0xAABBCCDD;
    std::uint32_t untouched = 3;
    std::array<std::uint8_t, 4> block{1, 2, 3, 4};
    EXPECT_EQ(record.value(number), 2);
    EXPECT_EQ(number, 0xAABB2211U);
    EXPECT_EQ(record.value(untouched), 0);
    EXPECT_EQ(untouched, 3U);
    EXPECT_EQ(record.bytes(block), 1);
    EXPECT_EQ(block, (std::array<std::uint8_t, 4>{5, 2, 3, 4}));
    EXPECT_TRUE(record.end());
    EXPECT_TRUE(reader.whole());
}

TEST(RecordReaderTest, MissingFieldsKeepTheirDefaults) {
    const Bytes bytes = join(number(1), number(1), Bytes{0});
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    bool enabled = true;
    std::int32_t count = 6;
    QString name = QStringLiteral("default");
    EXPECT_TRUE(record.more());
    EXPECT_EQ(record.value(enabled), 1);
    EXPECT_FALSE(enabled);
    EXPECT_FALSE(record.more());
    EXPECT_EQ(record.value(count), 0);
    EXPECT_EQ(count, 6);
    EXPECT_TRUE(record.string(name));
    EXPECT_EQ(name, QStringLiteral("default"));
    EXPECT_TRUE(record.end());
}

TEST(RecordReaderTest, FieldsOfANewerProgramArePassedOver) {
    const Bytes bytes = join(
        number(3), number(1), Bytes{1}, number(2), Bytes{'A', 0}, number(3), Bytes{1, 2, 3},
        number(0xABCD)
    );
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    bool flag = false;
    QString name;
    record.value(flag);
    record.string(name);
    EXPECT_TRUE(record.end());
    EXPECT_TRUE(reader.skippedData());
    std::uint32_t behind = 0;
    EXPECT_TRUE(reader.readValue(behind));
    EXPECT_EQ(behind, 0xABCDU);
}

TEST(RecordReaderTest, AStringOfLengthZeroIsEmpty) {
    const Bytes bytes = join(number(1), number(0));
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    QString name = QStringLiteral("default");
    EXPECT_TRUE(record.string(name));
    EXPECT_TRUE(name.isEmpty());
    EXPECT_TRUE(record.end());
}

/// Reads two records of which a file may hold fewer.
class TwoRecords : public CSerializable {
public:
    bool Read(CSerialReader& reader) override {
        CRecordReader old(reader);
        old.value(first);
        ended = old.end();
        CRecordReader later(reader);
        later.value(second);
        ended = later.end() && ended;
        return true;
    }
    bool Write(CSerialWriter&) const override { return true; }
    std::int32_t first = 1;
    std::int32_t second = 2;
    bool ended = false;
};
constexpr std::uint32_t kTwoRecords = 1041;
const SerializableType<TwoRecords> kTwoRecordsType{kTwoRecords};

TEST(RecordReaderTest, ARecordThatTheObjectEndsBeforeHasNoFields) {
    for (const Bytes& body : {Bytes{}, join(number(1), number(4), number(7))}) {
        const Bytes file = join(
            number(kTwoRecords), number(static_cast<std::uint32_t>(body.size())), body,
            number(0xFFFF)
        );
        CSerialReader reader(file);
        std::unique_ptr<CSerializable> object;
        ASSERT_TRUE(reader.readObject(object));
        const auto& read = dynamic_cast<const TwoRecords&>(*object);
        EXPECT_TRUE(read.ended);
        EXPECT_EQ(read.first, body.empty() ? 1 : 7);
        EXPECT_EQ(read.second, 2);
    }
}

TEST(RecordReaderTest, AtTopLevelAMissingRecordIsCut) {
    CSerialReader reader({});
    CRecordReader record(reader);
    EXPECT_FALSE(record.end());
    EXPECT_FALSE(reader.whole());
}

struct Cut {
    const char* what;
    Bytes bytes;
};

TEST(RecordReaderTest, AFieldThatIsCutLeavesItsMemberAndFailsWhatFollows) {
    const Cut cuts[] = {
        {"no length", number(5)},
        {"half a length", join(number(5), Bytes{4, 0})},
        {"no data", join(number(5), number(4))},
        {"half the data", join(number(5), number(4), Bytes{1, 1})},
        {"length beyond the file", join(number(5), number(0x7FFFFFFF), Bytes{1, 1})},
        {"fields beyond the file", join(number(0xFFFFFFFF), number(4), Bytes{1, 1})},
    };
    for (const Cut& cut : cuts) {
        CSerialReader reader(cut.bytes);
        CRecordReader record(reader);
        std::int32_t member = -3;
        QString text = QStringLiteral("default");
        EXPECT_EQ(record.value(member), std::nullopt) << cut.what;
        EXPECT_EQ(member, -3) << cut.what;
        EXPECT_FALSE(record.more()) << cut.what;
        EXPECT_EQ(record.value(member), std::nullopt) << cut.what;
        EXPECT_FALSE(record.string(text)) << cut.what;
        EXPECT_EQ(text, QStringLiteral("default")) << cut.what;
        EXPECT_FALSE(record.end()) << cut.what;
        EXPECT_FALSE(reader.whole()) << cut.what;
    }
}

TEST(RecordReaderTest, ARecordWhoseLastStringIsCutHasNoEnd) {
    const Bytes bytes = join(number(1), number(6), Bytes{'a', 0, 'b', 0});
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    QString text;
    EXPECT_FALSE(record.string(text));
    EXPECT_EQ(text, QStringLiteral("ab"));
    EXPECT_FALSE(record.end());
}

TEST(RecordReaderTest, BytesThatAreThereAreGoodThoughTheFieldIsCut) {
    const Bytes bytes = join(number(2), number(0xFFFFFFFF), number(7), number(8));
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    std::int32_t member = 0;
    EXPECT_EQ(record.value(member), 4);
    EXPECT_EQ(member, 7);
    EXPECT_FALSE(record.more());
    EXPECT_EQ(record.value(member), std::nullopt);
    EXPECT_FALSE(record.end());
}

TEST(RecordReaderTest, AnEndOfManyEmptyFieldsEndsWithTheBytes) {
    const Bytes bytes = join(number(0xFFFFFFFF), Bytes(400, 0));
    CSerialReader reader(bytes);
    CRecordReader record(reader);
    EXPECT_FALSE(record.end());
    EXPECT_TRUE(reader.atEnd());
}

} // namespace
} // namespace raincast
