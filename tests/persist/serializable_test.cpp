// SPDX-License-Identifier: MIT
#include "persist/serializable.h"
#include "sample_objects.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr std::uint32_t kTwice = 1050;

TEST(SerializableTest, AnIdentifierThatNoRecordCarriesCreatesNothing) {
    EXPECT_EQ(CSerializable::Type::find(1049), nullptr);
    EXPECT_EQ(CSerializable::Type::create(1049), nullptr);
    EXPECT_EQ(CSerializable::Type::create(kTypeNone), nullptr);
}

TEST(SerializableTest, TheNewerOfTwoRecordsAnswersAndADebugBuildSaysSo) {
    testing::internal::CaptureStderr();
    static const SerializableType<SampleItem> first{kTwice};
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(CSerializable::Type::find(kTwice), &first);

    testing::internal::CaptureStderr();
    static const SerializableType<SamplePage> second{kTwice};
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(CSerializable::Type::find(kTwice), &second);
    EXPECT_NE(dynamic_cast<SamplePage*>(CSerializable::Type::create(kTwice).get()), nullptr);
#ifdef NDEBUG
    EXPECT_EQ(said, "");
#else
    EXPECT_EQ(
        said, "Two classes are registered with type identifier 1050; the later one answers.\n"
    );
#endif
}

TEST(SerializableTest, AClassWithoutANumberAnswersMinusOne) {
    EXPECT_EQ(SampleApplication().GetTypeId(), 0xFFFFFFFFU);
}

} // namespace
} // namespace raincast
