// SPDX-License-Identifier: MIT
// What every dialog looks like. A new dialog is a row of kDialogs.
#include "along/along_dialog.h"
#include "app/keys_dialog.h"
#include "app/position_source_dialog.h"
#include "core/text.h"
#include "fitting/fit_text.h"
#include "golden_test.h"
#include "letters/mnemonics.h"
#include "map/dlg_gps_vector.h"
#include "map/go_to_dialog.h"
#include "map/mark_manager.h"
#include "map/marks_dialog.h"
#include "page/dlg_pages.h"
#include "page/global_settings_type.h"
#include "pictures/save_dialog.h"
#include "position/position_receiver.h"
#include "position/source/position_source_setting.h"
#include "replay/past_storm_dialog.h"
#include "sample_viewer.h"
#include "sharp/detail_dialog.h"
#include "stations/dlg_station.h"
#include "support/dialog_script.h"
#include "support/fake_source.h"
#include "units/dlg_units.h"
#include "warnings/warning_text_dialog.h"
#include "warnings/warnings_dialog.h"
#include "weather/servers_setting.h"
#include "weather/weather_dialogs.h"
#include "window/commands.h"
#include "window/dialog_template.h"
#include "window/dlg_item_type_select.h"
#include "window/dlg_rename.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <string>

