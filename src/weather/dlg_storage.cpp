// SPDX-License-Identifier: MIT
#include "weather/dlg_storage.h"

#include "core/storage_cards.h"
#include "radar/cache.h"
#include "weather/weather_dialogs.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QStorageInfo>

#include <algorithm>
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
    kAmount = 1076,
};

const DialogTemplateRecord record{
    {kStorageDialog,
     Text::marked("Radar Image Storage"),
     {122, 118},
     {
         {kPlaceLabel, ControlKind::label, Text::marked("Cache &images on:"), {4, 4, 114, 12}},
         {kPlace, ControlKind::comboBox, {}, {4, 18, 114, 14}},
         {kCleanFiles,
          ControlKind::checkBox,
          Text::marked("&Cleanup cached files"),
          {4, 38, 114, 14}},
         {kAmount, ControlKind::label, {}, {12, 53, 106, 12}},
         {kKeepRadar,
          ControlKind::checkBox,
          Text::marked("Keep nearby &radar images"),
          {12, 68, 106, 14}},
         {kCleanBasemaps,
          ControlKind::checkBox,
          Text::marked("Cleanup &basemaps"),
          {12, 84, 106, 14}},
         {kKeepBasemaps,
          ControlKind::checkBox,
          Text::marked("&Keep nearby basemaps"),
          {20, 100, 98, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
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

/// "1,204 files, 31 MB (12 GB free)"
QString amountText(const StorageCount& count, qint64 freeBytes) {
    const QString files = Text::counted("%n files", "%n file", count.files);
    return Text::tr("%1, %2 (%3 free)")
        .arg(files, Text::dataSize(count.bytes), Text::dataSize(std::max<qint64>(freeBytes, 0)));
}

} // namespace

CDlgStorage::CDlgStorage(StorageRequest request, Waiting waiting)
    : Dialog(kStorageDialog), m_request(std::move(request)), m_waiting(std::move(waiting)),
      m_cards(ListStorageCards()) {}

bool CDlgStorage::onInitialise() {
    m_places.attach(*control<QComboBox>(kPlace));
    m_places.add(Text::tr("Internal memory"));
    for (const QString& card : std::as_const(m_cards)) {
        m_places.add(card);
    }
    m_places.select(static_cast<int>(selectedStorage(m_cards, m_request.cacheFolder)));
    for (const CleanupBox& box : kBoxes) {
        control<QCheckBox>(box.control)->setChecked(StorageCleanup{}.*box.chosen);
    }
    control(kKeepBasemaps)->setEnabled(false);
    count();
    return true;
}

void CDlgStorage::onDialogCommand(int id, QWidget* sender, int notification) {
    if (id == kCleanFiles) {
        enableBoxes();
    } else if (id == kCleanBasemaps) {
        control(kKeepBasemaps)->setEnabled(control<QCheckBox>(kCleanBasemaps)->isChecked());
    }
    if (kPlace <= id && id <= kKeepBasemaps && !working()) {
        count();
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

// In another thread: a card may be slow.
void CDlgStorage::count() {
    const auto work = [request = chosen()] {
        const QString place = request.card.value_or(internalCacheFolder());
        return std::pair(
            countCleanUp(request.cacheFolder, request.cleanup, request.viewCentre),
            QStorageInfo(place).bytesAvailable()
        );
    };
    m_counting.emplace().run(work, [this](const std::pair<StorageCount, qint64>& result) {
        if (widget() != nullptr) {
            setText(kAmount, amountText(result.first, result.second));
        }
    });
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
    setText(kPlaceLabel, Text::tr("%1 of %2 files moved").arg(done).arg(wanted));
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
        messageBox(widget(), *m_result.error, Text::tr("Error"));
    } else {
        Dialog::onOk();
    }
}

} // namespace raincast
