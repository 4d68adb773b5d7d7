// SPDX-License-Identifier: MIT
#pragma once

#include "paged/app_paged.h"

#include <QString>

namespace raincast {

/// The application: a paged one that starts with a weather page.
class CRaincastApp : public CAppPaged {
public:
    /// What is wrong with what the current page shows, for a person; empty while nothing is.
    [[nodiscard]] QString problem() const;
    /// What the current page shows, for the window's title; empty for nothing worth naming.
    [[nodiscard]] QString caption() const;

protected:
    void createDefaultPages() override;
};

} // namespace raincast
