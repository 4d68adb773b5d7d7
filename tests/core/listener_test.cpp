// SPDX-License-Identifier: MIT
#include "core/listener.h"
#include "support/test_clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A kind of record of this file only.
struct News {
    int number = 0;
};

using Calls = std::vector<std::string>;

/// Notes its name in a list when it is notified, then does what the test asks.
class Reader : private Listener<News> {
public:
    Reader(Calls& calls, std::string name, std::int32_t priority = 0)
        : Listener(priority), m_calls(calls), m_name(std::move(name)) {}

    using Listener::unsubscribe;
    std::function<void()> whenNotified;

private:
    void onPublished(News&) override {
        m_calls.push_back(m_name);
        if (whenNotified) {
            // A copy: what it does may end this object.
            const auto action = whenNotified;
            action();
        }
    }

    Calls& m_calls;
    std::string m_name;
};

class ListenerTest : public testing::Test {
protected:
    Calls notify() {
        calls.clear();
        News news;
        Listener<News>::Notify(news);
        return calls;
    }
    std::unique_ptr<Reader> reader(const std::string& name, std::int32_t priority = 0) {
        return std::make_unique<Reader>(calls, name, priority);
    }

    Calls calls;
};

TEST_F(ListenerTest, PublishingWithoutListenersDoesNothing) {
    EXPECT_FALSE(Listener<News>::hasSource());
    EXPECT_THAT(notify(), IsEmpty());
    EXPECT_FALSE(Listener<News>::hasSource());
}

TEST_F(ListenerTest, EqualsAreNotifiedInOrderOfSubscription) {
    const auto a = reader("A");
    const auto b = reader("B");
    const auto c = reader("C");
    EXPECT_THAT(notify(), ElementsAre("A", "B", "C"));
}

TEST_F(ListenerTest, HigherPrioritiesComeFirst) {
    const auto a = reader("zero");
    const auto b = reader("minus five", -5);
    const auto c = reader("greatest", 0x7FFFFFFF);
    const auto d = reader("zero again");
    const auto e = reader("three", 3);
    const auto f = reader("greatest again", 0x7FFFFFFF);
    EXPECT_THAT(
        notify(),
        ElementsAre("greatest", "greatest again", "three", "zero", "zero again", "minus five")
    );
}

TEST_F(ListenerTest, HandlersReceiveThePublishersOwnRecord) {
    class Changer : public Listener<News> {
        void onPublished(News& news) override { ++news.number; }
    } first, second;
    News news;
    Listener<News>::Notify(news);
    EXPECT_EQ(news.number, 2);
}

TEST_F(ListenerTest, TheSourceLivesFromTheFirstSubscriptionToTheLastLeaving) {
    auto a = reader("A");
    auto b = reader("B");
    EXPECT_TRUE(Listener<News>::hasSource());
    a.reset();
    EXPECT_TRUE(Listener<News>::hasSource());
    b.reset();
    EXPECT_FALSE(Listener<News>::hasSource());
    const auto c = reader("C");
    EXPECT_TRUE(Listener<News>::hasSource());
    EXPECT_THAT(notify(), ElementsAre("C"));
}

TEST_F(ListenerTest, LeavingTwiceIsLeavingOnce) {
    auto a = reader("A");
    const auto b = reader("B");
    a->unsubscribe();
    a->unsubscribe();
    EXPECT_THAT(notify(), ElementsAre("B"));
    a.reset();
    EXPECT_THAT(notify(), ElementsAre("B"));
}

TEST_F(ListenerTest, AnyListenerMayLeaveWhileAnyIsNotified) {
    const char* const names[] = {"A", "B", "C"};
    for (std::size_t notified = 0; notified < 3; ++notified) {
        for (std::size_t leaving = 0; leaving < 3; ++leaving) {
            std::vector<std::unique_ptr<Reader>> readers;
            for (const char* name : names) {
                readers.push_back(reader(name));
            }
            readers[notified]->whenNotified = [&readers, leaving] { readers[leaving].reset(); };
            Calls expected;
            for (std::size_t i = 0; i < 3; ++i) {
                if (i != leaving || i <= notified) {
                    expected.emplace_back(names[i]);
                }
            }
            EXPECT_EQ(notify(), expected) << names[leaving] << " leaves in " << names[notified];
        }
    }
}

TEST_F(ListenerTest, AllMayLeaveAtOnce) {
    auto a = reader("A");
    auto b = reader("B");
    auto c = reader("C");
    b->whenNotified = [&] {
        a.reset();
        b.reset();
        c.reset();
        EXPECT_TRUE(Listener<News>::hasSource()) << "the notification still walks it";
    };
    EXPECT_THAT(notify(), ElementsAre("A", "B"));
    EXPECT_FALSE(Listener<News>::hasSource());
}

TEST_F(ListenerTest, ALaterSubscriberIsNotifiedInTheSameNotification) {
    const auto a = reader("A");
    std::unique_ptr<Reader> b;
    std::unique_ptr<Reader> first;
    a->whenNotified = [&] {
        if (!b) {
            b = reader("B");
            first = reader("first", 1);
        }
    };
    EXPECT_THAT(notify(), ElementsAre("A", "B"));
    EXPECT_THAT(notify(), ElementsAre("first", "A", "B"));
}

TEST_F(ListenerTest, TheLastOneMayBeReplacedWhileItIsNotified) {
    std::unique_ptr<Reader> other;
    auto a = reader("A");
    a->whenNotified = [&] {
        a.reset();
        other = reader("B");
    };
    EXPECT_THAT(notify(), ElementsAre("A", "B"));
    EXPECT_THAT(notify(), ElementsAre("B"));
}

TEST_F(ListenerTest, ListenersMayLeaveInANotificationWithinANotification) {
    auto a = reader("A");
    auto b = reader("B");
    auto c = reader("C");
    bool nested = false;
    a->whenNotified = [&] {
        if (!nested) {
            nested = true;
            News news;
            Listener<News>::Notify(news);
        }
    };
    // Ended in the inner walk, which stands on it, and thus gone from the outer one as well.
    b->whenNotified = [&] {
        a.reset();
        b.reset();
    };
    EXPECT_THAT(notify(), ElementsAre("A", "A", "B", "C", "C"));
    EXPECT_THAT(notify(), ElementsAre("C"));
}

TEST_F(ListenerTest, TheNotificationTimeIsTakenOnceANotification) {
    TestClock clock;
    std::vector<FileTime> times;
    const auto note = [&] {
        times.push_back(Listener<News>::notificationTime());
        clock.advance(kFileTimePerSecond);
    };
    const FileTime start = clock.now();
    const auto a = reader("A");
    const auto b = reader("B");
    a->whenNotified = note;
    b->whenNotified = note;
    notify();
    notify();
    EXPECT_THAT(
        times,
        ElementsAre(start, start, start + 2 * kFileTimePerSecond, start + 2 * kFileTimePerSecond)
    );
}

} // namespace
} // namespace raincast
