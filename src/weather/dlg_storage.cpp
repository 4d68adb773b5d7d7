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
    if (m_request.progress) {
        m_request.progress(done, wanted);
    }
}

void CDlgStorage::onOk() {
    if (working()) {
        return;
    }
    StorageRequest request = chosen();
    // Called in the other thread.
    request.progress = [this, slit = m_progress.slit(),
                        sinceTold = QElapsedTimer()](int done, int wanted) mutable {
        if (!sinceTold.isValid() || sinceTold.hasExpired(kPaintMilliseconds) || done == wanted) {
            sinceTold.start();
            slit.post([this, done, wanted] { showProgress(done, wanted); });
        }
    };
    m_label = text(kPlaceLabel);
    m_waiting(true);
    widget()->setEnabled(false);
    m_work.start([this, request] { m_result = applyStorage(request); }, [this] { ended(); });
}

void CDlgStorage::onCancel() {
    if (!working()) {
        Dialog::onCancel();
    }
}

void CDlgStorage::ended() {
    m_waiting(false);
    if (!m_result.error) {
        m_request.cacheFolder = m_result.cacheFolder;
    }
    if (widget() == nullptr) {
        return; // it was closed from outside
    }
    widget()->setEnabled(true);
    setText(kPlaceLabel, m_label);
    if (m_result.error) {
        messageBox(widget(), *m_result.error, QStringLiteral("Error"));
    } else {
        Dialog::onOk();
    }
}

} // namespace raincast
