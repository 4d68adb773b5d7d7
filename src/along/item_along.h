// SPDX-License-Identifier: MIT
#pragma once

#include "along/along_dialog.h"
#include "along/taking_along.h"
#include "basemap/basemaps.h"
#include "page/task_row.h"
#include "window/commands.h"
#include "window/menu_table.h"

#include <functional>
#include <memory>
#include <optional>

class QMenu;

namespace raincast {

class CItemMapView;

inline constexpr MenuRow kTakeAlongRow = menuEntry(kTakeAlong, Text::marked("&Take Along..."));

/// "Take Along..." of a radar item: fetches the weather round the user's position, or else round
/// the map's middle, in the background, with a line at the bottom of the window that says how far
/// it is and can cancel it, and in the end what there is and what is missing.
class ItemAlong {
public:
    /// What the item loads with at present.
    using Scene = std::function<RadarScene()>;

    /// What is borrowed is so for its life.
    ItemAlong(CItemMapView& item, Scene scene);
    ~ItemAlong();
    ItemAlong(const ItemAlong&) = delete;
    ItemAlong& operator=(const ItemAlong&) = delete;

    /// Carries out kTakeAlong; false for any other command.
    bool command(int id);
    void prepareMenu(QMenu& menu) const;

    [[nodiscard]] bool running() const { return m_taking != nullptr; }
    /// Ends it, if it runs; the line says why, with what there is.
    void stop(const QString& why);

private:
    [[nodiscard]] std::optional<AlongFrom> from() const;
    void ask();
    void begin(const std::vector<QString>& siteIds);
    void ended(const AlongResult& result);
    void rowPressed();

    CItemMapView& m_item;
    Scene m_scene;
    std::unique_ptr<TakingAlong> m_taking;
    QStringList m_toShow; ///< what is missing, for the line's button
    TaskRow m_row;
};

} // namespace raincast
