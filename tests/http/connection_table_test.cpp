// SPDX-License-Identifier: MIT
#include "http/connection_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using namespace std::chrono_literals;
using Phase = ConnectionTable::Phase;

class ConnectionTableTest : public ::testing::Test {
protected:
    static ConnectionLimits limitsOf(int connections, int ofOneClient) {
        ConnectionLimits limits;
        limits.connections = connections;
        limits.connectionsPerClient = ofOneClient;
        return limits;
    }

    /// Connections of one client, each in a phase since now.
    void enter(const std::vector<int>& connections, const std::string& client, Phase phase) {
        for (const int connection : connections) {
            EXPECT_TRUE(m_table.enter(connection, client, m_now).isLetIn);
            m_table.set(connection, phase, m_now);
        }
    }

    /// Who makes room for a new connection of a client, 0 for nobody; -1 when it is not let in.
    int displacedBy(int connection, const std::string& client) {
        const auto admission = m_table.enter(connection, client, m_now);
        EXPECT_TRUE(admission.isLetIn || !admission.displaced);
        m_table.leave(admission.displaced.value_or(0));
        return admission.isLetIn ? admission.displaced.value_or(0) : -1;
    }

    ConnectionTable m_table{limitsOf(4, 3)};
    ConnectionTable::Time m_now{1h};
};

// What docs/server.md promises.
TEST(ConnectionLimitsTest, AreThoseOfAHome) {
    const ConnectionLimits limits;
    EXPECT_EQ(limits.connections, 64);
    EXPECT_EQ(limits.connectionsPerClient, 32);
    EXPECT_EQ(limits.idle, 5s);
    EXPECT_EQ(limits.request, 10s);
    EXPECT_EQ(limits.making, 60s);
    EXPECT_EQ(limits.answer, 30s);
}

TEST_F(ConnectionTableTest, LetsInWhatFits) {
    enter({1, 2, 3}, "a", Phase::making);
    EXPECT_EQ(displacedBy(4, "b"), 0);
    EXPECT_EQ(m_table.size(), 4);
    m_table.leave(2);
    m_table.leave(2);
    EXPECT_EQ(displacedBy(5, "b"), 0);
    EXPECT_EQ(m_table.size(), 4);
}

TEST_F(ConnectionTableTest, OneClientDoesNotHaveAll) {
    enter({1, 2, 3}, "a", Phase::making);
    EXPECT_EQ(displacedBy(4, "a"), -1);
    EXPECT_EQ(m_table.size(), 3);
}

TEST_F(ConnectionTableTest, AClientAtItsLimitDisplacesItsOwnIdleConnection) {
    enter({1}, "b", Phase::waiting);
    enter({2, 3}, "a", Phase::making);
    m_now += 1s;
    enter({4}, "a", Phase::waiting);
    EXPECT_EQ(displacedBy(5, "a"), 4);
    EXPECT_FALSE(m_table.phaseOf(4));
    EXPECT_EQ(m_table.phaseOf(5), Phase::waiting);
}

TEST_F(ConnectionTableTest, IdleConnectionsMakeRoomTheLongestIdleFirst) {
    enter({2}, "b", Phase::waiting);
    m_now += 1s;
    enter({1}, "a", Phase::waiting);
    enter({3}, "c", Phase::making);
    enter({4}, "d", Phase::sending);
    m_now += 1s;
    EXPECT_EQ(displacedBy(5, "e"), 2);
    EXPECT_EQ(displacedBy(6, "f"), 1);
    EXPECT_EQ(m_table.size(), 4);
}

TEST_F(ConnectionTableTest, TheClientWithMostMakesRoom) {
    enter({1}, "a", Phase::waiting);
    enter({2, 3}, "b", Phase::waiting);
    enter({4}, "c", Phase::waiting);
    m_now += 1s;
    EXPECT_EQ(displacedBy(5, "d"), 2);
}

