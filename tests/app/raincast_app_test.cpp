// SPDX-License-Identifier: MIT
#include "app/raincast_app.h"
#include "cancel_dialogs.h"
#include "map/mark_manager.h"
#include "page/item.h"
#include "page/page.h"
#include "page/page_display.h"
#include "support/dialog_script.h"
#include "support/loopback.h"
#include "support/qt_app.h"
#include "support/serial_bytes.h"
#include "support/temporary_home.h"
#include "weather/item_weather.h"
#include "weather/page_default_weather.h"
#include "weather/servers_setting.h"
#include "window/command_set.h"
#include "window/commands.h"
#include "window/events.h"

#include <QListWidget>
#include <QMenu>
#include <QWidget>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace raincast {
namespace {

class TroubledItem : public CPageDisplay::CItem {
public:
    void draw(QPainter& /*painter*/) override {}
    [[nodiscard]] QString statusText() const override { return text; }
    QString text;
};

class RaincastAppTest : public test::GuiTest {
protected:
    const test::CancelDialogs nobody;
    QWidget window;
    QMenu menu;
    CommandSet commands{window};
    CRaincastApp application;

    RaincastAppTest() { application.attach(window, window, commands, menu); }
};

TEST_F(RaincastAppTest, ItStartsWithOneWeatherPage) {
    application.restoreDefaultPages();
    ASSERT_EQ(application.pages().size(), 1U);
    EXPECT_EQ(application.current(), application.pages().front().get());
    EXPECT_EQ(application.current()->name(), "Weather");
    EXPECT_TRUE(application.current()->enabled());
    const auto* page = dynamic_cast<const CPageDisplay*>(application.current());
    ASSERT_NE(page, nullptr);
    ASSERT_EQ(page->items().size(), 1U);
    EXPECT_NE(dynamic_cast<const CItemWeather*>(page->items()[0].get()), nullptr);
}

TEST_F(RaincastAppTest, RestoringReplacesWhateverThereWas) {
    application.restoreDefaultPages();
    application.append(std::make_unique<CPageDisplay>()).setName("Mine");
    application.restoreDefaultPages();
    ASSERT_EQ(application.pages().size(), 1U);
    EXPECT_EQ(application.pages().front()->name(), "Weather");
}

TEST_F(RaincastAppTest, TheCurrentPagesTroubleIsTheApplications) {
    EXPECT_EQ(application.problem(), "");
    application.restoreDefaultPages();
    EXPECT_EQ(application.problem(), "");
    auto item = std::make_unique<TroubledItem>();
    TroubledItem& troubled = *item;
    static_cast<CPageDisplay*>(application.current())->addItem(std::move(item));
    EXPECT_EQ(application.problem(), "");
    troubled.text = "Could not access server.\n";
    EXPECT_EQ(application.problem(), "Could not access server.\n");
    application.select(std::nullopt);
    EXPECT_EQ(application.problem(), "");
}

/// An application that shows LWX first, without a server that it could load it from.
class FirstShowTest : public RaincastAppTest {
protected:
    FirstShowTest() {
        ServersSetting::set({refusing.host(), refusing.host()});
        application.setFirstShow({std::nullopt, QStringLiteral("LWX")});
    }
    ~FirstShowTest() override {
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
    }
    static QString siteOf(const CAppPaged::Page& page, std::size_t item = 0) {
        const auto& items = dynamic_cast<const CPageDisplay&>(page).items();
        return dynamic_cast<const CItemWeather&>(*items.at(item)).state().siteId;
    }

