// SPDX-License-Identifier: MIT
#include "app/position_source_dialog.h"

#include "core/clock.h"
#include "position/position_receiver.h"
#include "position/source/position_source_setting.h"
#include "window/dialog_template.h"
#include "window/events.h"
#include "window/message_box.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

using Kind = PositionSourceAddress::Kind;

constexpr std::int32_t kBeatsPerSecond = 10;
constexpr int kLongestAddress = 1024;

const DialogTemplateRecord record{
    {PositionSourceDialog::kTemplate,
     Text::marked("GPS Source"),
     {119, 127},
     {
         {0, ControlKind::label, Text::marked("&Source:"), {4, 4, 34, 14}},
         {PositionSourceDialog::kKind, ControlKind::comboBox, {}, {40, 4, 75, 14}},
         {PositionSourceDialog::kAddressLabel,
          ControlKind::label,
          Text::marked("&Address:"),
          {4, 21, 34, 14}},
         {PositionSourceDialog::kAddress, ControlKind::edit, {}, {40, 21, 75, 14}},
         {PositionSourceDialog::kExample, ControlKind::label, {}, {4, 36, 111, 18}},
         {0, ControlKind::label, Text::marked("What arrives:"), {4, 56, 70, 14}},
         {PositionSourceDialog::kTry,
          ControlKind::pushButton,
          Text::marked("&Try"),
          {79, 56, 36, 14}},
         {PositionSourceDialog::kInUse, ControlKind::label, {}, {4, 72, 111, 10}},
         {PositionSourceDialog::kArrivals, ControlKind::label, {}, {4, 83, 111, 40}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

// The dialog's texts for a kind of source.
struct KindRow {
    std::optional<Kind> kind;
    const char* name;
    const char* addressLabel;
    const char* example;
};

constexpr KindRow kKinds[] = {
    {std::nullopt, Text::marked("None"), Text::marked("&Address:"),
     Text::marked("Positions are not read")},
    {Kind::serial, Text::marked("Serial device"), Text::marked("&Device:"),
     Text::marked("For example /dev/ttyUSB0, or with a speed /dev/ttyUSB0@9600")},
    {Kind::tcp, Text::marked("TCP server"), Text::marked("&Server:"),
     Text::marked("HOST:PORT, for example 192.168.1.20:10110")},
    {Kind::udp, Text::marked("UDP port"), Text::marked("&Port:"),
     Text::marked("Of this computer, for example 10110")},
    {Kind::gpsd, "gpsd", Text::marked("&Server:"),
     Text::marked("HOST or HOST:PORT. Empty: the gpsd of this computer")},
    {Kind::file, Text::marked("Recorded file"), Text::marked("&File:"),
     Text::marked("For example ~/trip.nmea, or faster ~/trip.nmea?rate=10")},
};

int rowOf(std::optional<Kind> kind) {
    const auto* const row =
        std::find_if(std::begin(kKinds), std::end(kKinds), [kind](const KindRow& r) {
            return r.kind == kind;
        });
    return static_cast<int>(row - std::begin(kKinds));
}

bool isPath(std::optional<Kind> kind) {
    return kind == Kind::serial || kind == Kind::file;
}

QString asSentence(const QString& text) {
    return text.left(1).toUpper() + text.mid(1) + u'.';
}

std::optional<QString> mistakeIn(const QString& address) {
    return address.isEmpty() ? std::nullopt : PositionSourceAddress::mistake(address);
}

// The next start may be in another folder.
std::optional<QString> mistakeInPath(const QString& address) {
    const auto parsed = PositionSourceAddress::parse(address);
    if (parsed && isPath(parsed->kind) && !parsed->path.startsWith(u'/')) {
        return Text::tr("the path does not start with / or ~/");
    }
    return std::nullopt;
}

} // namespace

PositionSourceDialog::PositionSourceDialog(PositionReceiver& receiver)
    : Dialog(kTemplate), Counter(kBeatsPerSecond), m_receiver(receiver), m_watch(receiver) {}

PositionSourceDialog::~PositionSourceDialog() {
    PositionSourceSetting::apply(m_receiver);
}

bool PositionSourceDialog::onInitialise() {
    m_kinds.attach(*control<QComboBox>(kKind));
    for (const KindRow& row : kKinds) {
        m_kinds.add(Text::of(row.name));
    }
    control<QLineEdit>(kAddress)->setMaxLength(kLongestAddress);
    control<QLabel>(kArrivals)->setAlignment(Qt::AlignTop); // a long text shows its beginning
    const QString& address = PositionSourceSetting::text();
    const auto kind = PositionSourceAddress::kindOf(address);
    const int row = rowOf(kind);
    if (kind) {
        m_typed[row] = address.mid(PositionSourceAddress::scheme(*kind).size());
    }
    m_kinds.select(row);
    selectKind(row);
    m_watch.look(Clock::real().now());
    showArrivals();
    return true;
}

void PositionSourceDialog::onDialogCommand(int id, QWidget* sender, int notification) {
    if (id == kKind && notification == selectionChanged) {
        m_typed[m_kind] = text(kAddress);
        selectKind(m_kinds.selected());
    } else if (id == kTry) {
        tryIt();
    }
    Dialog::onDialogCommand(id, sender, notification);
}

void PositionSourceDialog::selectKind(int kind) {
    m_kind = kind;
    const KindRow& row = kKinds[kind];
    setText(kAddressLabel, Text::of(row.addressLabel));
    setText(kAddress, m_typed[kind]);
    setText(kExample, Text::of(row.example));
    control(kAddress)->setEnabled(row.kind.has_value());
    control(kTry)->setEnabled(row.kind.has_value());
}

QString PositionSourceDialog::entered() const {
    const auto kind = kKinds[m_kind].kind;
    if (!kind) {
        return {};
    }
    QString address = text(kAddress).trimmed();
    if (isPath(kind) && address.startsWith(QStringLiteral("~/"))) {
        address.replace(0, 1, QDir::homePath());
    }
    return PositionSourceAddress::scheme(*kind) + address;
}

bool PositionSourceDialog::check() {
    std::optional<QString> mistake = mistakeIn(entered());
    if (!mistake && entered() != PositionSourceSetting::text()) {
        mistake = mistakeInPath(entered());
    }
    if (!mistake) {
        return true;
    }
    messageBox(
        widget(), asSentence(*mistake) + QStringLiteral("\n\n") + Text::of(kKinds[m_kind].example),
        QStringLiteral("Raincast")
    );
    control(kAddress)->setFocus();
    return false;
}

void PositionSourceDialog::tryIt() {
    if (check()) {
        m_tried = entered();
        m_receiver.use(PositionSourceAddress::parse(*m_tried).value());
        showArrivals();
    }
}

void PositionSourceDialog::onOk() {
    if (!check()) {
        return;
    }
    if (entered() != PositionSourceSetting::text()) {
        PositionSourceSetting::choose(entered());
    }
    Dialog::onOk();
}

void PositionSourceDialog::Tick() {
    m_watch.look(CHeartbeat::program().now());
    showArrivals();
}

QString PositionSourceDialog::inUse() const {
    if (m_tried) {
        return Text::tr("On trial: %1").arg(*m_tried);
    }
    if (PositionSourceSetting::text().isEmpty()) {
        return Text::tr("None in use");
    }
    const bool forThisRun = PositionSourceSetting::isForThisRun();
    return (forThisRun ? Text::tr("For this run: %1") : Text::tr("In use: %1"))
        .arg(PositionSourceSetting::text());
}

void PositionSourceDialog::showArrivals() {
    auto* const label = control<QLabel>(kInUse);
    if (label == nullptr) {
        return; // a beat came before the controls
    }
    const QString source = inUse();
    label->setToolTip(source);
    label->setText(label->fontMetrics().elidedText(source, Qt::ElideMiddle, label->width()));
    const auto mistake = m_tried ? std::nullopt : mistakeIn(PositionSourceSetting::text());
    const QString arrivals = mistake ? asSentence(*mistake) : m_watch.text();
    setText(kArrivals, arrivals);
    control(kArrivals)->setToolTip(arrivals);
}

} // namespace raincast
