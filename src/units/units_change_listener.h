// SPDX-License-Identifier: MIT
#pragma once

#include "units/units.h"

#include <vector>

namespace raincast {

/// Is called when the user has chosen other units, from construction to destruction. In the call a
/// listener may end itself or others.
class CUnits::ChangeListener {
public:
    /// CUnits::global() has changed.
    virtual void onUnitsChanged() = 0;

    ChangeListener(const ChangeListener&) = delete;
    ChangeListener& operator=(const ChangeListener&) = delete;

protected:
    ChangeListener() { s_all.push_back(this); }
    virtual ~ChangeListener() { std::erase(s_all, this); }

private:
    friend class CUnits;
    static void tellAll();

    static inline std::vector<ChangeListener*> s_all;
};

} // namespace raincast
