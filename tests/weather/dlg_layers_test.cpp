// SPDX-License-Identifier: MIT
#include "dialog_controls.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "weather/dlg_layers.h"

#include <QComboBox>

namespace raincast {
namespace {

using test::DialogScript;

class DlgLayersTest : public test::GuiTest {
protected:
    /// Runs the dialog; returns which loads it asks for: "b", "r", "br" or "".
    std::string run(const DialogScript::Step& step) {
        DialogScript script;
        script.expect(QStringLiteral("Radar Layers"), step);
        CDlgLayers dialog(m_state, m_layers);
        dialog.run(nullptr);
        return std::string(dialog.basemapsChanged() ? "b" : "") +
               (dialog.radarChanged() ? "r" : "");
    }

    RadarState m_state;
    BasemapLayers m_layers;
};

TEST_F(DlgLayersTest, ShowsWhatIsShown) {
    m_state.product = 5;
    m_layers.rivers = false;
    run([](QDialog& dialog) {
        const auto* products = dialog.findChild<QComboBox*>();
        EXPECT_EQ(products->count(), 7);
        EXPECT_EQ(products->currentText(), QStringLiteral("Velocity"));
        EXPECT_TRUE(test::button(dialog, "Topo Map")->isChecked());
        EXPECT_FALSE(test::button(dialog, "Rivers")->isChecked());
        EXPECT_TRUE(test::button(dialog, "Warnings")->isChecked());
    });
}

TEST_F(DlgLayersTest, EachMapLayerReloadsTheMapsOnly) {
    const std::pair<const char*, bool BasemapLayers::*> rows[] = {
        {"Topo Map", &BasemapLayers::topo},     {"Rivers", &BasemapLayers::rivers},
        {"Counties", &BasemapLayers::counties}, {"Highways", &BasemapLayers::highways},
        {"Cities", &BasemapLayers::cities},
    };
    for (const auto& [text, shown] : rows) {
        m_layers = {};
        EXPECT_EQ(
            run([text = QString(text)](QDialog& dialog) {
                test::check(dialog, text, false);
                test::press(dialog, "OK");
            }),
            "b"
        ) << text;
        EXPECT_FALSE(m_layers.*shown) << text;
    }
}

TEST_F(DlgLayersTest, WarningsUpdateTheRadarOnly) {
    EXPECT_EQ(
        run([](QDialog& dialog) {
            test::check(dialog, "Warnings", false);
            test::press(dialog, "OK");
        }),
        "r"
    );
    EXPECT_FALSE(m_state.showWarnings);
}

struct Change {
    int from;
    int to;
    const char* loads;
};

TEST_F(DlgLayersTest, OnlyLongRangeHasMapsOfItsOwn) {
    for (const Change& row :
         {Change{0, 5, "r"}, Change{0, 2, "br"}, Change{2, 1, "br"}, Change{2, 2, ""},
          Change{6, 3, "r"}}) {
        m_state.product = row.from;
        EXPECT_EQ(
            run([&row](QDialog& dialog) {
                dialog.findChild<QComboBox*>()->setCurrentIndex(row.to);
                test::press(dialog, "OK");
            }),
            row.loads
        ) << row.from
          << " to " << row.to;
        EXPECT_EQ(m_state.product, row.to);
    }
}

TEST_F(DlgLayersTest, CancelChangesNothing) {
    EXPECT_EQ(
        run([](QDialog& dialog) {
            test::check(dialog, "Topo Map", false);
            test::check(dialog, "Warnings", false);
            test::press(dialog, "Cancel");
        }),
        ""
    );
    EXPECT_TRUE(m_layers.topo);
    EXPECT_TRUE(m_state.showWarnings);
}

} // namespace
} // namespace raincast
