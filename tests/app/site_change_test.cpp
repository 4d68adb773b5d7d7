// SPDX-License-Identifier: MIT
// An update that takes another site because the view has moved there says so.
#include "app/viewer_harness.h"
#include "radar/catalogue/sites.h"
#include "stations/site_change_line.h"
#include "support/pointer.h"

#include <QLabel>
#include <QPushButton>

namespace raincast {
namespace {

class SiteChangeTest : public test::ViewerHarness {
protected:
    SiteChangeTest() { options.siteId = "MUX"; }

    /// The button of the line; null while there is none.
    static QPushButton* backButton(Viewer& viewer) {
        test::settle();
        for (auto* button : viewer.window()->client()->findChildren<QPushButton*>()) {
            if (button->text().startsWith(QStringLiteral("&Back to ")) && button->isVisible()) {
                return button;
            }
        }
        return nullptr;
    }
    /// Moves the view to another site, whose radar is served, and updates.
    QString goAway(Viewer& viewer) {
        CItemWeather& item = itemOf(viewer);
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(item.command(kZoomIn, clicked));
        }
        for (int i = 0; i < 400 && item.centreOnImage(); ++i) {
            item.keyDown(Qt::Key_Right);
        }
        const GeoPosition centre = item.centrePosition();
        const QString site = NearestSite(centre.latitude, centre.longitude)->toString();
        EXPECT_NE(site, QStringLiteral("MUX"));
        test::publishLayers(server, site);
        test::publishFrames(server, {"20190519_0558"}, site);
        EXPECT_TRUE(item.command(kUpdate, clicked));
        finish(viewer);
        EXPECT_EQ(item.state().siteId, site);
        return site;
    }
};

TEST_F(SiteChangeTest, ALineSaysItAndGoesBack) {
    run([this](Viewer& viewer) {
        EXPECT_EQ(backButton(viewer), nullptr);
        const QString site = goAway(viewer);
        QPushButton* const back = backButton(viewer);
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->text(), QStringLiteral("&Back to MUX"));
        const auto* const text = back->parentWidget()->findChild<QLabel*>();
        EXPECT_TRUE(text->text().startsWith("The view has moved to " + site + ", "));
        test::click(*back, back->rect().center());
        finish(viewer);
        EXPECT_EQ(itemOf(viewer).state().siteId, QStringLiteral("MUX"));
        EXPECT_EQ(backButton(viewer), nullptr);
        EXPECT_TRUE(itemOf(viewer).centreOnImage().has_value());
    });
}

TEST_F(SiteChangeTest, ASiteThatTheUserChoseIsNoNews) {
    run([this](Viewer& viewer) {
        keyInWindow(viewer, Qt::Key_F5);
        finish(viewer);
        EXPECT_EQ(backButton(viewer), nullptr);
    });
}

} // namespace
} // namespace raincast
