// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_gga.h"
#include "position/nmea/nmea_rmc.h"
#include "position/nmea/nmea_sentence_type.h"
#include "position/nmea/nmea_vtg.h"

#include <gtest/gtest.h>

#include <memory>

namespace raincast {
namespace {

class TestSentence : public CNMEASentence {
public:
    explicit TestSentence(const CNMEASentenceType& type) : CNMEASentence(type) {}
    bool Parse(std::string_view text) override {
        length = text.size();
        return true;
    }
    std::size_t length = 0;
};

class TestType : public NmeaSentenceTypeOf<TestSentence> {
public:
    TestType() : NmeaSentenceTypeOf("TST") {}
};

TEST(NmeaSentenceTypeTest, TheThreeKindsAreRegistered) {
    for (const char* name : {"RMC", "GGA", "VTG"}) {
        const CNMEASentenceType* type = CNMEASentenceType::find(name);
        ASSERT_NE(type, nullptr) << name;
        EXPECT_EQ(type->name(), name);
        EXPECT_EQ(&type->Create()->type(), type);
    }
    EXPECT_NE(
        dynamic_cast<CNMEA_GPS::RMC*>(CNMEASentenceType::find("RMC")->Create().get()), nullptr
    );
    EXPECT_NE(
        dynamic_cast<CNMEA_GPS::GGA*>(CNMEASentenceType::find("GGA")->Create().get()), nullptr
    );
    EXPECT_NE(
        dynamic_cast<CNMEA_GPS::VTG*>(CNMEASentenceType::find("VTG")->Create().get()), nullptr
    );
}

TEST(NmeaSentenceTypeTest, OtherNamesAreNotFound) {
    for (const char* name : {"", "R", "RM", "RMCX", "rmc", "GSV", "TST"}) {
        EXPECT_EQ(CNMEASentenceType::find(name), nullptr) << name;
    }
}

TEST(NmeaSentenceTypeTest, ATypeStandsInTheListWhileItLives) {
    auto first = std::make_unique<TestType>();
    auto second = std::make_unique<TestType>();
    auto third = std::make_unique<TestType>();
    EXPECT_EQ(CNMEASentenceType::find("TST"), third.get()) << "the latest stands at the head";
    second.reset();
    EXPECT_EQ(CNMEASentenceType::find("TST"), third.get());
    third.reset();
    EXPECT_EQ(CNMEASentenceType::find("TST"), first.get());
    first.reset();
    EXPECT_EQ(CNMEASentenceType::find("TST"), nullptr);
    EXPECT_NE(CNMEASentenceType::find("RMC"), nullptr);
}

TEST(NmeaSentenceTypeTest, WhatIsReceivedIsParsedAndPublished) {
    class Reader : public Listener<TestSentence> {
    public:
        const CNMEASentenceType* type = nullptr;
        std::size_t length = 0;

    private:
        void onPublished(TestSentence& sentence) override {
            type = &sentence.type();
            length = sentence.length;
        }
    } reader;
    const TestType type;
    type.receive("GPTST,1");
    EXPECT_EQ(reader.type, &type);
    EXPECT_EQ(reader.length, 7U);
}

} // namespace
} // namespace raincast
