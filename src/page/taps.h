// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"

#include <QPoint>

#include <functional>
#include <memory>
#include <optional>

namespace raincast {

/// How far from where it is meant a finger may come down, and how far it trembles, in device
/// pixels: 6, on a screen of high resolution twice as many.
[[nodiscard]] int fingerTremble();

/// Tells taps from drags, and single ones from the first half of a double press. Places are device
/// pixels. A finger that trembles still taps.
class Taps {
public:
    /// `single` hears of a tap that no second press has followed.
    explicit Taps(std::function<void(QPoint)> single);

    /// Something is put down.
    void pressed(QPoint place);
    /// Whether what is lifted was a tap.
    [[nodiscard]] bool lifted(QPoint place);
    /// Waits whether a tap stays single: for the interval of a double press.
    void awaitSecond(QPoint place);
    /// The press was lost, or was the second one: nothing of it is a single tap.
    void ended();

private:
    std::function<void(QPoint)> m_single;
    std::unique_ptr<Alarm> m_interval;
    std::optional<QPoint> m_pressed;
    QPoint m_tapped;
};

} // namespace raincast
