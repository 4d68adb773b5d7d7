// SPDX-License-Identifier: MIT
#pragma once

#include "along/along_plan.h"
#include "core/background.h"
#include "window/dialog.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

class QListWidget;

namespace raincast {

/// Where distances are from.
struct AlongFrom {
    GeoPosition position;
    QString name; ///< "your position"
};

/// "Take Along": asks for a distance in the user's unit, and shows which sites lie within it, about
/// how much they take, and how much is free where the cache is.
class AlongDialog : public Dialog {
public:
    static constexpr int kTemplate = 180;

    /// The free bytes of the cache's disk; below 0: unknown. Called in another thread.
    using FreeBytes = std::function<qint64()>;

    /// The state's loop and cache will be followed.
    AlongDialog(AlongFrom from, RadarState like, FreeBytes freeBytes);

    /// What was chosen, the nearest first; never empty after OK.
    [[nodiscard]] std::vector<QString> siteIds() const;

    bool onInitialise() override;
    void onDialogCommand(int id, QWidget* control, int notification) override;
    /// A distance that is none, has no site or too many for the disk keeps the dialog open, with a
    /// message.
    void onOk() override;

private:
    [[nodiscard]] std::optional<double> typedMetres() const;
    [[nodiscard]] QListWidget& list() const;
    void fill();
    void sayAmount();
    void complain(const QString& text);

    AlongFrom m_from;
    RadarState m_like;
    FreeBytes m_freeBytes;
    std::optional<qint64> m_free;
    std::vector<AlongSite> m_sites;
    Background m_background;
};

} // namespace raincast
