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

    /// Gives a window that is not shown yet the size asked for, for this run only; or, with an
    /// empty one, the place in the settings; or, if there is none, 640 × 640 pixels or the screen,
    /// whichever is less. A place that is on no screen any more is moved onto one.
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
