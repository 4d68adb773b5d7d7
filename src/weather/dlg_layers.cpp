// SPDX-License-Identifier: MIT
#include "weather/dlg_layers.h"

#include "radar/catalogue/products.h"
#include "weather/weather_dialogs.h"
#include "window/dialog_template.h"

#include <QCheckBox>
#include <QComboBox>

namespace raincast {

namespace {

enum Control {
    kProduct = 1060,
    kTopo = 1061,
    kRivers = 1062,
    kCounties = 1063,
    kHighways = 1064,
    kCities = 1065,
    kWarnings = 1066,
};

const DialogTemplateRecord record{
    {kLayersDialog,
     Text::marked("Radar Layers"),
     {122, 72},
     {
         {kProduct, ControlKind::comboBox, Text::marked("Product"), {4, 4, 114, 14}},
         {kTopo, ControlKind::checkBox, Text::marked("&Topo Map"), {4, 22, 56, 14}},
         {kRivers, ControlKind::checkBox, Text::marked("&Rivers"), {4, 38, 56, 14}},
         {kCounties, ControlKind::checkBox, Text::marked("&Counties"), {4, 54, 56, 14}},
         {kHighways, ControlKind::checkBox, Text::marked("&Highways"), {62, 22, 56, 14}},
         {kCities, ControlKind::checkBox, Text::marked("C&ities"), {62, 38, 56, 14}},
         {kWarnings, ControlKind::checkBox, Text::marked("&Warnings"), {62, 54, 56, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {}},
     },
     {}}};

struct LayerBox {
    int control;
    bool BasemapLayers::*shown;
};

constexpr LayerBox kBoxes[] = {
    {kTopo, &BasemapLayers::topo},         {kRivers, &BasemapLayers::rivers},
    {kCounties, &BasemapLayers::counties}, {kHighways, &BasemapLayers::highways},
    {kCities, &BasemapLayers::cities},
};

} // namespace

CDlgLayers::CDlgLayers(RadarState& state, BasemapLayers& layers)
    : Dialog(kLayersDialog), m_state(state), m_layers(layers) {}

bool CDlgLayers::onInitialise() {
    m_products.attach(*control<QComboBox>(kProduct));
    for (const RadarProduct& product : radarProducts()) {
        m_products.add(Text::of(product.nameText()));
    }
    m_products.select(m_state.product);
    for (const LayerBox& box : kBoxes) {
        control<QCheckBox>(box.control)->setChecked(m_layers.*box.shown);
    }
    control<QCheckBox>(kWarnings)->setChecked(m_state.showWarnings);
    return true;
}

void CDlgLayers::onOk() {
    for (const LayerBox& box : kBoxes) {
        const bool shown = control<QCheckBox>(box.control)->isChecked();
        m_basemapsChanged |= shown != m_layers.*box.shown;
        m_layers.*box.shown = shown;
    }
    const bool warnings = control<QCheckBox>(kWarnings)->isChecked();
    m_radarChanged |= warnings != m_state.showWarnings;
    m_state.showWarnings = warnings;
    takeProduct();
    Dialog::onOk();
}

void CDlgLayers::takeProduct() {
    const int product = m_products.selected();
    if (product < 0 || product == m_state.product) {
        return;
    }
    // The two sizes of map have layers of their own.
    m_basemapsChanged |= ProductRange(product) != ProductRange(m_state.product);
    m_state.product = product;
    m_radarChanged = true;
}

} // namespace raincast
