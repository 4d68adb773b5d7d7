// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QThread>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <iostream>
#include <random>

namespace raincast::test {

/// Kills programs at moments that chance chooses, so many times, or more often with RAINCAST_LONG
/// in the environment. Prints the seed; RAINCAST_SEED repeats it.
class Killing {
public:
    static constexpr int kDeadline = 60'000; ///< milliseconds

    Killing(int kills, int manyKills)
        : m_kills(qEnvironmentVariableIsSet("RAINCAST_LONG") ? manyKills : kills) {
        const QString given = qEnvironmentVariable("RAINCAST_SEED");
        const unsigned seed = given.isEmpty() ? std::random_device()() : given.toUInt();
        std::cout << "RAINCAST_SEED=" << seed << '\n';
        m_random.seed(seed);
    }
    ~Killing() {
        std::cout << m_done << " kills, " << m_missed << " too late\n";
        EXPECT_TRUE(m_done == m_kills || testing::Test::HasFailure()) << "it ended too soon";
    }
    Killing(const Killing&) = delete;
    Killing& operator=(const Killing&) = delete;

    /// Whether there is one more kill to come. A program that ends too soon again and again counts.
    [[nodiscard]] bool goesOn() const {
        return !testing::Test::HasFailure() && m_done < m_kills && m_missed <= 10 + m_done;
    }
    [[nodiscard]] int done() const { return m_done; }
    [[nodiscard]] unsigned number() { return m_random(); }
    /// 0 to count - 1.
    [[nodiscard]] int below(int count) {
        return static_cast<int>(m_random() % static_cast<unsigned>(count));
    }
    [[nodiscard]] bool oneIn(int count) { return below(count) == 0; }

    /// Waits for at most so many milliseconds, in microseconds that chance chooses.
    void pause(double milliseconds) {
        QThread::usleep(static_cast<unsigned long>(below(static_cast<int>(1000 * milliseconds) + 1))
        );
    }

    /// Kills a program that has been started; false when it had ended before, and well.
    bool kill(QProcess& process) {
        process.kill();
        EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(kDeadline));
        const bool isKilled = process.exitStatus() == QProcess::CrashExit;
        EXPECT_EQ(process.exitCode(), isKilled ? SIGKILL : 0) << "it has ended by itself";
        ++(isKilled ? m_done : m_missed);
        return isKilled;
    }

    /// Of many kills, some fell into the middle of the work.
    void expectSome(int count, const char* what) const {
        std::cout << count << " times " << what << '\n';
        EXPECT_TRUE(count > 0 || m_done < kMany) << what;
    }

private:
    static constexpr int kMany = 100;

    int m_kills;
    int m_done = 0;
    int m_missed = 0;
    std::mt19937 m_random;
};

/// Sees files being made and written in some folders, which are made if they are missing.
class FolderWatch {
public:
    explicit FolderWatch(const QStringList& folders) {
        for (const QString& folder : folders) {
            QDir().mkpath(folder);
            const QByteArray name = QFile::encodeName(folder);
            EXPECT_GE(
                inotify_add_watch(m_events.get(), name.constData(), IN_CREATE | IN_MODIFY), 0
            );
        }
    }
    /// Waits until so much has happened, or nothing does for so many milliseconds.
    void await(int changes, int patience = Killing::kDeadline) const {
        for (int seen = 0; seen < changes;) {
            pollfd waited{m_events.get(), POLLIN, 0};
            if (poll(&waited, 1, patience) <= 0) {
                return;
            }
            alignas(inotify_event) char buffer[sizeof(inotify_event) + NAME_MAX + 1];
            const ssize_t size = read(m_events.get(), buffer, sizeof buffer);
            for (ssize_t at = 0; at < size; ++seen) {
                const auto* const event = reinterpret_cast<const inotify_event*>(buffer + at);
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    }

private:
    FileDescriptor m_events{inotify_init1(IN_CLOEXEC)};
};

/// Starts a program whose complaints are seen.
inline void startForKill(QProcess& process, const QString& program, const QStringList& arguments) {
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    ASSERT_TRUE(process.waitForStarted(Killing::kDeadline));
}

} // namespace raincast::test
