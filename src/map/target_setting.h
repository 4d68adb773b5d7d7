// SPDX-License-Identifier: MIT
#pragma once

#include "geo/local_frame.h"
#include "map/mark_data.h"
#include "persist/persistant_data.h"

namespace raincast {

class CMarkManager;

/// The settings record "CMarkManager": which mark is the target, and where the line to it starts.
/// The marks themselves are in the page file.
class TargetSetting : public PersistantData {
public:
    /// The marks are borrowed.
    explicit TargetSetting(CMarkManager& marks);

    /// Makes the mark that is remembered the target again, once the marks are loaded. Without such
    /// a mark there is no target; the settings keep it then until the user has chosen one, as other
    /// pages may have it.
    void apply();

protected:
    void exchange(SettingsExchange& values) override;

private:
    void takePresent();

    CMarkManager& m_marks;
    MarkData m_mark;     ///< "target_name", "target_latitude" and "target_longitude": see MarkData
    LocalOffset m_start; ///< "start_east", "start_north": metres from the target
    bool m_follows = false; ///< the above are the present target's, or none
};

} // namespace raincast