    const test::TemporaryHome home;
    const RefusingPort refusing;
};

TEST_F(FirstShowTest, TheFirstRadarItemThatIsShownTakesItAndNoOther) {
    auto page = std::make_unique<CPageDisplay>();
    page->addItem(std::make_unique<CItemWeather>());
    page->addItem(std::make_unique<CItemWeather>());
    application.append(std::make_unique<CPageDisplay>());
    application.append(std::move(page));
    application.select(0);
    application.select(1);
    EXPECT_EQ(siteOf(*application.current(), 0), "LWX");
    EXPECT_EQ(siteOf(*application.current(), 1), "");
    application.restoreDefaultPages();
    EXPECT_EQ(siteOf(*application.current()), "");
}

TEST_F(FirstShowTest, AnItemThatTheUserAddsTakesItToo) {
    application.append(std::make_unique<CPageDisplay>());
    application.select(0);
    test::DialogScript script;
    script.expect("Select Display Item", [](QDialog& dialog) {
        QTest::keyClicks(dialog.findChild<QListWidget*>(), "Weather:Radar");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_TRUE(application.current()->command(kAddItem, clicked));
    EXPECT_EQ(siteOf(*application.current()), "LWX");
}

TEST_F(RaincastAppTest, ItsMarksHearOfAPositionBeforeAnyMapView) {
    class Viewing : private Listener<CDataGPSPosition> {
    public:
        explicit Viewing(const CMarkManager& marks) : m_marks(marks) {}
        std::optional<GeoPosition> known;

    private:
        void onPublished(CDataGPSPosition& /*position*/) override {
            known = m_marks.currentPosition();
        }
        const CMarkManager& m_marks;
    };
    const Viewing later(application.marks());
    CDataGPSPosition position;
    position.latitude = 12;
    position.longitude = 34;
    position.fixType = kFixGps;
    Listener<CDataGPSPosition>::Notify(position);
    EXPECT_EQ(later.known, (GeoPosition{12, 34}));
}

TEST_F(RaincastAppTest, ItsMapViewsHaveItsMarks) {
    auto page = std::make_unique<CPageDisplay>();
    const auto& one = static_cast<CItemMapView&>(page->addItem(std::make_unique<CItemWeather>()));
    const auto& other = static_cast<CItemMapView&>(page->addItem(std::make_unique<CItemWeather>()));
    application.append(std::move(page));
    application.select(0);
    EXPECT_EQ(one.marks(), &application.marks());
    EXPECT_EQ(other.marks(), &application.marks());
}

TEST_F(RaincastAppTest, AMapViewThatTheUserAddsHasItsMarks) {
    application.append(std::make_unique<CPageDisplay>());
    application.select(0);
    test::DialogScript script;
    script.expect("Select Display Item", [](QDialog& dialog) {
        QTest::keyClicks(dialog.findChild<QListWidget*>(), "Weather:Radar");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    script.expect("Weather Station", [](QDialog& dialog) { dialog.reject(); });
    EXPECT_TRUE(application.current()->command(kAddItem, clicked));
    const auto& page = dynamic_cast<const CPageDisplay&>(*application.current());
    ASSERT_EQ(page.items().size(), 1U);
    EXPECT_EQ(dynamic_cast<const CItemMapView&>(*page.items()[0]).marks(), &application.marks());
}

class MarksInThePageFileTest : public RaincastAppTest {
protected:
    CMarkManager& marks() { return application.marks(); }
    void addThree() {
        marks().add({54.5, 11.25}, QStringLiteral("Harbour"));
        marks().add({54.75, 11.5}, QStringLiteral("Wreck"));
        marks().add({-1, 2}, QStringLiteral("Far"));
    }
    std::string names() {
        QStringList all;
        for (const COverlayMark& mark : marks().marks()) {
            all.append(mark.name);
        }
        return all.join(u' ').toStdString();
    }
    void addPages() {
        application.append(std::make_unique<CPageDisplay>()).setName("One");
        application.append(std::make_unique<CPageDisplay>()).setName("Two");
    }
    std::string pageNames() const {
        QStringList all;
        for (const auto& page : application.pages()) {
            all.append(page->name());
        }
        return all.join(u' ').toStdString();
    }
    /// Whether the file was read whole.
    bool load(const QByteArray& file) {
        CSerialReader reader(test::bytesOf(file));
        return application.Read(reader) && reader.whole();
    }
};

/// A page that looks how many marks there are when it is shown.
class Looking : public CPageDisplay {
public:
    static constexpr std::uint32_t kTypeId = 9011;
    static inline const CMarkManager* at = nullptr;
    static inline std::size_t seen = 0;

    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeId; }
    bool activate(QWidget& parent, bool flag) override {
        seen = at->marks().size();
        return CPageDisplay::activate(parent, flag);
    }
};

const SerializableType<Looking> lookingType{Looking::kTypeId};

QByteArray number(std::uint32_t value) {
    const auto bytes = toLittleEndian(value);
    return {reinterpret_cast<const char*>(bytes.data()), sizeof value};
}

TEST_F(MarksInThePageFileTest, TheyStandBehindThePagesAsOneObject) {
    addPages();
    const QByteArray pagesAlone = test::written(application);
    addThree();
    const QByteArray body = test::written(marks());
    EXPECT_EQ(
        test::written(application),
        pagesAlone + number(21) + number(static_cast<std::uint32_t>(body.size())) + body
    );
    marks().clear();
    EXPECT_EQ(test::written(application), pagesAlone) << "written only when there are any";
}

TEST_F(MarksInThePageFileTest, TheyComeBackAndAreNotDoubled) {
    addPages();
    addThree();
    const QByteArray file = test::written(application);
    for (int times = 0; times < 2; ++times) {
        EXPECT_TRUE(load(file));
        EXPECT_EQ(pageNames(), "One Two");
        EXPECT_EQ(names(), "Harbour Wreck Far");
    }
    EXPECT_EQ(test::written(application), file);
}

// A file from elsewhere may have them; they are the user's.
TEST_F(MarksInThePageFileTest, ThoseThatAreOutOfRangeAreSavedAsTheyWere) {
    addPages();
    addThree();
    QByteArray file = test::written(application);
    const double odd[] = {91, std::nan(""), 1e300, -std::numeric_limits<double>::infinity()};
    for (const double latitude : odd) {
        std::memcpy(file.data() + file.size() - 20, &latitude, sizeof latitude); // of the last one
        EXPECT_TRUE(load(file)) << latitude;
        EXPECT_EQ(names(), "Harbour Wreck Far") << latitude;
        EXPECT_EQ(test::written(application), file) << latitude;
    }
}

TEST_F(MarksInThePageFileTest, AFileWithoutMarksHasNone) {
    addPages();
    const QByteArray file = test::written(application);
    addThree();
    EXPECT_TRUE(load(file));
    EXPECT_EQ(names(), "");
}

TEST_F(MarksInThePageFileTest, AReaderThatKnowsOnlyPagesFindsThem) {
    addPages();
    addThree();
    const QByteArray file = test::written(application);
    marks().clear();
    class OnlyPages : public CAppPaged {
    } reader;
    EXPECT_TRUE(test::read(reader, file));
    EXPECT_EQ(reader.pages().size(), 2U);
    EXPECT_EQ(names(), "");
}

TEST_F(MarksInThePageFileTest, DefaultPagesLeaveThemAlone) {
    addThree();
    application.restoreDefaultPages();
    EXPECT_EQ(names(), "Harbour Wreck Far");
    application.clear();
    EXPECT_EQ(names(), "Harbour Wreck Far");
}

TEST_F(MarksInThePageFileTest, TheyNeedNoPages) {
    addThree();
    const QByteArray file = test::written(application);
    marks().clear();
    EXPECT_TRUE(load(file));
    EXPECT_EQ(application.current(), nullptr);
    EXPECT_EQ(names(), "Harbour Wreck Far");
}

TEST_F(MarksInThePageFileTest, OfADamagedFileEverythingIsReadThatCanBe) {
    addPages();
    const QByteArray pages = test::written(application).mid(4);
    addThree();
    const QByteArray block = test::writtenBlock(marks());
    QByteArray huge = block;
    huge.replace(8, 4, number(0x7FFFFFFF));
    QByteArray endless = block;
    endless.replace(4, 4, number(0xFFFFFFFF));
    struct Row {
        const char* what;
        QByteArray file;
        const char* pages;
        const char* names;
    };
    const char* const all = "Harbour Wreck Far";
    const Row rows[] = {
        {"too many pages counted", number(9) + pages + block, "One Two", all},
        {"too few pages counted", number(1) + pages + block, "One", all},
        {"a huge number of marks", number(2) + pages + huge, "One Two", all},
        {"a block longer than the file", number(2) + pages + endless, "One Two", all},
        {"the last mark is cut", number(2) + pages + block.chopped(5), "One Two", "Harbour Wreck"},
        {"half a header", number(2) + pages + block.left(6), "One Two", ""},
        {"an unknown object before them", number(2) + pages + number(99) + number(0) + block,
         "One Two", all},
        {"bytes behind them", number(2) + pages + block + "x", "One Two", all},
    };
    for (const Row& row : rows) {
        EXPECT_FALSE(load(row.file)) << row.what;
        EXPECT_EQ(pageNames(), row.pages) << row.what;
        EXPECT_EQ(names(), row.names) << row.what;
    }
}

TEST_F(MarksInThePageFileTest, TheyAreThereBeforeThePageIsShown) {
    application.append(std::make_unique<Looking>());
    addThree();
    const QByteArray file = test::written(application);
    marks().clear();
    Looking::at = &marks();
    Looking::seen = 0;
    EXPECT_TRUE(load(file));
    EXPECT_EQ(Looking::seen, 3U) << "a page may wait for a server when it is first shown";
}

TEST_F(MarksInThePageFileTest, WhatAnotherOneHasReadIsTakenWithItsMarks) {
    application.append(std::make_unique<Looking>()).setName("One");
    application.append(std::make_unique<CPageDefaultWeather>());
    addThree();
    const QByteArray file = test::written(application);
    marks().clear();
    marks().add({1, 2}, QStringLiteral("Old"));
    CRaincastApp other;
    CSerialReader reader(test::bytesOf(file));
    ASSERT_TRUE(other.Read(reader));
    Looking::at = &marks();
    Looking::seen = 0;
    application.takeFrom(other);
    EXPECT_EQ(names(), "Harbour Wreck Far");
    EXPECT_EQ(Looking::seen, 3U) << "they are there before a page is shown";
    EXPECT_EQ(application.current(), application.pages().front().get());
    EXPECT_EQ(test::written(application), file);
    EXPECT_EQ(test::written(other), number(0));
    application.select(1);
    const auto& page = dynamic_cast<const CPageDisplay&>(*application.current());
    EXPECT_EQ(dynamic_cast<const CItemMapView&>(*page.items()[0]).marks(), &marks());
}

} // namespace
} // namespace raincast
