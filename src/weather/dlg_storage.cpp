// SPDX-License-Identifier: MIT
#include "weather/dlg_storage.h"

#include "core/storage_cards.h"
#include "weather/weather_dialogs.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>

#include <utility>

namespace raincast {

namespace {

enum Control {
    kPlace = 1070,
    kCleanFiles = 1071,
    kKeepRadar = 1072,
    kCleanBasemaps = 1073,
    kKeepBasemaps = 1074,
    kPlaceLabel = 1075,
};

const DialogTemplateRecord record{
    {kStorageDialog,
     QStringLiteral("Radar Image Storage"),
     {122, 104},
     {
         {kPlaceLabel, ControlKind::label, QStringLiteral("Cache &images on:"), {4, 4, 114, 12}},
         {kPlace, ControlKind::comboBox, {}, {4, 18, 114, 14}},
         {kCleanFiles,
          ControlKind::checkBox,
          QStringLiteral("&Cleanup cached files"),
          {4, 38, 114, 14}},
         {kKeepRadar,
          ControlKind::checkBox,
          QStringLiteral("Keep nearby &radar images"),
          {12, 54, 106, 14}},
         {kCleanBasemaps,
          ControlKind::checkBox,
          QStringLiteral("Cleanup &basemaps"),
          {12, 70, 106, 14}},
         {kKeepBasemaps,
          ControlKind::checkBox,
          QStringLiteral("&Keep nearby basemaps"),
          {20, 86, 98, 14}},
         {Dialog::kCancel, ControlKind::pushButton, QStringLiteral("Cancel"), {}},
     },
     {}}};

// Between two paints of the progress: files move faster than anybody reads.
constexpr qint64 kPaintMilliseconds = 90;

struct CleanupBox {
    int control;
    bool StorageCleanup::*chosen;
};

constexpr CleanupBox kBoxes[] = {
    {kCleanFiles, &StorageCleanup::cachedFiles},
    {kKeepRadar, &StorageCleanup::keepNearbyRadar},
    {kCleanBasemaps, &StorageCleanup::basemaps},
    {kKeepBasemaps, &StorageCleanup::keepNearbyBasemaps},
};

} // namespace

CDlgStorage::CDlgStorage(StorageRequest request, Waiting waiting)
    : Dialog(kStorageDialog), m_request(std::move(request)), m_waiting(std::move(waiting)),
      m_cards(ListStorageCards()) {}

bool CDlgStorage::onInitialise() {
    m_places.attach(*control<QComboBox>(kPlace));
    m_places.add(QStringLiteral("Internal memory"));
    for (const QString& card : std::as_const(m_cards)) {
        m_places.add(card);
    }
    m_places.select(static_cast<int>(selectedStorage(m_cards, m_request.cacheFolder)));
    for (const CleanupBox& box : kBoxes) {
        control<QCheckBox>(box.control)->setChecked(StorageCleanup{}.*box.chosen);
    }
    control(kKeepBasemaps)->setEnabled(false);
    return true;
}

void CDlgStorage::onDialogCommand(int id, QWidget* sender, int notification) {
    if (id == kCleanFiles) {
        enableBoxes();
    } else if (id == kCleanBasemaps) {
        control(kKeepBasemaps)->setEnabled(control<QCheckBox>(kCleanBasemaps)->isChecked());
    }
    Dialog::onDialogCommand(id, sender, notification);
}

// "Cleanup cached files" switches all other boxes.
void CDlgStorage::enableBoxes() {
    const bool enabled = control<QCheckBox>(kCleanFiles)->isChecked();
    for (const int box : {kCleanBasemaps, kKeepRadar, kKeepBasemaps}) {
        control(box)->setEnabled(enabled);
    }
}

StorageRequest CDlgStorage::chosen() const {
    StorageRequest request = m_request;
    const int place = m_places.selected();
    if (place > 0) {
        request.card = m_cards[place - 1];
    }
    for (const CleanupBox& box : kBoxes) {
        request.cleanup.*box.chosen = control<QCheckBox>(box.control)->isChecked();
    }
    return request;
}

// In the place of the label: on a small screen the dialog may cover the item's bar, too.
void CDlgStorage::showProgress(int done, int wanted) {
    setText(kPlaceLabel, QStringLiteral("%1 of %2 files moved").arg(done).arg(wanted));
    control(kPlaceLabel)->repaint();
    if (m_request.progress) {
        m_request.progress(done, wanted);
    }
}

void CDlgStorage::onOk() {
    StorageRequest request = chosen();
    request.progress = [this, sincePaint = QElapsedTimer()](int done, int wanted) mutable {
        if (!sincePaint.isValid() || sincePaint.hasExpired(kPaintMilliseconds) || done == wanted) {
            sincePaint.start();
            showProgress(done, wanted);
        }
    };
    const QString label = text(kPlaceLabel);
    m_waiting(true);
    const StorageResult result = applyStorage(request);
    m_waiting(false);
    setText(kPlaceLabel, label);
    if (result.error) {
        messageBox(widget(), *result.error, QStringLiteral("Error"));
        return;
    }
    m_request.cacheFolder = result.cacheFolder;
    Dialog::onOk();
}

} // namespace raincast
