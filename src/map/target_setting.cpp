// SPDX-License-Identifier: MIT
#include "map/target_setting.h"

#include "map/mark_manager.h"

namespace raincast {

namespace {

// As the east offset of a line's start: there is no line yet.
constexpr double kNoStart = 2147483647;

const MarkData kNoTarget; // its latitude is 0

} // namespace

TargetSetting::TargetSetting(CMarkManager& marks)
    : PersistantData("CMarkManager"), m_marks(marks), m_start{kNoStart, 0} {}

void TargetSetting::apply() {
    const bool remembered = m_mark.latitude != 0;
    const auto start = m_start.eastMetres == kNoStart ? std::nullopt : std::optional(m_start);
    m_follows = !remembered || m_marks.restoreTarget({m_mark, start});
}

void TargetSetting::takePresent() {
    const auto target = m_marks.chosenTarget();
    m_follows = m_follows || target;
    if (m_follows) {
        m_mark = target ? target->mark : kNoTarget;
        m_start = target && target->start ? *target->start : LocalOffset{kNoStart, 0};
    }
}

void TargetSetting::exchange(SettingsExchange& values) {
    if (values.loading()) {
        m_mark = kNoTarget;
        m_start = {kNoStart, 0};
        m_follows = false;
    } else {
        takePresent();
    }
    values.string("target_name", m_mark.name);
    values.binary("target_latitude", m_mark.latitude);
    values.binary("target_longitude", m_mark.longitude);
    values.binary("start_east", m_start.eastMetres);
    values.binary("start_north", m_start.northMetres);
}

} // namespace raincast
