// SPDX-License-Identifier: MIT
#include "page/global_settings_type.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "units/dlg_units.h"
#include "units/position_format_type.h"
#include "units/scoped_units.h"

#include <QComboBox>
#include <QPushButton>

#include <gmock/gmock.h>

#include <algorithm>

namespace raincast {
namespace {

using test::DialogScript;
using test::ScopedUnits;
using testing::ElementsAre;

const QString kCaption = QStringLiteral("Units");

QComboBox& box(QDialog& dialog, int id) {
    return *dialog.findChild<QComboBox*>(QString::number(id));
}

std::vector<std::string> rows(const QComboBox& box) {
    std::vector<std::string> texts;
    for (int row = 0; row < box.count(); ++row) {
        texts.push_back(box.itemText(row).toStdString());
    }
    return texts;
}

void ok(QDialog& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Return);
}

// As a person selects: by the keys of the list that has the keyboard.
void choose(QDialog& dialog, int id, const QString& text) {
    QComboBox& list = box(dialog, id);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Home);
    for (int most = list.count(); most > 0 && list.currentText() != text; --most) {
        QTest::keyClick(&list, Qt::Key_Down);
    }
    EXPECT_EQ(list.currentText(), text);
}

class DlgUnitsTest : public test::GuiTest {
protected:
    int run(const DialogScript::Step& step) {
        DialogScript script;
        script.expect(kCaption, step);
        return CUnits::CDlgUnits().run(nullptr);
    }

    const ScopedUnits keep;
};

TEST_F(DlgUnitsTest, TheSettingsMenuOffersItFirst) {
    const auto types = CAppPaged::GlobalSettingsType::all();
    ASSERT_FALSE(types.empty());
    EXPECT_EQ(types.front()->name(), kCaption);
    EXPECT_EQ(types.front()->caption(), kCaption);
    DialogScript script;
    script.expect(kCaption);
    types.front()->open(nullptr);
}

TEST_F(DlgUnitsTest, ItsLabelsLeadToTheirLists) {
    run([](QDialog& dialog) {
        EXPECT_EQ(dialog.focusWidget(), &box(dialog, 1140)) << "at the start";
        QTest::keyClick(&dialog, Qt::Key_P, Qt::AltModifier);
        EXPECT_EQ(dialog.focusWidget(), &box(dialog, 1141));
        QTest::keyClick(&dialog, Qt::Key_D, Qt::AltModifier);
        EXPECT_EQ(dialog.focusWidget(), &box(dialog, 1140));
        EXPECT_EQ(
            dialog.findChild<QPushButton*>(QString::number(Dialog::kCancel))->text(),
            QStringLiteral("&Cancel")
        );
    });
}

TEST_F(DlgUnitsTest, OffersAllAndSelectsTheChosen) {
    run([](QDialog& dialog) {
        const QComboBox& units = box(dialog, CUnits::CDlgUnits::kUnits);
        EXPECT_THAT(rows(units), ElementsAre("Mi", "NM", "km", "m", "ft", "yds"));
        EXPECT_EQ(units.currentIndex(), 0);
        const QComboBox& formats = box(dialog, CUnits::CDlgUnits::kPositionFormats);
        EXPECT_THAT(rows(formats), ElementsAre("Degrees", "Deg,Min,Sec", "Deg,Min"));
        EXPECT_EQ(formats.currentText(), QStringLiteral("Deg,Min"));
    });
    const ScopedUnits kYards(CUnits::kYards);
    run([](QDialog& dialog) {
        EXPECT_EQ(box(dialog, CUnits::CDlgUnits::kUnits).currentText(), QStringLiteral("yds"));
    });
}

TEST_F(DlgUnitsTest, OkTakesBothAndTheSpeedFollows) {
    const struct {
        const char* unit;
        const char* speed;
        const char* format;
    } choices[] = {
        {"Mi", "mph", "Degrees"}, {"NM", "kts", "Deg,Min,Sec"}, {"km", "km/h", "Deg,Min"},
        {"m", "m/s", "Degrees"},  {"ft", "mph", "Degrees"},     {"yds", "mph", "Deg,Min"},
        {"Mi", "mph", "Degrees"},
    };
    for (const auto& choice : choices) {
        EXPECT_EQ(
            run([&choice](QDialog& dialog) {
                choose(dialog, CUnits::CDlgUnits::kUnits, choice.unit);
                choose(dialog, CUnits::CDlgUnits::kPositionFormats, choice.format);
                ok(dialog);
            }),
            Dialog::kOk
        );
        const CUnits& units = CUnits::global();
        EXPECT_EQ(units.distanceUnit().toStdString(), choice.unit);
        EXPECT_EQ(units.speedUnit().toStdString(), choice.speed);
        EXPECT_EQ(units.positionFormat->name().toStdString(), choice.format);
    }
}

TEST_F(DlgUnitsTest, OkSetsTheSpeedAlsoWhenNothingElseChanges) {
    CUnits units;
    units.speed = CUnits::kMetresPerSecond;
    units.data = {1, 2, 3};
    CUnits::setGlobal(units);
    EXPECT_EQ(run(ok), Dialog::kOk);
    EXPECT_EQ(CUnits::global().speed, CUnits::kMilesPerHour);
    EXPECT_EQ(CUnits::global().data, units.data);
    EXPECT_EQ(CUnits::global().positionFormat, units.positionFormat);
}

TEST_F(DlgUnitsTest, CancelChangesNothing) {
    CUnits units;
    units.speed = CUnits::kMetresPerSecond;
    CUnits::setGlobal(units);
    EXPECT_EQ(
        run([](QDialog& dialog) {
            choose(dialog, CUnits::CDlgUnits::kUnits, "ft");
            choose(dialog, CUnits::CDlgUnits::kPositionFormats, "Degrees");
            QTest::keyClick(&dialog, Qt::Key_Escape);
        }),
        Dialog::kCancel
    );
    EXPECT_EQ(CUnits::global(), units);
}

} // namespace
} // namespace raincast
