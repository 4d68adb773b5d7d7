// SPDX-License-Identifier: MIT
#include "page/global_settings_type.h"
#include "page/page.h"
#include "page/page_type.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Type : public CAppPaged::PageType {
public:
    using PageType::PageType;
    std::unique_ptr<CAppPaged::Page> create(QWidget*) const override { return nullptr; }
};

class Settings : public CAppPaged::GlobalSettingsType {
public:
    using GlobalSettingsType::GlobalSettingsType;
    void open(QWidget*) const override {}
};

/// Without the blank page, whose type lasts as long as the program.
template<typename Record>
std::vector<std::string> names() {
    std::vector<std::string> result;
    for (const Record* record : Record::all()) {
        if (record->name() != u"Blank customizable page") {
            result.push_back(record->name().toStdString());
        }
    }
    return result;
}

TEST(PageTypeTest, ListsReadByRankWhateverTheOrderOfConstruction) {
    EXPECT_THAT(names<CAppPaged::PageType>(), IsEmpty());
    const Type weather(QStringLiteral("Weather"), CAppPaged::PageType::kRankWeatherPage);
    const Type blank(QStringLiteral("Blank"), CAppPaged::PageType::kRankBlankPage);
    const Type last(QStringLiteral("Last"), 1000);
    EXPECT_THAT(names<CAppPaged::PageType>(), ElementsAre("Blank", "Weather", "Last"));
    EXPECT_EQ(CAppPaged::PageType::all().front(), &blank);
}

TEST(PageTypeTest, AmongEqualsTheOneRegisteredLastIsFirst) {
    const Type one(QStringLiteral("one"), 1);
    const Type two(QStringLiteral("two"), 1);
    EXPECT_THAT(names<CAppPaged::PageType>(), ElementsAre("two", "one"));
}

TEST(PageTypeTest, ATypeThatGoesLeavesTheList) {
    auto one = std::make_unique<Type>(QStringLiteral("one"), 1);
    const Type two(QStringLiteral("two"), 2);
    one.reset();
    EXPECT_THAT(names<CAppPaged::PageType>(), ElementsAre("two"));
}

TEST(GlobalSettingsTypeTest, SettingsAreAListOfTheirOwn) {
    const Type type(QStringLiteral("Blank"), 1);
    const Settings gps({}, QStringLiteral("GPS"), CAppPaged::GlobalSettingsType::kRankGpsOverlay);
    const Settings units(
        QStringLiteral("Units"), QStringLiteral("Units"), CAppPaged::GlobalSettingsType::kRankUnits
    );
    EXPECT_THAT(names<CAppPaged::GlobalSettingsType>(), ElementsAre("Units", ""));
    EXPECT_EQ(gps.caption(), QStringLiteral("GPS"));
    EXPECT_THAT(names<CAppPaged::PageType>(), ElementsAre("Blank"));
}

} // namespace
} // namespace raincast
