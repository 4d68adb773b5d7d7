// SPDX-License-Identifier: MIT
#pragma once

#include "core/ranked_record.h"
#include "page/app_paged.h"

#include <QString>

class QWidget;

namespace raincast {

/// Settings of the whole installation that have a dialog of their own; the "Settings" menu offers
/// them. Each is a static object, or owned by the viewer when its dialog needs something; all() has
/// them in the menu's order.
class CAppPaged::GlobalSettingsType : public RankedRecord<CAppPaged::GlobalSettingsType> {
public:
    /// The ranks of the program's settings.
    static constexpr int kRankUnits = 10;
    static constexpr int kRankGpsOverlay = 20;
    static constexpr int kRankGpsSource = 30;
    static constexpr int kRankServers = 40;
    static constexpr int kRankDetail = 50;

    /// `name` is the type's own and may be empty; the menu shows `caption`, followed by
    /// three dots. One without a caption is not offered.
    GlobalSettingsType(QString name, QString caption, int rank);

    /// Shows the settings dialog over the application's window.
    virtual void open(QWidget* window) const = 0;

    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] const QString& caption() const { return m_caption; }

protected:
    ~GlobalSettingsType() override = default;

private:
    const QString m_name;
    const QString m_caption;
};

} // namespace raincast
