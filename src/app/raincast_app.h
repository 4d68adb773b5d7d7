// SPDX-License-Identifier: MIT
#pragma once

#include "map/mark_manager.h"
#include "page/app_paged.h"

#include <QString>

namespace raincast {

/// The application: a paged one that starts with a weather page, and keeps the user's marks in its
/// page file. Default pages leave the marks alone.
class CRaincastApp : public CAppPaged {
public:
    /// The marks are borrowed.
    explicit CRaincastApp(CMarkManager& marks = CMarkManager::instance()) : m_marks(marks) {}

    /// What is wrong with what the current page shows, for a person; empty while nothing is.
    [[nodiscard]] QString problem() const;
    /// What the current page shows, for the window's title; empty for nothing worth naming.
    [[nodiscard]] QString caption() const;

    /// Replaces the pages and the user's marks by those of the file.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    /// The pages, and behind them the marks if there are any.
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;

protected:
    void createDefaultPages() override;

private:
    CMarkManager& m_marks;
};

} // namespace raincast
