// SPDX-License-Identifier: MIT
#pragma once

#include "position/navigator/navigator_port.h"

namespace raincast {

/// The port of this system (docs/formats/navigator.md). A window is a local socket and a mutex is a
/// locked file, both under their own names in $XDG_RUNTIME_DIR, the user's private folder; without
/// that folder there is neither. Looking for an absent window costs one refused connection and
/// leaves nothing behind.
///
/// While a window or a mutex is waited for the program is busy (NavigatorWaiting).
class LocalNavigatorPort : public NavigatorPort {
public:
    /// A program that lives but does not answer would hold up this one for ever. After this time it
    /// counts as gone.
    static constexpr std::chrono::milliseconds kAnswerLimit{10'000};

    explicit LocalNavigatorPort(std::chrono::milliseconds answerLimit = kAnswerLimit)
        : m_answerLimit(answerLimit) {}

    [[nodiscard]] std::unique_ptr<Window> findWindow(const QString& windowClass) override;
    [[nodiscard]] std::unique_ptr<Mutex> createMutex(const QString& name) override;
    void startProgram(const QString& path) override;
    void sleep(std::chrono::milliseconds duration) override;

private:
    std::chrono::milliseconds m_answerLimit;
};

} // namespace raincast
