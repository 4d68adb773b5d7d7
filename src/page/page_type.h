// SPDX-License-Identifier: MIT
#pragma once

#include "core/ranked_record.h"
#include "page/app_paged.h"

#include <QString>

#include <memory>

class QWidget;

namespace raincast {

/// A kind of page that the user can add. Each is a static object; all() has them in the order of
/// lists.
class CAppPaged::PageType : public RankedRecord<CAppPaged::PageType> {
public:
    /// The ranks of the program's page types.
    static constexpr int kRankBlankPage = 10;
    static constexpr int kRankWeatherPage = 20;

    /// A type with an empty name is not offered to the user.
    PageType(QString name, int rank);

    /// A new page of this type, or null. `window` is the application's window, which the type may
    /// put questions over.
    [[nodiscard]] virtual std::unique_ptr<Page> create(QWidget* window) const = 0;

    [[nodiscard]] const QString& name() const { return m_name; }

protected:
    ~PageType() override = default;

private:
    const QString m_name;
};

} // namespace raincast
