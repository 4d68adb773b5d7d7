// SPDX-License-Identifier: MIT
#include "along/along_dialog.h"

#include "along/along_setting.h"
#include "units/units.h"
#include "window/dialog_template.h"
#include "window/message_box.h"
#include "window/row_delegate.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

enum Control { kDistance = 1100, kUnit = 1101, kFrom = 1102, kSites = 1103, kAmount = 1104 };

const DialogTemplateRecord record{
    {AlongDialog::kTemplate,
     Text::marked("Take Along"),
     {124, 128},
     {
         {0, ControlKind::label, Text::marked("&Within:"), {4, 4, 32, 14}},
         {kDistance, ControlKind::edit, {}, {38, 4, 34, 14}},
         {kUnit, ControlKind::label, {}, {75, 4, 45, 14}},
         {kFrom, ControlKind::label, {}, {4, 20, 116, 10}},
         {kSites, ControlKind::listBox, Text::marked("Sites"), {4, 32, 116, 62}},
         {kAmount, ControlKind::label, {}, {4, 97, 116, 10}},
         {Dialog::kOk, ControlKind::pushButton, Text::marked("&Take Along"), {4, 110, 56, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("&Cancel"), {64, 110, 56, 14}},
     },
     {}}};

/// "12 sites, about 31 MB (12 GB free)"
QString amountText(std::size_t sites, qint64 bytes, std::optional<qint64> freeBytes) {
    const QString count = Text::counted("%n sites", "%n site", static_cast<qint64>(sites));
    const QString size = Text::dataSize(bytes);
    return freeBytes && *freeBytes >= 0
               ? Text::tr("%1, about %2 (%3 free)").arg(count, size, Text::dataSize(*freeBytes))
               : Text::tr("%1, about %2").arg(count, size);
}

} // namespace

AlongDialog::AlongDialog(AlongFrom from, RadarState like, FreeBytes freeBytes)
    : Dialog(kTemplate), m_from(std::move(from)), m_like(std::move(like)),
      m_freeBytes(std::move(freeBytes)) {}

QListWidget& AlongDialog::list() const {
    return *control<QListWidget>(kSites);
}

bool AlongDialog::onInitialise() {
    const CUnits& units = CUnits::global();
    list().setItemDelegate(new RowDelegate(&list()));
    setText(kUnit, units.distanceUnit());
    setText(kFrom, Text::tr("from %1").arg(m_from.name));
    const double distance = units.distanceOf(AlongSetting::metres());
    setText(kDistance, QString::number(std::max(std::round(distance), 1.0), 'f', 0));
    fill();
    // In another thread: a card may be slow.
    m_background.run(m_freeBytes, [this](qint64 bytes) {
        m_free = bytes;
        sayAmount();
    });
    auto& field = *control<QLineEdit>(kDistance);
    field.setFocus();
    field.selectAll();
    return false;
}

std::optional<double> AlongDialog::typedMetres() const {
    bool good = false;
    const double distance = Text::typedNumber(text(kDistance).trimmed(), &good);
    const double metres = distance / CUnits::global().distanceOf(1);
    return good && std::isfinite(metres) && metres > 0 ? std::optional(metres) : std::nullopt;
}

void AlongDialog::fill() {
    const auto metres = typedMetres();
    m_sites = metres ? sitesWithin(m_from.position, *metres) : std::vector<AlongSite>();
    list().clear();
    for (const AlongSite& each : m_sites) {
        auto* const row = new QListWidgetItem(each.site->nameText().toString(), &list());
        row->setData(RowDelegate::kRemarkRole, CUnits::global().distanceText(each.metres));
        row->setToolTip(QStringLiteral("%1 %2").arg(each.site->idText(), each.site->nameText()));
    }
    sayAmount();
}

void AlongDialog::sayAmount() {
    if (widget() == nullptr) {
        return;
    }
    setText(kAmount, amountText(m_sites.size(), estimatedBytes(m_sites.size(), m_like), m_free));
}

std::vector<QString> AlongDialog::siteIds() const {
    std::vector<QString> ids;
    std::transform(m_sites.begin(), m_sites.end(), std::back_inserter(ids), [](const auto& each) {
        return each.site->idText().toString();
    });
    return ids;
}

void AlongDialog::onDialogCommand(int id, QWidget* sender, int notification) {
    if (id == kDistance && notification == textChanged) {
        fill();
    }
    Dialog::onDialogCommand(id, sender, notification);
}

void AlongDialog::complain(const QString& text) {
    messageBox(widget(), text, Text::tr("Take Along"));
}

void AlongDialog::onOk() {
    const auto metres = typedMetres();
    if (!metres) {
        complain(Text::tr("The distance must be a number above 0, such as 150."));
        return;
    }
    if (m_sites.empty()) {
        complain(Text::tr("No radar site is within %1 from %2.")
                     .arg(CUnits::global().distanceText(*metres), m_from.name));
        return;
    }
    const qint64 needed = estimatedBytes(m_sites.size(), m_like);
    if (m_free && 0 <= *m_free && *m_free < needed) {
        complain(Text::tr("There is not enough room for the images: they need about %1, and "
                          "%2 are free.")
                     .arg(Text::dataSize(needed), Text::dataSize(*m_free)));
        return;
    }
    AlongSetting::setMetres(*metres);
    Dialog::onOk();
}

} // namespace raincast
