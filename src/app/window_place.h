// SPDX-License-Identifier: MIT
#pragma once

#include "persist/persistant_data.h"

#include <QSize>
#include <QString>

class QWidget;

namespace raincast {

/// Where the main window was left: its size, its place and whether it filled the screen.
class WindowPlace {
public:
    class Persistant;

    static Persistant settings;

    /// Gives a window that is not shown yet the size `asked`, for this run only; if that is empty,
    /// the place in the settings; without one, 640 × 640 pixels or, if that is less, the screen's
    /// size. A place that is no longer on a screen is moved onto one.
    static void restore(QWidget& window, const QSize& asked);

    /// Remembers a window's place in the settings.
    static void keep(const QWidget& window);
};

/// The settings record "CWindowPlace".
class WindowPlace::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CWindowPlace") {}

    /// "geometry": QWidget::saveGeometry() as base64; empty until a window was shown.
    QString geometry;

protected:
    void exchange(SettingsExchange& values) override;
};

} // namespace raincast
