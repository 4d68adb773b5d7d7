// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "map/mark_list.h"
#include "window/dialog.h"

#include <functional>
#include <optional>
#include <vector>

class QListWidget;
class QListWidgetItem;

namespace raincast {

class CMarkManager;

/// "Marks": the user's marks, nearest first, each with its distance and bearing; the target has a
/// sign. It shows a mark on the map, makes it the target, renames and deletes it, at once.
class MarksDialog : public Dialog {
public:
    static constexpr int kTemplate = 150;

    /// Shows a position on the map; false if it is not on it.
    using GoTo = std::function<bool(GeoPosition place)>;

    /// Marks and undo are borrowed; without an undo nothing can be put back. Distances are from
    /// `from`, left out without one. Without `goTo` there is no map to show a mark on.
    MarksDialog(CMarkManager& marks, Undo* undo, const std::optional<GeoPosition>& from, GoTo goTo);

    bool onInitialise() override;
    /// Shows the selected mark on the map and ends; where it is not on it, says so and stays.
    void onOk() override;
    void onSize(int width, int height) override;
    void onDialogCommand(int id, QWidget* control, int notification) override;

private:
    [[nodiscard]] QListWidget& list() const;
    [[nodiscard]] const COverlayMark* selected() const;
    [[nodiscard]] int currentRow() const;
    void fill();
    void show(QListWidgetItem& item, const MarkRow& row) const;
    void showRows();
    void updateButtons();
    void edit(int id);
    void setTarget();
    void clearTarget();
    void rename();
    void deleteMark();

    CMarkManager& m_marks;
    Undo* m_undo;
    std::optional<GeoPosition> m_from;
    GoTo m_goTo;
    std::vector<MarkRow> m_rows; ///< of the list, in its order
};

} // namespace raincast
