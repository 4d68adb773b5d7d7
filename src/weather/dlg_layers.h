// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"
#include "radar/radar_state.h"
#include "window/combo_list.h"
#include "window/dialog.h"

namespace raincast {

/// "Radar Layers": the product and the layers that are shown. Edits state and layers, both
/// borrowed, when it ends with OK, and then says what must be loaded again.
class CDlgLayers : public Dialog {
public:
    CDlgLayers(RadarState& state, BasemapLayers& layers);

    bool onInitialise() override;
    void onOk() override;

    /// After OK: other map layers are shown, or those of another range.
    [[nodiscard]] bool basemapsChanged() const { return m_basemapsChanged; }
    /// After OK: another product, or warnings shown or not.
    [[nodiscard]] bool radarChanged() const { return m_radarChanged; }

private:
    void takeProduct();

    RadarState& m_state;
    BasemapLayers& m_layers;
    ComboList m_products;
    bool m_basemapsChanged = false;
    bool m_radarChanged = false;
};

} // namespace raincast
