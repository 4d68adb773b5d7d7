// SPDX-License-Identifier: MIT
// Frames that are fetched several at a time, compared with a search that fetches them one by one.
#include "radar/catalogue/frame_name.h"
#include "radar/frame_run.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace raincast {
namespace {

const QString kSite = QStringLiteral("MUX");
const QString kProduct = QStringLiteral("N0R");
const FileTime kNow = fromCalendar({2019, 5, 19, 6, 0});

/// A server, a cache and a connection, all made up.
struct World {
    std::set<QString> listed;
    std::map<FileTime, QString> ofMinute; ///< the same by their minutes
    std::shared_ptr<const FrameListing> listing;
    std::set<QString> cached;    ///< and loads
    std::set<QString> bad;       ///< cannot be fetched, or is no picture
    std::optional<int> breaksAt; ///< after so many frames have been fetched
    FramesWanted wanted;
};

class Chance {
public:
    explicit Chance(unsigned seed) : m_generator(seed) {}
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_generator); }
    bool in(int times) { return upTo(times - 1) == 0; }

private:
    std::mt19937 m_generator;
};

World makeWorld(Chance& chance) {
    World world;
    const int spacing = 1 + chance.upTo(14);
    const int faults = 2 + chance.upTo(8);
    FileTime time = kNow - chance.upTo(30) * kFileTimePerMinute;
    for (int i = chance.upTo(120); i >= 0; --i) {
        const QString name = frameFileName(kSite, time, kProduct);
        world.listed.insert(name);
        world.ofMinute[time / kFileTimePerMinute] = name;
        if (chance.in(4)) {
            world.cached.insert(name);
        }
        if (chance.in(faults)) {
            world.bad.insert(name);
        }
        time -= (1 + chance.upTo(chance.in(20) ? 130 : spacing)) * kFileTimePerMinute;
    }
    world.listing = std::make_shared<const FrameListing>(world.listed, kSite, kProduct, kNow);
    if (chance.in(3)) {
        world.breaksAt = chance.upTo(15);
    }
    world.wanted = {kSite, kProduct, 1 + chance.upTo(24), 1 + chance.upTo(chance.in(2) ? 5 : 59)};
    return world;
}

FrameSearch searchIn(const World& world) {
    return FrameSearch(world.wanted, world.listing);
}

/// What came of a search, and what had been fetched when the connection broke.
struct Found {
    std::vector<QString> frames;
    std::set<QString> fetched;
    std::size_t mostUnderWay = 0;
};

/// Several at a time; what is under way ends in any order.
Found byRun(const World& world, Chance& chance) {
    Found found;
    std::vector<QString> underWay;
    bool broken = false;
    FrameRun run(
        searchIn(world), [&underWay](const QString& name) { underWay.push_back(name); },
        [&found](const FrameSearch& search, const LoadedPicture&) {
            found.frames.push_back(*search.next());
        }
    );
    run.start();
    while (!run.over()) {
        found.mostUnderWay = std::max(found.mostUnderWay, underWay.size());
        if (underWay.empty()) {
            ADD_FAILURE() << "nothing is under way";
            return found;
        }
        const auto which = underWay.begin() + chance.upTo(static_cast<int>(underWay.size()) - 1);
        const QString name = *which;
        underWay.erase(which);
        const LoadedPicture picture;
        if (world.cached.contains(name)) {
            run.ended(name, {picture, false, false});
            continue;
        }
        broken =
            broken || (world.breaksAt && static_cast<int>(found.fetched.size()) >= *world.breaksAt);
        if (broken) {
            run.ended(name, {{}, true, true});
            continue;
        }
        found.fetched.insert(name);
        run.ended(
            name, {world.bad.contains(name) ? std::nullopt : std::optional(picture), true, false}
        );
    }
    return found;
}

/// One by one, over a connection that breaks at the first frame that the other had not fetched.
std::vector<QString> oneByOne(const World& world, const std::set<QString>& fetched) {
    std::vector<QString> frames;
    FrameSearch search = searchIn(world);
    bool broken = false;
    while (const auto name = search.next()) {
        bool came = world.cached.contains(*name);
        if (!came) {
            broken = broken || !fetched.contains(*name);
            came = !broken && !world.bad.contains(*name);
        }
        if (came) {
            frames.push_back(*name);
            search.came();
        } else {
            search.failed();
        }
    }
    return frames;
}

/// The search as it is described, with nothing of ours.
std::vector<QString> asDescribed(const World& world) {
    std::vector<QString> frames;
    FileTime time = *newestFrameTime(world.listed) + 90 * kFileTimePerSecond;
    for (int i = 0; i < world.wanted.frames; ++i) {
        bool found = false;
        for (int tries = 0; tries < 100 && !found; ++tries) {
            time -= kFileTimePerMinute;
            const auto name = world.ofMinute.find(time / kFileTimePerMinute);
            found = name != world.ofMinute.end() &&
                    (world.cached.contains(name->second) || !world.bad.contains(name->second));
            if (found) {
                frames.push_back(name->second);
            }
        }
        if (!found) {
            break;
        }
        time -= (world.wanted.interval - 1) * kFileTimePerMinute;
    }
    return frames;
}

TEST(FrameRunTest, TenThousandRunsFindWhatASearchOneByOneFinds) {
    int brokenOff = 0;
    int several = 0;
    for (unsigned seed = 0; seed < 10'000; ++seed) {
        Chance chance(seed);
        const World world = makeWorld(chance);
        const Found found = byRun(world, chance);
        ASSERT_EQ(found.frames, oneByOne(world, found.fetched)) << seed;
        ASSERT_LE(found.mostUnderWay, FrameRun::kMostUnderWay) << seed;
        if (!world.breaksAt) {
            ASSERT_EQ(found.frames, asDescribed(world)) << seed;
        } else if (found.frames != asDescribed(world)) {
            ++brokenOff;
        }
        several += found.mostUnderWay > 1 ? 1 : 0;
    }
    EXPECT_GT(brokenOff, 500) << "or breaking was not tried";
    EXPECT_GT(several, 5000);
}

TEST(FrameRunTest, TheNewestIsBegunFirstAndNoMoreThanMayBeUnderWay) {
    World world;
    for (int i = 0; i < 40; ++i) {
        world.listed.insert(frameFileName(kSite, kNow - i * 10 * kFileTimePerMinute, kProduct));
    }
    world.wanted = {kSite, kProduct, 25, 9};
    world.listing = std::make_shared<const FrameListing>(world.listed, kSite, kProduct, kNow);
    std::vector<QString> begun;
    FrameRun run(
        searchIn(world), [&begun](const QString& name) { begun.push_back(name); },
        [](const FrameSearch&, const LoadedPicture&) {}
    );
    run.start();
    const std::vector<QString> newestFirst(world.listed.rbegin(), world.listed.rend());
    const std::vector<QString> most(newestFirst.begin(), newestFirst.begin() + 12);
    EXPECT_EQ(begun, most);
    // The fourth is there first: there is room for one more, but nothing is taken yet.
    run.ended(begun[3], {LoadedPicture{}, true, false});
    EXPECT_EQ(begun.size(), 13U);
    EXPECT_EQ(run.found(), 0);
    EXPECT_EQ(run.missing(), 25);
}

} // namespace
} // namespace raincast
