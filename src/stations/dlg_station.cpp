// SPDX-License-Identifier: MIT
#include "stations/dlg_station.h"

#include "geo/local_frame.h"
#include "letters/type_ahead.h"
#include "radar/catalogue/site_list.h"
#include "radar/catalogue/sites.h"
#include "stations/recent_stations.h"
#include "stations/station_filter.h"
#include "stations/station_map.h"
#include "units/units.h"
#include "window/dialog_template.h"
#include "window/row_delegate.h"
#include "window/screen_metrics.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

enum Control { kList = 1028, kFindLabel = 1090, kFind = 1091, kMap = 1092, kFrom = 1093 };

const DialogTemplateRecord stationDialog{
    {CDlgStation::kTemplate,
     Text::marked("Weather Station"),
     {124, 128},
     {
         {kFindLabel, ControlKind::label, Text::marked("&Find:"), {2, 4, 22, 10}},
         {kFind, ControlKind::edit, {}, {25, 2, 62, 14}},
         {kMap, ControlKind::pushButton, Text::marked("&Map"), {90, 2, 32, 14}},
         {kList, ControlKind::listBox, Text::marked("Stations"), {2, 18, 120, 98}},
         {kFrom, ControlKind::label, {}, {2, 118, 120, 10}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {124, 70}}};

} // namespace

/// Keys in the field that choose a row of the list below.
class CDlgStation::ListKeys : public QObject {
public:
    ListKeys(QWidget& field, QWidget& list) : QObject(&field), m_list(list) {
        field.installEventFilter(this);
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) {
            return false;
        }
        const int key = static_cast<const QKeyEvent*>(event)->key();
        const bool moves = key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
                           key == Qt::Key_PageDown;
        if (moves) {
            QCoreApplication::sendEvent(&m_list, event);
        }
        return moves;
    }

private:
    QWidget& m_list;
};

CDlgStation::CDlgStation(
    GeoPosition position, QString currentId, QString from, const std::optional<GeoPosition>& own
)
    : Dialog(kTemplate), m_position(position), m_current(std::move(currentId)),
      m_from(std::move(from)), m_own(own) {}

QListWidget& CDlgStation::list() const {
    return *control<QListWidget>(kList);
}

bool CDlgStation::onInitialise() {
    m_chosen.reset();
    list().setItemDelegate(new RowDelegate(&list()));
    new TypeAhead(list());
    auto& find = *control<QLineEdit>(kFind);
    find.setPlaceholderText(Text::tr("id, name, state"));
    find.setClearButtonEnabled(true);
    new ListKeys(find, list());
    control<QPushButton>(kMap)->setCheckable(true);
    m_map = new StationMap(list().parentWidget(), [this](const RadarSite& site) {
        setText(kFind, {});
        if (std::find(m_rows.begin(), m_rows.end(), &site) == m_rows.end()) {
            setText(kFind, site.idText().toString());
        }
        select(&site);
    });
    m_map->setPosition(m_own);
    m_map->hide();
    fill();
    list().setFocus();
    return false;
}

QString CDlgStation::distanceTo(const RadarSite& site) const {
    if (m_position.latitude == 0) {
        return {};
    }
    return CUnits::global().distanceText(siteDistanceMetres(LocalFrame(m_position), site));
}

void CDlgStation::fill() {
    const QSignalBlocker quiet(list());
    const RadarSite* const before = m_rows.empty() ? findRadarSite(m_current) : selected();
    list().clear();
    m_rows.clear();
    const QString typed = text(kFind);
    if (typed.trimmed().isEmpty()) {
        for (const SiteList::Row& row :
             listSites(m_position.latitude, m_position.longitude, {}).rows) {
            addRow(*row.site, row.distanceMetres ? distanceTo(*row.site) : QString());
        }
        select(before);
    } else {
        for (const RadarSite* const site : findStations(typed, RecentStations::ids())) {
            addRow(*site, distanceTo(*site));
        }
        select(nullptr);
    }
    const bool distances = !m_from.isEmpty() && !m_rows.empty() &&
                           !list().item(0)->data(RowDelegate::kRemarkRole).toString().isEmpty();
    setText(kFrom, distances ? Text::tr("Distances from %1").arg(m_from) : QString());
}

void CDlgStation::addRow(const RadarSite& site, const QString& remark) {
    auto* const item = new QListWidgetItem(site.nameText().toString(), &list());
    item->setData(RowDelegate::kRemarkRole, remark);
    item->setToolTip(QStringLiteral("%1 %2").arg(site.idText(), site.nameText()));
    m_rows.push_back(&site);
}

const RadarSite* CDlgStation::selected() const {
    const auto chosen = list().selectedItems();
    return chosen.isEmpty() ? nullptr
                            : m_rows[static_cast<std::size_t>(list().row(chosen.first()))];
}

// A site that is not listed leaves the first row.
void CDlgStation::select(const RadarSite* site) {
    const auto row = std::find(m_rows.begin(), m_rows.end(), site);
    list().setCurrentRow(
        row != m_rows.end() ? static_cast<int>(row - m_rows.begin()) : (m_rows.empty() ? -1 : 0)
    );
    m_map->setCurrent(selected());
}

void CDlgStation::onDialogCommand(int id, QWidget* control, int notification) {
    if (id == kFind && notification == textChanged) {
        fill();
    } else if (id == kMap) {
        showMap(this->control<QPushButton>(kMap)->isChecked());
    } else if (id == kList && notification == doubleClicked) {
        onOk();
    } else if (id == kList && m_map) {
        m_map->setCurrent(selected());
    }
    Dialog::onDialogCommand(id, control, notification);
}

void CDlgStation::showMap(bool shown) {
    m_map->setCurrent(selected());
    m_map->setVisible(shown);
    list().setVisible(!shown);
    (shown ? static_cast<QWidget&>(*m_map) : list()).setFocus();
}

void CDlgStation::onOk() {
    if (const RadarSite* const site = selected()) {
        m_chosen = site->idText().toString();
        RecentStations::note(*m_chosen);
    }
    Dialog::onOk();
}

void CDlgStation::onSize(int width, int height) {
    const int margin = dialogMargin(ScreenMetrics::current().logPixelsY);
    QWidget& find = *control(kFind);
    QWidget& map = *control(kMap);
    const int top = find.height() + 2 * margin;
    map.move(width - margin - map.width(), margin);
    find.setGeometry(find.x(), margin, map.x() - margin - find.x(), find.height());
    QWidget& from = *control(kFrom);
    const bool hasFrom = !text(kFrom).isEmpty();
    const int below = hasFrom ? from.height() + margin : 0;
    from.setVisible(hasFrom);
    from.setGeometry(margin, height - margin - from.height(), width - 2 * margin, from.height());
    list().setGeometry(margin, top, width - 2 * margin, height - margin - below - top);
    m_map->setGeometry(list().geometry());
}

} // namespace raincast
