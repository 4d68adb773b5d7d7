// SPDX-License-Identifier: MIT
#pragma once

#include "position/source/position_source_address.h"

#include <QString>

#include <optional>

namespace raincast {

class PositionReceiver;

/// The source of positions that the user wants, as PositionSourceAddress::parse reads it; an empty
/// text means none. Their choice is kept in the settings as "position_source" of "CPositionSource".
class PositionSourceSetting {
public:
    /// The source in use: this run's if there is one, or else the user's choice.
    [[nodiscard]] static const QString& text();

    /// The address of the source in use, empty without one. Fails with the reason when the text is
    /// not an address.
    [[nodiscard]] static tl::expected<std::optional<PositionSourceAddress>, QString> address();

    /// Keeps the user's choice. It replaces a source that was meant for this run only.
    static void choose(const QString& text);

    /// A source for this run, never saved; an empty text: none but the user's choice.
    static void useForThisRun(const QString& text);
    [[nodiscard]] static bool isForThisRun();

    /// Has the receiver read the source in use, or nothing if there is none or its text is not an
    /// address. A receiver that does so already is not disturbed.
    static void apply(PositionReceiver& receiver);

private:
    class Persistant;
};

} // namespace raincast
