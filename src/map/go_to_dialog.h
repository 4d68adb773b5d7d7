// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "window/dialog.h"

#include <functional>

namespace raincast {

/// "Go to Position": takes a position that the user types (see typedPosition()), and has the map go
/// there. Stays open for a text that is not a position, and for a position that is not on the map.
class GoToDialog : public Dialog {
public:
    static constexpr int kTemplate = 151;

    /// Shows a position; false if it is not on the map.
    using GoTo = std::function<bool(GeoPosition)>;

    /// `from` stands in the dialog when it opens.
    GoToDialog(GeoPosition from, GoTo goTo);

    bool onInitialise() override;
    void onOk() override;

private:
    void complain(const QString& message);

    const GeoPosition m_from;
    const GoTo m_goTo;
};

} // namespace raincast