TEST_F(ConnectionTableTest, NobodyIsDisplacedByAClientThatHasAsMany) {
    enter({1, 2}, "a", Phase::making);
    enter({3, 4}, "b", Phase::waiting);
    EXPECT_EQ(displacedBy(5, "a"), -1);
    EXPECT_EQ(displacedBy(5, "c"), 3);
    EXPECT_EQ(displacedBy(6, "c"), 5); // its own: of the others nobody idle has more
    m_table.set(1, Phase::waiting, m_now);
    EXPECT_EQ(displacedBy(7, "c"), 1);
}

TEST_F(ConnectionTableTest, SlowConnectionsMakeRoomWhereNoneIsIdle) {
    enter({1}, "a", Phase::making);
    enter({2}, "b", Phase::sending);
    m_now += 1ms;
    enter({3}, "c", Phase::reading);
    enter({4}, "d", Phase::sending);
    m_now += ConnectionLimits().slow - 2ms;
    EXPECT_EQ(displacedBy(5, "e"), -1);
    m_now += 1ms;
    EXPECT_EQ(displacedBy(5, "e"), 2);
    m_table.set(5, Phase::making, m_now);
    m_now += 1ms;
    EXPECT_EQ(displacedBy(6, "f"), 3);
    m_table.set(6, Phase::making, m_now);
    EXPECT_EQ(displacedBy(7, "g"), 4);
    m_table.set(7, Phase::making, m_now);
    m_now += 1h; // what the server takes for an answer is not the client's
    EXPECT_EQ(displacedBy(8, "h"), -1);
}

TEST_F(ConnectionTableTest, OfBusyClientsTheOneWithTwoMoreMakesRoom) {
    enter({1, 2, 3}, "a", Phase::making);
    enter({4}, "b", Phase::making);
    EXPECT_EQ(displacedBy(5, "b"), 1);
    m_table.set(5, Phase::making, m_now);
    EXPECT_EQ(displacedBy(6, "b"), -1);
    EXPECT_EQ(displacedBy(6, "c"), 2);
}

// A client that trickles its request, or sends the next one piece by piece behind the last, has
// no longer for it than any other.
TEST_F(ConnectionTableTest, ARequestIsWholeInTimeFromWhenItCouldHaveBegun) {
    enter({1}, "a", Phase::waiting);
    EXPECT_EQ(m_table.nextDeadline(), m_now + 5s);
    m_now += 4s;
    m_table.noteInput(1, m_now);
    EXPECT_EQ(m_table.nextDeadline(), m_now + 6s);
    m_now += 5999ms;
    m_table.noteInput(1, m_now);
    EXPECT_THAT(m_table.overdue(m_now), IsEmpty());
    m_now += 1ms;
    EXPECT_THAT(m_table.overdue(m_now), ElementsAre(1));
}

TEST_F(ConnectionTableTest, EachPhaseHasItsTime) {
    const ConnectionLimits limits;
    enter({1}, "a", Phase::waiting);
    EXPECT_EQ(m_table.nextDeadline(), m_now + limits.idle);
    m_table.set(1, Phase::making, m_now);
    m_table.noteInput(1, m_now); // the next request
    EXPECT_EQ(m_table.phaseOf(1), Phase::making);
    EXPECT_EQ(m_table.nextDeadline(), m_now + limits.making);
    m_now += 1s;
    m_table.set(1, Phase::sending, m_now);
    EXPECT_EQ(m_table.nextDeadline(), m_now + limits.answer);
    m_table.set(1, Phase::waiting, m_now);
    EXPECT_EQ(m_table.nextDeadline(), m_now + limits.idle);
    enter({2}, "b", Phase::making);
    EXPECT_EQ(m_table.nextDeadline(), m_now + limits.idle);
    m_table.leave(1);
    EXPECT_EQ(m_table.nextDeadline(), m_now + limits.making);
    m_table.leave(2);
    EXPECT_EQ(m_table.nextDeadline(), std::nullopt);
}

TEST_F(ConnectionTableTest, KnowsNothingOfOthers) {
    m_table.noteInput(7, m_now);
    m_table.set(7, Phase::making, m_now);
    m_table.leave(7);
    EXPECT_EQ(m_table.phaseOf(7), std::nullopt);
    EXPECT_EQ(m_table.size(), 0);
}

} // namespace
} // namespace raincast
