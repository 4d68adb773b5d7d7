// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "core/file_descriptor.h"
#include "position/navigator/navigator_home.h"
#include "position/navigator/navigator_local_port.h"
#include "position/navigator/navigator_waiting.h"
#include "support/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <functional>
#include <thread>

namespace raincast {
namespace {

using std::chrono::milliseconds;

constexpr NavigatorPort::Message kMessage{0x0400, 16, 0x8004};

/// The hook of waits for as long as it lives.
class WaitingHook {
public:
    explicit WaitingHook(NavigatorWaiting::Hook hook) {
        NavigatorWaiting::useHook(std::move(hook));
    }
    ~WaitingHook() { NavigatorWaiting::useHook({}); }
    WaitingHook(const WaitingHook&) = delete;
    WaitingHook& operator=(const WaitingHook&) = delete;
};

/// A socket that others connect to; what it does with them runs beside the test.
class Peer {
public:
    explicit Peer(const QString& path, int backlog = 5)
        : m_listening(::socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, qPrintable(path), sizeof address.sun_path - 1);
        const auto* const any = reinterpret_cast<const sockaddr*>(&address);
        EXPECT_EQ(::bind(m_listening.get(), any, sizeof address), 0);
        EXPECT_EQ(::listen(m_listening.get(), backlog), 0);
    }
    ~Peer() { join(); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    void serve(const std::function<void(int connection)>& with) {
        m_thread = std::thread([this, with] {
            const FileDescriptor connection(::accept(m_listening.get(), nullptr, nullptr));
            with(connection.get());
        });
    }
    void join() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }
    void accept() { m_connection = FileDescriptor(::accept(m_listening.get(), nullptr, nullptr)); }
    void close() { m_connection.reset(); }
    [[nodiscard]] int connection() const { return m_connection.get(); }

private:
    FileDescriptor m_listening;
    FileDescriptor m_connection;
    std::thread m_thread;
};

std::string receive(int connection, std::size_t size) {
    std::string bytes(size, '\0');
    const auto count = ::recv(connection, bytes.data(), size, MSG_WAITALL);
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

void send(int connection, std::string_view bytes) {
    EXPECT_EQ(
        ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL),
        static_cast<ssize_t>(bytes.size())
    );
}

class NavigatorLocalPortTest : public testing::Test {
protected:
    NavigatorHome home;
    const QString socket = home.path("run/Window");
    LocalNavigatorPort port{milliseconds{200}};

