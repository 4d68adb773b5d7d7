// SPDX-License-Identifier: MIT
#pragma once

#include "position/navigator/navigator_home.h"
#include "position/navigator/navigator_link.h"
#include "position/navigator/navigator_port.h"
#include "support/files.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace raincast {

/// A navigator in this process, in place of the system's port: notes what is asked of it.
class FakeNavigator : public NavigatorPort {
public:
    FakeNavigator() { NavigatorPort::use(this); }
    ~FakeNavigator() override { NavigatorPort::use(nullptr); }

    NavigatorHome home;
    bool runs = false;
    int runsAfterSleeps = 0; ///< once started: this many sleeps later it runs; 0 means never
    bool hasMutexes = true;
    bool mutexIsFree = true;
    PositionRecord position;
    std::map<std::uint32_t, std::uint32_t> answers; ///< by request; 0 for the others
    bool diesAtNextRequest = false;
    bool writesFile = true;
    std::vector<std::string> calls;
    QByteArray told; ///< the shared file at the latest request 32

    /// What has been noted since the last time.
    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }

    std::unique_ptr<Window> findWindow(const QString& windowClass) override {
        calls.push_back("find " + windowClass.toStdString());
        return runs ? std::make_unique<FakeWindow>(*this) : nullptr;
    }
    std::unique_ptr<Mutex> createMutex(const QString& name) override {
        calls.push_back("mutex " + name.toStdString());
        return hasMutexes ? std::make_unique<FakeMutex>(*this) : nullptr;
    }
    void startProgram(const QString& path) override {
        calls.push_back("start " + path.toStdString());
        m_started = true;
    }
    void sleep(std::chrono::milliseconds duration) override {
        calls.push_back("sleep " + std::to_string(duration.count()));
        runs = runs || (m_started && runsAfterSleeps != 0 && ++m_sleeps >= runsAfterSleeps);
    }

private:
    class FakeWindow : public Window {
    public:
        explicit FakeWindow(FakeNavigator& navigator) : m_navigator(navigator) {}
        bool exists() override { return m_navigator.runs; }
        std::optional<std::uint32_t> send(const Message& message) override {
            return m_navigator.handle(message);
        }
        void post(const Message& message) override {
            m_navigator.calls.push_back("post " + std::to_string(message.message));
        }

    private:
        FakeNavigator& m_navigator;
    };

    class FakeMutex : public Mutex {
    public:
        explicit FakeMutex(FakeNavigator& navigator) : m_navigator(navigator) {}
        bool wait() override {
            m_navigator.calls.emplace_back("wait");
            return m_navigator.mutexIsFree;
        }
        void release() override { m_navigator.calls.emplace_back("release"); }

    private:
        FakeNavigator& m_navigator;
    };

    std::optional<std::uint32_t> handle(const Message& message) {
        EXPECT_EQ(message.message, 0x0400U);
        EXPECT_EQ(message.first, 16U);
        calls.push_back("send " + std::to_string(message.second));
        if (diesAtNextRequest) {
            runs = false;
            return std::nullopt;
        }
        const std::uint32_t answer = answers[message.second];
        if (message.second == 32) {
            told = readFile(home.sharedFile());
        } else if (answer == 0 && writesFile) {
            writeFile(home.sharedFile(), position.bytes());
        }
        return answer;
    }

    bool m_started = false;
    int m_sleeps = 0;
};

} // namespace raincast
