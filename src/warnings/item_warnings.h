// SPDX-License-Identifier: MIT
#pragma once

#include "map/item_map_view.h"
#include "radar/warning_texts.h"
#include "window/menu_table.h"

#include <QPoint>

#include <memory>
#include <vector>

class QMenu;

namespace raincast {

class WarningWatch;
struct RadarState;

/// The texts of a radar item's warnings: lists them, and tells the watch (warnings/warning_watch.h)
/// of them.
class ItemWarnings {
public:
    /// Both are borrowed for its life.
    ItemWarnings(CItemMapView& item, const RadarState& state) : m_item(item), m_state(state) {}

    /// Who watches over the user; borrowed, and used for as long as the item lives.
    void use(WarningWatch& watch) { m_watch = &watch; }
    /// Tells the watch what the state has now, if that has changed.
    void follow();

    /// "Warnings..." and "Dismiss Warning"; false for any other command.
    bool command(int id);
    /// Their keys; false for any other.
    bool character(char16_t unit);
    void prepareMenu(QMenu& menu) const;
    /// A tap on the item, in device pixels of the page: lists the warnings there. False, and
    /// nothing happens, where there are none, or no texts.
    bool tapped(QPoint place);

private:
    using List = std::vector<WarningText>;

    [[nodiscard]] List shown() const;
    [[nodiscard]] List at(QPoint place) const;
    [[nodiscard]] QString whyNone() const;
    void list(List warnings);
    void listAll();

    CItemMapView& m_item;
    const RadarState& m_state;
    WarningWatch* m_watch = nullptr;
    std::shared_ptr<const WarningTexts> m_told; ///< to the watch
    QString m_source;                           ///< of those
};

} // namespace raincast
