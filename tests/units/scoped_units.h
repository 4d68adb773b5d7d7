// SPDX-License-Identifier: MIT
#pragma once

#include "units/units.h"

namespace raincast::test {

/// Puts the user's units back when it ends. Given a distance unit, makes it and the speed unit that
/// follows it the user's meanwhile.
class ScopedUnits {
public:
    ScopedUnits() = default;
    explicit ScopedUnits(CUnits::DistanceUnit unit) {
        CUnits units;
        units.units = unit;
        units.speed = CUnits::speedUnitFor(unit);
        CUnits::setGlobal(units);
    }
    ~ScopedUnits() { CUnits::setGlobal(m_before); }
    ScopedUnits(const ScopedUnits&) = delete;
    ScopedUnits& operator=(const ScopedUnits&) = delete;

    [[nodiscard]] const CUnits& before() const { return m_before; }

private:
    const CUnits m_before;
};

} // namespace raincast::test
