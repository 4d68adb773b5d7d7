// SPDX-License-Identifier: MIT
#pragma once

#include "reading/reading_setting.h"
#include "support/qt_app.h"
#include "units/units.h"

#include <gtest/gtest.h>

namespace raincast::test {

/// Puts back units and settings that a test changes.
class ReadingState : public GuiTest {
protected:
    ~ReadingState() override {
        CUnits::setGlobal(m_units);
        ReadingSetting::restore(m_setting);
    }

    static void use(CUnits::DistanceUnit unit) {
        CUnits units;
        units.units = unit;
        units.speed = CUnits::speedUnitFor(unit);
        CUnits::setGlobal(units);
    }

private:
    const CUnits m_units;
    const ReadingSetting::Kept m_setting = ReadingSetting::keep();
};

} // namespace raincast::test
