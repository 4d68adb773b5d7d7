// SPDX-License-Identifier: MIT
#include "core/listener.h"
#include "map/overlay_object.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace raincast {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class Dot : public COverlayObject {
public:
    void Layout(std::vector<ImagePixel>& outline, const GeoReference& /*geo*/) const override {
        outline = {{1, 2}};
    }
    void Draw(QPainter&, const ViewTransform&, const std::vector<PagePoint>&) override {}
};

class Noting : private Listener<COverlayObject> {
public:
    std::vector<std::string> log;

private:
    void onPublished(COverlayObject& object) override {
        const bool removed = object.change() == COverlayObject::Change::removed;
        log.push_back(removed ? "removed" : "changed");
    }
};

TEST(OverlayObject, AnnouncesItsChangesAndItsEnd) {
    Noting noting;
    auto dot = std::make_unique<Dot>();
    dot->announceChanged();
    dot->announceChanged();
    dot.reset();
    EXPECT_THAT(noting.log, ElementsAre("changed", "changed", "removed"));
}

TEST(OverlayObject, IsFoundWhileItLives) {
    auto dot = std::make_unique<Dot>();
    COverlayObject* const object = dot.get();
    EXPECT_THAT(COverlayObject::all(), Contains(object));
    dot.reset();
    EXPECT_THAT(COverlayObject::all(), Not(Contains(object)));
}

TEST(OverlayObject, WhoeverHearsOfItsEndFindsItNoMore) {
    class Looking : private Listener<COverlayObject> {
    public:
        bool found = true;

    private:
        void onPublished(COverlayObject& object) override {
            const auto& all = COverlayObject::all();
            found = std::find(all.begin(), all.end(), &object) != all.end();
        }
    } looking;
    { const Dot dot; }
    EXPECT_FALSE(looking.found);
}

TEST(OverlayObject, NobodyNeedsToListen) {
    Dot dot;
    dot.announceChanged();
    EXPECT_EQ(dot.change(), COverlayObject::Change::changed);
}

} // namespace
} // namespace raincast
