// SPDX-License-Identifier: MIT
// Going to a position that the user types, from the map's command to the map.
#include "map/go_to_dialog.h"
#include "map_page.h"
#include "support/dialog_script.h"
#include "units/position_format_type.h"
#include "window/commands.h"

#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace raincast {
namespace {

using test::positionOf;

const QString kCaption = QStringLiteral("Go to Position");

class DlgGoToTest : public test::MapTest {
protected:
    DlgGoToTest() {
        view->placeOnEarth();
        view->showPixel({300, 275});
        showPage();
    }

    /// A position is typed over what the dialog proposes; Enter.
    void expectTyping(const QString& position) {
        script.expect(kCaption, [this, position](QDialog& dialog) {
            auto* const edit = dialog.findChild<QLineEdit*>();
            proposed = edit->text();
            EXPECT_EQ(edit->selectedText(), proposed) << "typing replaces it";
            edit->insert(position);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
    }
    /// After a complaint the dialog is still open.
    void expectComplaint(const QString& about) {
        script.expect(kCaption, [about](QDialog& message) {
            const auto labels = message.findChildren<QLabel*>();
            EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&about](const QLabel* label) {
                return label->text().contains(about);
            })) << qPrintable(about);
        });
    }
    void go() { EXPECT_TRUE(view->command(kGoToPosition, clicked)); }

    test::DialogScript script;
    QString proposed;
};

TEST_F(DlgGoToTest, ShowsATypedPosition) {
    const GeoPosition place = positionOf(120, 130);
    expectTyping(QStringLiteral("%1, %2").arg(place.latitude).arg(place.longitude));
    go();
    EXPECT_EQ(view->centrePixel(), (ImagePixel{120, 130}));
}

TEST_F(DlgGoToTest, ProposesWhereTheMapIsInTheChosenFormat) {
    for (const auto* format : CUnits::PositionFormatType::all()) {
        CUnits units;
        units.positionFormat = format;
        CUnits::setGlobal(units);
        view->showPixel({200, 210});
        const GeoPosition centre = view->centrePosition();
        script.expect(kCaption, [this](QDialog& dialog) {
            proposed = dialog.findChild<QLineEdit*>()->text();
        });
        go();
        EXPECT_EQ(proposed, units.formatPosition(centre).trimmed());
        GeoPosition read;
        EXPECT_TRUE(CUnits::parsePosition(proposed, read)) << qPrintable(format->name());
        EXPECT_NEAR(read.latitude, centre.latitude, 1e-4);
        EXPECT_NEAR(read.longitude, centre.longitude, 1e-4);
    }
    SharedMapState::use(CUnits::kMiles);
    CUnits usual;
    usual.positionFormat = &CUnits::PositionFormatType::usual();
    CUnits::setGlobal(usual);
}

TEST_F(DlgGoToTest, StaysOpenOnWhatIsNoPosition) {
    expectTyping(QStringLiteral("the harbour"));
    expectComplaint(QStringLiteral("Not a valid position"));
    go();
    EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275}));
}

TEST_F(DlgGoToTest, UnderstandsPositionsAsPeopleWriteThem) {
    const ImagePixel pixel{125, 150}; // 39.5 N, 103.75 W
    for (const char16_t* text :
         {u"39 30, -103 45", u"39 30 N, 103 45 W", u"N39.5, W103.75", u"39.5, \u2212103.75",
          u"39 30 N 103 45 W", u"39 30 -103 45"}) {
        view->showPixel({300, 275});
        expectTyping(QString::fromUtf16(text));
        go();
        EXPECT_NEAR(view->centrePixel().column, pixel.column, 1)
            << QString::fromUtf16(text).toStdString();
        EXPECT_NEAR(view->centrePixel().row, pixel.row, 1)
            << QString::fromUtf16(text).toStdString();
    }
}

TEST_F(DlgGoToTest, AHalfWithoutANumberIsNeverTakenForZero) {
    for (const char16_t* text : {u"39.5,", u", -103.75", u"39.5, W", u"39.5", u"N, 103.75 W"}) {
        expectTyping(QString::fromUtf16(text));
        expectComplaint(QStringLiteral("Not a valid position"));
        go();
        EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275}));
    }
}

TEST_F(DlgGoToTest, StaysOpenOnAPositionThatIsNotOnTheMap) {
    expectTyping(QStringLiteral("10, 10"));
    expectComplaint(QStringLiteral("not on the map"));
    go();
    EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275}));
}

TEST_F(DlgGoToTest, EndsFollowing) {
    test::publish(200, 210);
    view->follow();
    const GeoPosition place = positionOf(120, 130);
    expectTyping(QStringLiteral("%1, %2").arg(place.latitude).arg(place.longitude));
    go();
    EXPECT_FALSE(view->following());
    EXPECT_EQ(view->centrePixel(), (ImagePixel{120, 130}));
}

TEST_F(DlgGoToTest, DoesNotOpenWithoutAMap) {
    view->takeOffEarth();
    go();
}

} // namespace
} // namespace raincast
