// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

namespace raincast {

/// What the navigator link needs of the system to meet another program: to find that program's
/// window and send it messages, a mutex between processes, to start a program, and to let time
/// pass. LocalNavigatorPort is the real one; tests put their own in its place.
class NavigatorPort {
public:
    /// What a window is sent; the meaning is the two programs' own.
    struct Message {
        std::uint32_t message = 0;
        std::uint32_t first = 0;
        std::uint32_t second = 0;

        friend bool operator==(const Message&, const Message&) = default;
    };

    /// A window of another program. The program may end, and its window with it, at any time.
    class Window {
    public:
        virtual ~Window() = default;

        /// Whether it still is a window.
        [[nodiscard]] virtual bool exists() = 0;

        /// Sends a message and waits until it has been handled; returns what its handler returned.
        /// Empty when the window has gone, or goes before it answers.
        [[nodiscard]] virtual std::optional<std::uint32_t> send(const Message& message) = 0;

        /// Sends a message and does not wait. One that does not arrive is lost.
        virtual void post(const Message& message) = 0;
    };

    /// A named lock that all programs share. Ending it releases it.
    class Mutex {
    public:
        virtual ~Mutex() = default;

        /// Waits until it is this program's, without limit of time. False only when it cannot be
        /// locked at all, or when this program is to end.
        [[nodiscard]] virtual bool wait() = 0;

        virtual void release() = 0;
    };

    virtual ~NavigatorPort() = default;

    /// The main window of the class; null without one.
    [[nodiscard]] virtual std::unique_ptr<Window> findWindow(const QString& windowClass) = 0;

    /// The mutex of that name, made if it does not exist yet; not waited for. Null when that fails.
    [[nodiscard]] virtual std::unique_ptr<Mutex> createMutex(const QString& name) = 0;

    /// Starts a program, without arguments, that lives on by itself. Says nothing of a failure.
    virtual void startProgram(const QString& path) = 0;

    virtual void sleep(std::chrono::milliseconds duration) = 0;

    /// The one in use: the system's until another one is set.
    [[nodiscard]] static NavigatorPort& current();

    /// Puts a port in use for the whole program; null puts the system's back. The port is borrowed.
    /// Change it while nothing is linked.
    static void use(NavigatorPort* port);
};

} // namespace raincast
