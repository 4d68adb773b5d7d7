// SPDX-License-Identifier: MIT
#pragma once

#include "reading/radar_reading.h"
#include "weather/item_weather.h"

namespace raincast {

/// Reading a radar item's picture (reading/radar_reading.h): hands it what the item shows, and what
/// the user does.
class CItemWeather::Reading {
public:
    /// The item is borrowed.
    explicit Reading(CItemWeather& item) : m_item(item) {}

    void draw(QPainter& painter) { m_reading.draw(painter, sight()); }
    /// The entries of the reading submenu; false for any other command.
    bool command(int id);
    void prepareMenu(QMenu& menu) const;
    /// What the menu of a place begins with.
    [[nodiscard]] QString heading(QPoint place) const;

    /// Places are pixels of the page.
    void pointerMoved(QPoint place) { show(m_reading.pointerMoved(place)); }
    void pointerRested(QPoint place) { show(m_reading.pointerRested(place)); }
    void pointerLeft() { show(m_reading.pointerLeft()); }
    /// Whether a tap meant anything here.
    bool tapped(QPoint place);
    /// A second press is a tap as well while something is under way; false otherwise.
    bool pressedAgain(QPoint place);
    /// Esc ends, Return takes the middle for a point.
    bool key(int key);
    /// Ends measuring or tracking; false if neither is under way.
    bool end();

    /// Whether the loop rests because a storm is touched in one of its frames; shows that frame.
    /// True, too, asks for a painting when `changed` is set.
    struct Held {
        bool holds = false;
        bool changed = false;
    };
    [[nodiscard]] Held holdFrame();
    [[nodiscard]] bool wordsChanged() const;
    /// Whether the user's position has a part in what is drawn.
    [[nodiscard]] bool readsPosition() const;

private:
    [[nodiscard]] RadarSight sight() const;
    void trackStorm();
    void show(bool changed);

    CItemWeather& m_item;
    RadarReading m_reading;
};

} // namespace raincast
