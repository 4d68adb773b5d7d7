// SPDX-License-Identifier: MIT
#pragma once

#include "app/temporary_home.h"
#include "gps/navigator_link.h"
#include "gps/navigator_port.h"
#include "platform/registry_store.h"
#include "support/files.h"

#include <QDir>
#include <QtEndian>

#include <bit>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace raincast {

/// The 64 bytes of a position in the shared file, spelled out.
struct PositionRecord {
    double latitude = 0;
    double longitude = 0;
    double course = 0;
    double speed = 0;
    double altitude = 0;
    std::uint32_t unixSeconds = 0;
    std::uint32_t valid = 0;
    double extra1 = 0;
    double extra2 = 0;

    [[nodiscard]] QByteArray bytes() const {
        QByteArray bytes;
        const auto append = [&bytes](auto number) {
            for (std::size_t i = 0; i < sizeof number; ++i) {
                bytes.append(static_cast<char>(number >> (8 * i) & 0xFF));
            }
        };
        for (const double number : {latitude, longitude, course, speed, altitude}) {
            append(std::bit_cast<std::uint64_t>(number));
        }
        append(unixSeconds);
        append(valid);
        append(std::bit_cast<std::uint64_t>(extra1));
        append(std::bit_cast<std::uint64_t>(extra2));
        return bytes;
    }
};

/// Folders of its own, and a registry that names one of them for the shared file.
class NavigatorHome : public test::TemporaryHome {
public:
    NavigatorHome() {
        QDir(root()).mkdir("temp");
        setFolder(path("temp"));
    }

    void setFolder(const QString& folder) const {
        RegistryStore store = RegistryStore::inStandardFolders();
        store.setString(
            RegistryStore::Branch::User, QStringLiteral("Software/Quorvane"),
            QStringLiteral("temp_folder"), folder
        );
        EXPECT_TRUE(store.save(RegistryStore::Branch::User));
    }
    void forgetFolder() const { QFile::remove(userRegistry()); }

    [[nodiscard]] QString sharedFile() const { return path("temp/QVAPI2.dat"); }
};

/// A navigator in this process, in place of the system's port: notes what is asked of it.
class FakeNavigator : public NavigatorPort {
public:
    FakeNavigator() { NavigatorPort::use(this); }
    ~FakeNavigator() override {
        DisconnectNavigator(false);
        NavigatorPort::use(nullptr);
    }

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