    std::unique_ptr<NavigatorPort::Window> find() { return port.findWindow("Window"); }
    [[nodiscard]] QString lockFile() const { return home.path("run/Mutex"); }
};

TEST_F(NavigatorLocalPortTest, NobodyThereIsNoWindowAndLeavesNothing) {
    EXPECT_FALSE(find());
    EXPECT_EQ(namesIn(home.path("run")), "");
}

TEST_F(NavigatorLocalPortTest, WithoutAFolderOfTheUsersThereIsNothing) {
    for (const char* folder : {"", "run", "/nonesuch"}) {
        qputenv("XDG_RUNTIME_DIR", folder);
        EXPECT_FALSE(find()) << folder;
        EXPECT_FALSE(port.createMutex("Mutex")) << folder;
    }
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_FALSE(find());
    EXPECT_FALSE(port.createMutex("Mutex"));
}

TEST_F(NavigatorLocalPortTest, APathThatNoSocketCanHaveIsNoWindow) {
    const Peer peer(socket);
    EXPECT_FALSE(port.findWindow(QString(200, 'x')));
    EXPECT_TRUE(find());
}

TEST_F(NavigatorLocalPortTest, ASocketThatACrashLeftIsNoWindow) {
    { const Peer peer(socket); }
    EXPECT_EQ(namesIn(home.path("run")), "Window");
    EXPECT_FALSE(find());
    writeFile(home.path("run/Other"));
    EXPECT_FALSE(port.findWindow("Other"));
}

TEST_F(NavigatorLocalPortTest, AProgramThatAcceptsNobodyIsNotWaitedFor) {
    const Peer peer(socket, 0);
    std::vector<std::unique_ptr<NavigatorPort::Window>> windows;
    do {
        windows.push_back(find());
    } while (windows.back() && windows.size() < 100);
    EXPECT_LT(windows.size(), 100U);
}

TEST_F(NavigatorLocalPortTest, AMessageIs12BytesAndItsAnswer4) {
    Peer peer(socket);
    std::string received;
    peer.serve([&received](int connection) {
        received = receive(connection, 12);
        send(connection, {"\x0C\x02\x01\x80", 4});
        received += receive(connection, 12);
        send(connection, {"\0\0\0\0", 4});
    });
    const auto window = find();
    ASSERT_TRUE(window);
    EXPECT_EQ(window->send(kMessage), 0x8001020CU);
    EXPECT_EQ(window->send({1, 2, 3}), 0U);
    peer.join();
    EXPECT_EQ(
        QByteArray::fromStdString(received).toHex(), "000400001000000004800000"
                                                     "010000000200000003000000"
    );
}

TEST_F(NavigatorLocalPortTest, APostedMessageIsNotWaitedFor) {
    Peer peer(socket);
    const auto window = find();
    peer.accept();
    window->post({16, 0, 0});
    EXPECT_EQ(
        QByteArray::fromStdString(receive(peer.connection(), 12)).toHex(),
        "100000000000000000000000"
    );
    EXPECT_TRUE(window->exists());
}

TEST_F(NavigatorLocalPortTest, AnAnswerMayComeInPieces) {
    Peer peer(socket);
    peer.serve([](int connection) {
        receive(connection, 12);
        for (const char* byte : {"\1", "\2", "\3", "\4"}) {
            send(connection, byte);
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(find()->send(kMessage), 0x04030201U);
}

TEST_F(NavigatorLocalPortTest, AWindowExistsAsLongAsTheOtherEndKeepsIt) {
    Peer peer(socket);
    const auto window = find();
    peer.accept();
    EXPECT_TRUE(window->exists());
    peer.close();
    EXPECT_FALSE(window->exists());
    EXPECT_EQ(window->send(kMessage), std::nullopt);
    window->post(kMessage);
}

TEST_F(NavigatorLocalPortTest, TheEndOfTheOtherEndEndsTheWait) {
    LocalNavigatorPort patient; // with the usual limit
    for (const std::string& part : {std::string(), std::string("\1\2\3")}) {
        Peer peer(socket);
        peer.serve([&part](int connection) {
            receive(connection, 12);
            send(connection, part);
        });
        const auto window = patient.findWindow("Window");
        EXPECT_EQ(window->send(kMessage), std::nullopt);
        EXPECT_FALSE(window->exists());
        peer.join();
        QFile::remove(socket);
    }
}

TEST_F(NavigatorLocalPortTest, BytesThatNobodyAskedForEndIt) {
    Peer peer(socket);
    const auto window = find();
    peer.accept();
    send(peer.connection(), std::string_view("\0\0\0\0", 4));
    EXPECT_FALSE(window->exists());
    EXPECT_EQ(window->send(kMessage), std::nullopt);
}

TEST_F(NavigatorLocalPortTest, AnAnswerThatDoesNotComeEndsItAfterTheLimit) {
    Peer peer(socket);
    bool busy = false;
    const WaitingHook hook([&busy] {
        busy = BusyGuard::active();
        return true;
    });
    const auto window = find();
    peer.accept();
    EXPECT_EQ(window->send(kMessage), std::nullopt);
    EXPECT_FALSE(window->exists()) << "a late answer would be taken for another one";
    EXPECT_TRUE(busy);
    EXPECT_FALSE(BusyGuard::active());
}

TEST_F(NavigatorLocalPortTest, TheEndOfTheProgramEndsTheWait) {
    LocalNavigatorPort patient;
    const Peer peer(socket);
    const WaitingHook hook([] { return false; });
    EXPECT_EQ(patient.findWindow("Window")->send(kMessage), std::nullopt);
    const auto before = std::chrono::steady_clock::now();
    patient.sleep(std::chrono::minutes{10});
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::minutes{1});
}

TEST_F(NavigatorLocalPortTest, AMutexIsAnEmptyFileOfTheUsers) {
    const auto mutex = port.createMutex("Mutex");
    ASSERT_TRUE(mutex);
    struct stat status {};
    ASSERT_EQ(::stat(qPrintable(lockFile()), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 01600U);
    EXPECT_EQ(status.st_size, 0);
}

TEST_F(NavigatorLocalPortTest, OneWaitsForTheOther) {
    const auto first = port.createMutex("Mutex");
    const auto second = port.createMutex("Mutex");
    ASSERT_TRUE(first->wait());
    int calls = 0;
    const WaitingHook hook([&] {
        EXPECT_TRUE(BusyGuard::active());
        if (++calls == 2) {
            first->release();
        }
        return true;
    });
    EXPECT_TRUE(second->wait());
    EXPECT_EQ(calls, 2);
    second->release();
    EXPECT_TRUE(first->wait());
    EXPECT_FALSE(BusyGuard::active());
}

TEST_F(NavigatorLocalPortTest, TheEndOfOneReleasesIt) {
    auto first = port.createMutex("Mutex");
    const auto second = port.createMutex("Mutex");
    ASSERT_TRUE(first->wait());
    first.reset();
    EXPECT_TRUE(second->wait());
    EXPECT_TRUE(QFile::exists(lockFile()));
}

TEST_F(NavigatorLocalPortTest, AWaitThatTheProgramGivesUpHasNoMutex) {
    const auto first = port.createMutex("Mutex");
    const auto second = port.createMutex("Mutex");
    ASSERT_TRUE(first->wait());
    const WaitingHook hook([] { return false; });
    EXPECT_FALSE(second->wait());
}

TEST_F(NavigatorLocalPortTest, WhatIsNoFileOfTheUsersIsNoMutex) {
    QDir().mkdir(lockFile());
    EXPECT_FALSE(port.createMutex("Mutex"));
    writeFile(home.path("elsewhere"));
    ASSERT_TRUE(QFile::link(home.path("elsewhere"), home.path("run/Link")));
    EXPECT_FALSE(port.createMutex("Link"));
}

} // namespace
} // namespace raincast