namespace raincast::test {
namespace {

struct DialogRow {
    int dialogTemplate;
    const char* name;    ///< of its picture
    const char* caption; ///< of the dialog that opens
    void (*open)(SampleViewer& viewer);
};

void PrintTo(const DialogRow& row, std::ostream* out) {
    *out << row.name;
}

/// Opens a settings dialog by its entry in the "Settings" menu.
template<int rank>
void openSettings(SampleViewer& viewer) {
    for (const auto* type : CAppPaged::GlobalSettingsType::all()) {
        if (type->rank() == rank) {
            type->open(&viewer.frame());
        }
    }
}

template<int id>
void sendTo(SampleViewer& viewer) {
    viewer.command(id);
}

void openServers(SampleViewer& viewer) {
    ServersSetting::set({ServersSetting::defaultHost(), QStringLiteral("maps.example.org:8080")});
    openSettings<CAppPaged::GlobalSettingsType::kRankServers>(viewer);
}

void openPositionSource(SampleViewer& viewer) {
    PositionSourceSetting::choose(QStringLiteral("serial:/dev/ttyUSB0@9600"));
    PositionSourceSetting::apply(viewer.receiver());
    FakeSource::send("$GPRMC,183000,A,4130.000,N,10515.000,W,0,0,150607,,\r\n$GPGSV,1\r\n");
    openSettings<CAppPaged::GlobalSettingsType::kRankGpsSource>(viewer);
    PositionSourceSetting::choose(QString());
    PositionSourceSetting::apply(viewer.receiver());
}

void openRename(SampleViewer& viewer) {
    CDlgRename(QStringLiteral("Weather")).run(&viewer.frame());
}

void openPageTypes(SampleViewer& viewer) {
    viewer.application().addPage(&viewer.frame());
}

void openMarks(SampleViewer& viewer) {
    CMarkManager& marks = viewer.application().marks();
    marks.add({37.76, -122.51}, QStringLiteral("Ocean Beach"));
    marks.setTarget(marks.add({37.81, -122.48}, QStringLiteral("Golden Gate, middle of the span")));
    marks.add({36.6, -121.9}, QStringLiteral("Monterey"));
    viewer.command(kMarks);
    marks.clear();
}

void openPastStorm(SampleViewer& viewer) {
    PastStormChoice choice{*readReplay(QStringLiteral("2021-12-11T03:00Zx10"))};
    PastStormDialog(choice).run(&viewer.frame());
}

WarningText tornado() {
    WarningText warning;
    warning.event = QStringLiteral("Tornado Warning");
    warning.office = QStringLiteral("NWS San Francisco CA");
    warning.headline = QStringLiteral("Tornado Warning issued May 19 at 5:40AM PDT until May 19 at "
                                      "6:15AM PDT by NWS San Francisco CA");
    warning.text = QStringLiteral(
        "At 540 AM PDT, a severe thunderstorm capable of producing a tornado was located near Half "
        "Moon Bay, moving east at 25 mph.\n\nHAZARD...Tornado.\n\nSOURCE...Radar indicated "
        "rotation."
        "\n\nIMPACT...Flying debris will be dangerous to those caught without shelter."
    );
    warning.instruction = QStringLiteral("TAKE COVER NOW! Move to a basement or an interior room.");
    warning.end = fromCalendar({2019, 5, 19, 6, 15});
    return warning;
}

void openWarnings(SampleViewer& viewer) {
    WarningText thunderstorm;
    thunderstorm.event = QStringLiteral("Severe Thunderstorm Warning");
    thunderstorm.headline =
        QStringLiteral("Severe Thunderstorm Warning until May 19 at 6:30AM PDT");
    thunderstorm.end = fromCalendar({2019, 5, 19, 6, 30});
    WarningText squall;
    squall.event = QStringLiteral("Snow Squall Warning");
    squall.end = fromCalendar({2019, 5, 19, 5, 55});
    WarningsDialog({tornado(), thunderstorm, squall}).run(&viewer.frame());
}

void openWarningText(SampleViewer& viewer) {
    WarningTextDialog(tornado()).run(&viewer.frame());
}

constexpr DialogRow kDialogs[] = {
    {KeysDialog::kTemplate, "keys", "Keys", sendTo<kShowKeys>},
    {103, "about", "About Raincast", sendTo<kAbout>},
    {CDlgItemTypeSelect::kTemplate, "item_types", "Select Display Item", sendTo<kAddItem>},
    {CDlgItemTypeSelect::kTemplate, "page_types", "Select Page Type", openPageTypes},
    {CDlgStation::kTemplate, "stations", "Weather Station", sendTo<kAllStations>},
    {CDlgStation::kTemplate, "stations_nearby", "Weather Station", sendTo<kNearbyStations>},
    {SaveDialog::kTemplate, "save_picture", "Save Picture", sendTo<kSavePicture>},
    {AlongDialog::kTemplate, "take_along", "Take Along", sendTo<kTakeAlong>},
    {MarksDialog::kTemplate, "marks", "Marks", openMarks},
    {GoToDialog::kTemplate, "go_to_position", "Go to Position", sendTo<kGoToPosition>},
    {CDlgRename::kTemplate, "add_mark", "Add Mark", sendTo<kAddMark>},
    {CAppPaged::CDlgPages::kTemplate, "pages", "Pages", sendTo<kPages>},
    {CDlgRename::kTemplate, "rename", "Rename", openRename},
    {kAnimationDialog, "animation", "Animation", sendTo<kAnimation>},
    {kLayersDialog, "layers", "Radar Layers", sendTo<kLayers>},
    {kStorageDialog, "storage", "Radar Image Storage", sendTo<kStorage>},
    {CUnits::CDlgUnits::kTemplate, "units", "Units",
     openSettings<CAppPaged::GlobalSettingsType::kRankUnits>},
    {COverlayGPSPosition::CDlgSetup::kTemplate, "gps_vector", "GPS Vector",
     openSettings<CAppPaged::GlobalSettingsType::kRankGpsOverlay>},
    {PositionSourceDialog::kTemplate, "position_source", "GPS Source", openPositionSource},
    {kServersDialog, "servers", "Servers", openServers},
    {DetailDialog::kTemplate, "detail", "Detail",
     openSettings<CAppPaged::GlobalSettingsType::kRankDetail>},
    {WarningsDialog::kTemplate, "warnings", "Warnings", openWarnings},
    {WarningTextDialog::kTemplate, "warning_text", "Warning", openWarningText},
    {PastStormDialog::kTemplate, "past_storm", "Past Storm", openPastStorm},
};

/// What differs from machine to machine: waits for the amount of files, and writes another.
void steady(QDialog& dialog, const QString& label, const QString& text) {
    if (auto* const amount = dialog.findChild<QLabel*>(label)) {
        EXPECT_TRUE(QTest::qWaitFor([amount] { return amount->text().contains(u'('); }));
        amount->setText(text);
        fitLabel(*amount);
    }
}

void steady(QDialog& dialog) {
    const QString some = Text::dataSize(31'000'000);
    const QString room = Text::dataSize(12'000'000'000);
    steady(
        dialog, QStringLiteral("1076"),
        Text::tr("%1, %2 (%3 free)").arg(Text::counted("%n files", "%n file", 1204), some, room)
    );
    steady(
        dialog, QStringLiteral("1104"),
        Text::tr("%1, about %2 (%3 free)")
            .arg(Text::counted("%n sites", "%n site", 3), Text::dataSize(1'000'000), room)
    );
}

void steadyPath(QDialog& dialog) {
    auto* const path = dialog.findChild<QLineEdit*>();
    if (path != nullptr && dialog.windowTitle() == said("Save Picture")) {
        path->setText(QStringLiteral("/home/skipper/mux.png"));
    }
}

class DialogsLook : public GoldenTest, public testing::WithParamInterface<DialogRow> {};

TEST_P(DialogsLook, IsAsItWas) {
    const DialogRow& row = GetParam();
    SampleViewer viewer;
    DialogScript script;
    script.expect(said(row.caption), [&row](QDialog& dialog) {
        steady(dialog);
        steadyPath(dialog);
        look(row.name, dialog);
    });
    row.open(viewer);
}

/// What a reader of the screen and the keyboard need: names, roles, and letters of their own.
void expectTold(const QDialog& dialog) {
    constexpr QAccessible::Role kRoles[] = {
        QAccessible::Button,   QAccessible::CheckBox, QAccessible::EditableText,
        QAccessible::ComboBox, QAccessible::List,
    };
    std::map<QChar, std::string> letters;
    const auto take = [&letters](const QString& text) {
        const auto [taken, isNew] = letters.emplace(mnemonicOf(text), text.toStdString());
        EXPECT_TRUE(isNew) << text.toStdString() << " has the letter of " << taken->second;
        EXPECT_FALSE(taken->first.isNull()) << text.toStdString() << " has no letter";
    };
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        const auto* const button = qobject_cast<const QAbstractButton*>(widget);
        const auto* const label = qobject_cast<const QLabel*>(widget);
        if (!widget->isVisibleTo(&dialog)) {
            continue;
        }
        if (widget->focusPolicy() != Qt::NoFocus || button != nullptr) {
            auto* const seen = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(seen, nullptr);
            const std::string which = widget->metaObject()->className() + std::string(" ") +
                                      widget->objectName().toStdString();
            EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty()) << which;
            EXPECT_THAT(kRoles, testing::Contains(seen->role())) << which;
        }
        if (button != nullptr && !button->text().isEmpty()) {
            take(button->text());
        }
        if (label != nullptr && label->buddy() != nullptr && label->text().contains(u'&')) {
            take(label->text());
        }
    }
}

TEST_P(DialogsLook, TellsWhatIsInIt) {
    SampleViewer viewer;
    DialogScript script;
    script.expect(said(GetParam().caption), expectTold);
    GetParam().open(viewer);
}

TEST_F(GoldenTest, TheMapOfTheStations) {
    SampleViewer viewer;
    DialogScript script;
    script.expect(said("Weather Station"), [](QDialog& dialog) {
        QTest::keyClick(dialog.findChild<QPushButton*>(QStringLiteral("1092")), Qt::Key_Space);
        look("stations_map", dialog);
    });
    viewer.command(kAllStations);
}

INSTANTIATE_TEST_SUITE_P(All, DialogsLook, testing::ValuesIn(kDialogs), [](const auto& row) {
    return std::string(row.param.name);
});

TEST(DialogRows, EveryDialogHasOne) {
    for (const int published : publishedDialogTemplates()) {
        const bool looked = std::any_of(
            std::begin(kDialogs), std::end(kDialogs),
            [published](const DialogRow& row) { return row.dialogTemplate == published; }
        );
        EXPECT_TRUE(looked) << "Nobody looks at dialog " << published << ": give it a row.";
    }
}

} // namespace
} // namespace raincast::test
