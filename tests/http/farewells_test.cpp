// SPDX-License-Identifier: MIT
#include "http/farewells.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <string>

namespace raincast {
namespace {

using namespace std::chrono_literals;

class FarewellsTest : public ::testing::Test {
protected:
    FarewellsTest() { std::tie(m_server, m_client) = connect(); }

    static std::pair<FileDescriptor, FileDescriptor> connect() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
        return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    }
    [[nodiscard]] bool clientCanSend(const std::string& bytes = "x") const {
        return send(m_client.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) > 0;
    }

    Farewells m_farewells{1, 1s};
    Farewells::Time m_now{1h};
    FileDescriptor m_server;
    FileDescriptor m_client;
};

TEST_F(FarewellsTest, TheClientMaySendOnForAMoment) {
    EXPECT_TRUE(clientCanSend());
    const int socket = m_server.get();
    m_farewells.add(std::move(m_server), m_now);
    char byte = 0;
    EXPECT_EQ(recv(m_client.get(), &byte, 1, 0), 0); // it sees the end
    EXPECT_TRUE(clientCanSend());
    EXPECT_TRUE(m_farewells.read(socket));
    EXPECT_EQ(m_farewells.nextDeadline(), m_now + 1s);
    m_farewells.closeOverdue(m_now + 999ms);
    EXPECT_TRUE(clientCanSend());
    m_farewells.closeOverdue(m_now + 1s);
    EXPECT_FALSE(clientCanSend());
    EXPECT_EQ(m_farewells.nextDeadline(), std::nullopt);
    EXPECT_FALSE(m_farewells.read(socket));
}

TEST_F(FarewellsTest, IsOverWhenTheClientIsDone) {
    const int socket = m_server.get();
    m_farewells.add(std::move(m_server), m_now);
    EXPECT_TRUE(clientCanSend());
    m_client.reset();
    EXPECT_TRUE(m_farewells.read(socket));
    EXPECT_FALSE(m_farewells.read(socket));
}

TEST_F(FarewellsTest, AClientThatIsDoneNeedsNone) {
    EXPECT_TRUE(clientCanSend());
    m_client.reset();
    m_farewells.add(std::move(m_server), m_now);
    EXPECT_EQ(m_farewells.nextDeadline(), std::nullopt);
}

TEST_F(FarewellsTest, NobodyIsHeardForEver) {
    const int socket = m_server.get();
    m_farewells.add(std::move(m_server), m_now);
    const std::string flood(64 * 1024, 'x');
    int sent = 0;
    for (; sent < 100 && clientCanSend(flood); ++sent) {
        m_farewells.read(socket);
    }
    EXPECT_GT(sent, 4);
    EXPECT_LT(sent, 100);
}

TEST_F(FarewellsTest, ThereAreOnlySoMany) {
    auto [server, client] = connect();
    m_farewells.add(std::move(m_server), m_now);
    m_farewells.add(std::move(server), m_now + 1h);
    EXPECT_EQ(m_farewells.nextDeadline(), m_now + 1s);
    char byte = 0;
    EXPECT_EQ(recv(client.get(), &byte, 1, 0), 0);
    EXPECT_EQ(send(client.get(), &byte, 1, MSG_NOSIGNAL), -1);
}

} // namespace
} // namespace raincast
