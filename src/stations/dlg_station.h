// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "window/dialog.h"

#include <QPointer>
#include <QString>

#include <optional>
#include <vector>

class QListWidget;

namespace raincast {

class StationMap;
struct RadarSite;

/// "Weather Station": the sites within 500 km of a position, nearest first, each with its distance
/// in the user's unit; all sites in the order of their names at latitude 0, or where none is near.
/// The site in use is selected at first. A text typed into "Find" lists the sites that it finds
/// among all (stations/station_filter.h), and "Map" shows all on a map.
class CDlgStation : public Dialog {
public:
    static constexpr int kTemplate = 161;

    /// `from` says what the distances are from, as "the map's middle"; `own` is the user's
    /// position, for the map.
    CDlgStation(
        GeoPosition position, QString currentId, QString from = {},
        const std::optional<GeoPosition>& own = {}
    );

    /// The id of the chosen site.
    [[nodiscard]] std::optional<QString> chosenSite() const { return m_chosen; }

    bool onInitialise() override;
    void onOk() override;
    void onSize(int width, int height) override;
    void onDialogCommand(int id, QWidget* control, int notification) override;

private:
    class ListKeys;

    [[nodiscard]] QListWidget& list() const;
    [[nodiscard]] const RadarSite* selected() const;
    void fill();
    void addRow(const RadarSite& site, const QString& remark);
    void select(const RadarSite* site);
    [[nodiscard]] QString distanceTo(const RadarSite& site) const;
    void showMap(bool shown);

    GeoPosition m_position;
    QString m_current;
    QString m_from;
    std::optional<GeoPosition> m_own;
    std::vector<const RadarSite*> m_rows; ///< of the list, in its order
    QPointer<StationMap> m_map;
    std::optional<QString> m_chosen;
};

} // namespace raincast
