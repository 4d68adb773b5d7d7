// SPDX-License-Identifier: MIT
#pragma once

#include "window/action_row.h"

#include <QPointer>
#include <QString>

#include <functional>

namespace raincast {

class CAppPaged;

/// The line that says for ten seconds that another site is shown because the view has moved there,
/// with a button that goes back.
class SiteChangeLine {
public:
    static constexpr int kShownMilliseconds = 10'000;

    SiteChangeLine() = default;
    ~SiteChangeLine();
    SiteChangeLine(const SiteChangeLine&) = delete;
    SiteChangeLine& operator=(const SiteChangeLine&) = delete;

    /// Shows it in the application's window; nothing where there is none. `back` is called when its
    /// button is pressed.
    void show(
        CAppPaged* application, const QString& siteBefore, const QString& siteNow,
        std::function<void()> back
    );
    void hide();

private:
    QPointer<ActionRow> m_row;
};

} // namespace raincast
