// SPDX-License-Identifier: MIT
#include "units/scoped_units.h"
#include "units/units_change_listener.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace raincast {
namespace {

using test::ScopedUnits;

struct Told : CUnits::ChangeListener {
    void onUnitsChanged() override {
        ++times;
        unit = CUnits::global().units;
        if (then) {
            then();
        }
    }
    int times = 0;
    std::uint32_t unit = 99;
    std::function<void()> then;
};

TEST(UnitsChangeListenerTest, IsToldOfAChangeOnceItIsMade) {
    const ScopedUnits keep;
    Told told;
    const ScopedUnits kFeet(CUnits::kFeet);
    EXPECT_EQ(told.times, 1);
    EXPECT_EQ(told.unit, CUnits::kFeet);
    CUnits::setGlobal(CUnits());
    EXPECT_EQ(told.times, 1) << "nothing has changed";
}

TEST(UnitsChangeListenerTest, IsToldOfNothingAfterItsEnd) {
    const ScopedUnits keep;
    auto first = std::make_unique<Told>();
    auto second = std::make_unique<Told>();
    Told third;
    first->then = [&] {
        second.reset();
        first.reset();
    };
    const ScopedUnits kFeet(CUnits::kFeet);
    EXPECT_FALSE(first);
    EXPECT_EQ(third.times, 1);
}

} // namespace
} // namespace raincast
