// SPDX-License-Identifier: MIT
#include "app/dlg_about.h"
#include "core/resource_module.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

using test::DialogScript;

const QString kCaption = QStringLiteral("About Raincast");

class AboutTest : public test::GuiTest {
protected:
    AboutTest() {
        // The one that was built stands beside the program.
        built =
            std::make_unique<ResourceModule>(QStringLiteral(RAINCAST_PROGRAM).section('/', 0, -2));
        ResourceModule::use(built.get());
    }
    ~AboutTest() override { ResourceModule::use(nullptr); }

    static QStringList texts(const QDialog& dialog) {
        QStringList found;
        for (const auto* label : dialog.findChildren<QLabel*>()) {
            if (!label->text().isEmpty()) {
                found.append(label->text());
            }
        }
        return found;
    }
    static QPixmap picture(const QDialog& dialog) {
        for (const auto* label : dialog.findChildren<QLabel*>()) {
            if (!label->pixmap(Qt::ReturnByValue).isNull()) {
                return label->pixmap(Qt::ReturnByValue);
            }
        }
        return {};
    }

    std::unique_ptr<ResourceModule> built;
};

TEST_F(AboutTest, ItNamesTheProductAndItsVersion) {
    DialogScript script;
    script.expect(kCaption, [](QDialog& dialog) {
        EXPECT_EQ(
            texts(dialog), QStringList(
                               {"Raincast", "Version 5.2.0, Build 756",
                                "NOAA/NWS NEXRAD via Unidata (AWS Open Data)",
                                "Free software, MIT licence. Maps: GSHHG (LGPL), ETOPO5 (NOAA), "
                                "U.S. Census Bureau, GeoNames (CC BY 4.0)"}
                           )
        );
        EXPECT_FALSE(picture(dialog).isNull());
        auto* const done = dialog.findChild<QPushButton*>();
        ASSERT_NE(done, nullptr);
        done->click();
        EXPECT_FALSE(dialog.isVisible());
    });
    CDlgAbout::show(nullptr);
}

TEST_F(AboutTest, WithoutTheResourceModuleThatIsSaidAndTheIconStandsIn) {
    const QTemporaryDir empty;
    ResourceModule missing(empty.path());
    ResourceModule::use(&missing);
    DialogScript script;
    for (int time = 0; time < 2; ++time) {
        script.expect(QStringLiteral("Error"), [](QDialog& dialog) {
            EXPECT_EQ(
                static_cast<QMessageBox&>(dialog).text(),
                "Failed to load Res.dll\nPlease re-install the software"
            );
        });
        script.expect(kCaption, [](QDialog& dialog) { EXPECT_FALSE(picture(dialog).isNull()); });
        CDlgAbout::show(nullptr);
    }
}

TEST_F(AboutTest, ThePictureComesFromTheModule) {
    ASSERT_TRUE(ResourceModule::current().provides(CDlgAbout::kPictureResource));
    const QImage image(ResourceModule::path("pictures", CDlgAbout::kPictureResource));
    EXPECT_EQ(image.size(), QSize(256, 256));
}

} // namespace
} // namespace raincast
