// SPDX-License-Identifier: MIT
#include "map/dlg_gps_vector.h"
#include "page/global_settings_type.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"

#include <QLineEdit>

#include <limits>

namespace raincast {
namespace {

using test::DialogScript;

const QString kCaption = QStringLiteral("GPS Vector");

QLineEdit& field(QDialog& dialog) {
    return *dialog.findChild<QLineEdit*>();
}

void type(QDialog& dialog, const char* text) {
    field(dialog).selectAll();
    QTest::keyClick(&field(dialog), Qt::Key_Delete);
    QTest::keyClicks(&field(dialog), QString::fromLatin1(text));
    QTest::keyClick(&dialog, Qt::Key_Return);
}

class DlgGpsVectorTest : public test::GuiTest {
protected:
    ~DlgGpsVectorTest() override {
        COverlayGPSPosition::setVectorScale(COverlayGPSPosition::kUsualVectorScale);
    }
    static int run(const DialogScript::Step& step) {
        DialogScript script;
        script.expect(kCaption, step);
        return COverlayGPSPosition::CDlgSetup().run(nullptr);
    }
};

TEST_F(DlgGpsVectorTest, ShowsWholeMinutesAndNothingForNone) {
    struct Row {
        float scale;
        const char* text;
    };
    const Row rows[] = {
        {5, "5"},
        {0, ""},
        {0.9F, ""},
        {7.9F, "7"},
        {2147483008.0F, "2147483008"},
        {std::numeric_limits<float>::max(), "2147483647"}};
    for (const Row& row : rows) {
        COverlayGPSPosition::setVectorScale(row.scale);
        run([&row](QDialog& dialog) { EXPECT_EQ(field(dialog).text().toStdString(), row.text); });
        EXPECT_EQ(COverlayGPSPosition::vectorScale(), row.scale) << "cancelled";
    }
}

TEST_F(DlgGpsVectorTest, TakesAWholeNumber) {
    struct Row {
        const char* text;
        float scale;
    };
    const Row rows[] = {
        {"12", 12},  {"2.9", 2},         {"", 0},     {"0", 0},
        {"many", 0}, {" +8 minutes", 8}, {"-0.5", 0}, {"99999999999", 2147483648.0F}};
    for (const Row& row : rows) {
        COverlayGPSPosition::setVectorScale(5);
        EXPECT_EQ(run([&row](QDialog& dialog) { type(dialog, row.text); }), Dialog::kOk);
        EXPECT_EQ(COverlayGPSPosition::vectorScale(), row.scale) << row.text;
    }
}

TEST_F(DlgGpsVectorTest, ANumberBelowZeroKeepsItOpen) {
    for (const char* const text : {"-1", "-99999999999"}) {
        const int result = run([text](QDialog& dialog) {
            type(dialog, text);
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_EQ(COverlayGPSPosition::vectorScale(), 5);
        });
        EXPECT_EQ(result, Dialog::kCancel);
    }
    const int result = run([](QDialog& dialog) {
        type(dialog, "-1");
        type(dialog, "3");
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(COverlayGPSPosition::vectorScale(), 3);
}

TEST_F(DlgGpsVectorTest, TheSettingsMenuOffersIt) {
    const CAppPaged::GlobalSettingsType* found = nullptr;
    for (const auto* type : CAppPaged::GlobalSettingsType::all()) {
        if (type->name() == QStringLiteral("COverlayGPSPosition")) {
            found = type;
        }
    }
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->caption(), kCaption);
    DialogScript script;
    script.expect(kCaption, [](QDialog& dialog) { type(dialog, "30"); });
    found->open(nullptr);
    EXPECT_EQ(COverlayGPSPosition::vectorScale(), 30);
}

} // namespace
} // namespace raincast
