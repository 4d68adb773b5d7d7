// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <concepts>
#include <functional>

namespace raincast {

/// How grave a line of the log is.
enum class LogLevel {
    info,
    warning, ///< something is missing or wrong, and the rest goes on
    error,   ///< what was asked for cannot be done
};

/// Takes lines for the operator, without their line feed. May be called from any thread.
class ServerLog {
public:
    /// Of a function that takes a line, with its level before it or without.
    template<class Take>
    requires(!std::same_as<std::remove_cvref_t<Take>, ServerLog>)
        ServerLog(Take take) { // NOLINT(google-explicit-constructor): it stands for the function
        if constexpr (std::invocable<Take, LogLevel, const QString&>) {
            m_take = std::move(take);
        } else {
            m_take = [take = std::move(take)](LogLevel, const QString& line) { take(line); };
        }
    }

    void operator()(const QString& line) const { m_take(LogLevel::info, line); }
    void warn(const QString& line) const { m_take(LogLevel::warning, line); }
    void error(const QString& line) const { m_take(LogLevel::error, line); }

private:
    std::function<void(LogLevel, const QString&)> m_take;
};

} // namespace raincast
