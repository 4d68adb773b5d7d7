// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

class QString;

namespace raincast {

struct PositionSourceAddress;
class Timers;

/// Where a receiver's bytes come from. Runs on the event loop and never blocks; does nothing while
/// the program is busy.
class PositionSource {
public:
    /// Receives the bytes. Inside these calls the source may be closed, but neither opened nor
    /// ended.
    class Sink {
    public:
        virtual ~Sink() = default;

        /// The bytes of one read, at most 64 KiB.
        virtual void received(std::string_view bytes) = 0;

        /// The source could not be opened, or ended by itself, and is closed now; why, in words.
        virtual void broken(const QString& why) = 0;

        /// All there was has been read, and the source is closed now: there is nothing to come.
        virtual void finished() = 0;
    };

    virtual ~PositionSource() = default;

    /// Opens the source, which must be closed. The sink is called with the result, possibly
    /// before this returns. The sink is borrowed until the source is closed.
    virtual void open(Sink& sink) = 0;

    /// Closes the source, whatever its state: the sink hears no more of it.
    virtual void close() = 0;
};

/// The source that an address names, closed. The timers are borrowed.
[[nodiscard]] std::unique_ptr<PositionSource>
makePositionSource(const PositionSourceAddress& address, Timers& timers);

} // namespace raincast
