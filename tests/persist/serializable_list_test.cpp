// SPDX-License-Identifier: MIT
#include "persist/serializable_list.h"
#include "sample_bytes.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(SerializableListTest, IsCreatedByIdentifierZero) {
    auto object = CSerializable::Type::create(0);
    const auto* list = dynamic_cast<CSerializableList*>(object.get());
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->empty());
    EXPECT_EQ(list->GetTypeId(), 0U);
}

TEST(SerializableListTest, ReadsWhatItsFormatHoldsAndWritesItBack) {
    const Bytes bytes = join(number(0), number(31), number(1), kSecondPage);
    CSerialReader reader(bytes);
    std::unique_ptr<CSerializable> object;
    ASSERT_TRUE(reader.readObject(object));
    EXPECT_TRUE(reader.whole());
    auto& list = dynamic_cast<CSerializableList&>(*object);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(dynamic_cast<const SamplePage&>(*list.front()).name, QStringLiteral("B"));

    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(writer.writeObject(list));
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(file.data(), toByteArray(bytes));
    list.deleteElements();
    EXPECT_TRUE(list.empty());
}

TEST(SerializableListTest, DoesNotOwnItsElements) {
    SampleRejected element;
    {
        CSerializableList list;
        list.push_back(&element);
    }
    EXPECT_EQ(SampleRejected::alive, 1);
}

TEST(SerializableListTest, AListThatNobodyWantsGoesWithItsElements) {
    auto inner = std::make_unique<CSerializableList>();
    inner->push_back(new SampleRejected);
    auto outer = std::make_unique<CSerializableList>();
    outer->push_back(inner.release());
    destroyObject(std::move(outer));
    EXPECT_EQ(SampleRejected::alive, 0);
}

TEST(SerializableListTest, FailsOnlyWithoutItsCount) {
    CSerializableList list;
    CSerialReader none({});
    EXPECT_FALSE(list.Read(none));
    const Bytes negative = number(0x80000000);
    CSerialReader reader(negative);
    EXPECT_TRUE(list.Read(reader));
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(reader.whole());
}

} // namespace
} // namespace raincast
