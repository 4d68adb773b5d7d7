// SPDX-License-Identifier: MIT
#pragma once

#include "position/source/position_source_address.h"

#include <QString>

#include <optional>

namespace raincast {

class PositionReceiver;

/// Which source of positions the user wants, as PositionSourceAddress::parse reads it; an empty
/// text means none. His choice is kept in the settings as "position_source" of "CPositionSource".
class PositionSourceSetting {
public:
    /// What is in use: this run's source if there is one, or else the user's choice.
    [[nodiscard]] static const QString& text();

    /// The address of what is in use. Empty when there is none, and when the text makes no sense:
    /// then `error`, if given, says why.
    [[nodiscard]] static std::optional<PositionSourceAddress> address(QString* error = nullptr);

    /// The user's choice, kept from now on, and applied at once. Replaces a source that was meant
    /// for this run only.
    static void choose(const QString& text);

    /// A source for this run, never saved; an empty text: none but the user's choice.
    static void useForThisRun(const QString& text);
    [[nodiscard]] static bool isForThisRun();

    /// The receiver that reads what is in use; borrowed until another one, or null, takes its
    /// place.
    static void setReceiver(PositionReceiver* receiver);
    [[nodiscard]] static PositionReceiver* receiver();

    /// Has the receiver, if there is one, read what is in use. One that does so already is not
    /// disturbed.
    static void apply();

private:
    class Persistant;
};

} // namespace raincast
