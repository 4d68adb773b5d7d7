// SPDX-License-Identifier: MIT
#include "page/image.h"
#include "page/item_catalogue.h"
#include "page/page_display.h"
#include "page/page_type.h"
#include "page_window.h"
#include "support/dialog_script.h"
#include "support/serial_bytes.h"
#include "window/command_set.h"

#include <QAction>
#include <QListWidget>
#include <QMenu>
#include <QPaintEngine>
#include <QPalette>
#include <QWheelEvent>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::decoration;
using test::DialogScript;
using test::Log;
using test::NotingItem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kNotingType = 4028;

// What the catalogue creates in these tests.
class CatalogueItem : public NotingItem {
public:
    static constexpr int kHeight = 48; // fits every ratio

    CatalogueItem() : NotingItem("new", nullptr, 4712) {
        setRectangle({0, 0, 75, kHeight});
        useLog(s_log);
    }
    std::uint32_t GetTypeId() const override { return kNotingType; }
    void windowCreated() override {
        layoutModeThen = page()->layoutMode();
        NotingItem::windowCreated();
    }

    bool layoutModeThen = false;
    static inline Log* s_log = nullptr;
};

const SerializableType<CatalogueItem> catalogueType{kNotingType};
const ItemCatalogueEntry catalogueEntry{QStringLiteral("Test:Item"), kNotingType, 1000};

class PageDisplayTest : public test::PageTest {
protected:
    PageDisplayTest() { CatalogueItem::s_log = &log; }
    ~PageDisplayTest() override { CatalogueItem::s_log = nullptr; }

    // Adds an item through the dialog; an empty name cancels it.
    void addByDialog(const QString& name) {
        DialogScript script;
        script.expect(QStringLiteral("Select Display Item"), [&name](QDialog& dialog) {
            auto& list = *dialog.findChild<QListWidget*>();
            if (!name.isEmpty()) {
                list.setCurrentItem(list.findItems(name, Qt::MatchExactly).value(0));
                QTest::keyClick(&dialog, Qt::Key_Return);
            }
        });
        EXPECT_TRUE(page->command(kAddItem, 0));
    }

    [[nodiscard]] QByteArray saved() const { return test::writtenBlock(*page); }
};

// --- Window -----------------------------------------------------------------------------------

TEST_F(PageDisplayTest, ItsWindowFillsItsParent) {
    page->setName(QStringLiteral("Radar"));
    showPage();
    EXPECT_EQ(page->widget()->parentWidget(), &m_client);
    EXPECT_EQ(page->widget()->geometry(), m_client.rect());
    EXPECT_EQ(page->widget()->windowTitle(), QStringLiteral("Radar"));
    EXPECT_TRUE(page->widget()->isVisible());
}

TEST_F(PageDisplayTest, ItemsHearOfTheWindowInOrderOnceItHasItsSize) {
    class Asking : public NotingItem {
    public:
        using NotingItem::NotingItem;
        QSize then;
        void windowCreated() override {
            then = page()->deviceSize();
            NotingItem::windowCreated();
        }
    };
    auto asking = std::make_unique<Asking>("first", &log);
    const Asking& first = *asking;
    page->addItem(std::move(asking));
    page->addItem(std::make_unique<NotingItem>("second", &log));
    showPage();
    EXPECT_THAT(log, ElementsAre("first created", "second created"));
    EXPECT_EQ(first.then, QSize(kWidth, kHeight));
}

TEST_F(PageDisplayTest, EveryNewWindowStartsInBrowseModeWithoutASelection) {
    NotingItem& item = add({0, 0, 50, 50});
    showPage();
    page->command(kToggleLayout, 0);
    tap(10, 10);
    EXPECT_EQ(page->selected(), &item);
    page->deactivate();
    EXPECT_EQ(page->widget(), nullptr);
    showPage();
    EXPECT_FALSE(page->layoutMode());
    EXPECT_EQ(page->selected(), nullptr);
}

TEST_F(PageDisplayTest, ADragDoesNotSurviveItsWindow) {
    NotingItem& item = add({0, 0, 50, 50});
    item.captures = true;
    showPage();
    press(10, 10);
    page->deactivate();
    test::settle();
    showPage();
    log.clear();
    moveTo(20, 20);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(PageDisplayTest, ADestroyedParentTakesTheWindowAlong) {
    auto* const window = new QWidget; // goes by itself once it is destroyed
    page->activate(*window, true);
    test::show(*window);
    Window::destroyWindow(*window);
    EXPECT_EQ(page->widget(), nullptr);
    page->invalidate();
    page->refresh();
    page->size(10, 10);
    page->deactivate();
    test::settle();
    EXPECT_EQ(page->widget(), nullptr);
    showPage(); // in another one
    EXPECT_NE(page->widget(), nullptr);
    EXPECT_TRUE(page->widget()->isVisible());
}

TEST_F(PageDisplayTest, TheseTestsRunAtTheRatioThatTheyWereStartedWith) {
    const double wanted = qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble();
    EXPECT_DOUBLE_EQ(m_window.devicePixelRatioF(), wanted);
}

// --- Size and anchors -------------------------------------------------------------------------

TEST_F(PageDisplayTest, ItemsFollowThePageByTheirAnchors) {
    showPage();
    NotingItem& spanning = add({0, 0, kWidth, kHeight});
    NotingItem& sticking = add({30, 40, kWidth, kHeight});
    NotingItem& loose = add({30, 40, 60, 70});
    resizePage(360, 240);
    EXPECT_EQ(spanning.rectangle(), (PageRectangle{0, 0, 360, 240}));
    EXPECT_EQ(sticking.rectangle(), (PageRectangle{150, -20, 360, 240}));
    EXPECT_EQ(loose.rectangle(), (PageRectangle{30, 40, 60, 70}));
    resizePage(kWidth, kHeight);
    EXPECT_EQ(sticking.rectangle(), (PageRectangle{30, 40, kWidth, kHeight}));
}

TEST_F(PageDisplayTest, OnlyChangedRectanglesAreSet) {
    showPage();
    add({0, 0, kWidth, 20}, Qt::blue, "spanning");
    add({30, 40, 60, 70}, Qt::blue, "loose");
    resizePage(360, kHeight);
    EXPECT_THAT(log, ElementsAre("spanning rectangle"));
    log.clear();
    page->size(m_client.width(), m_client.height());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(PageDisplayTest, AChangeOfSizeLeavesTheAnchorsOfBothAxes) {
    showPage();
    // Follows to the right, and happens to end where the page will end.
    NotingItem& item = add({30, 40, kWidth, 240});
    resizePage(360, 240);
    EXPECT_EQ(item.rectangle(), (PageRectangle{150, 40, 360, 240}));
    EXPECT_EQ(item.placement().hAnchor, Anchor::farEdge);
    EXPECT_EQ(item.placement().vAnchor, Anchor::free);
}

TEST_F(PageDisplayTest, APageTooNarrowForAnItemGetsItBack) {
    showPage();
    NotingItem& item = add({30, 0, kWidth, 20});
    resizePage(60, kHeight);
    EXPECT_EQ(item.rectangle(), (PageRectangle{-150, 0, 60, 20}));
    resizePage(kWidth, kHeight);
    EXPECT_EQ(item.rectangle(), (PageRectangle{30, 0, kWidth, 20}));
}

TEST_F(PageDisplayTest, NoItemIsPaintedAtItsNewPlaceBeforeAllAre) {
    showPage();
    NotingItem& first = add({0, 0, kWidth, 20});
    first.refreshes = true;
    test::settle();
    const int before = first.draws;
    resizePage(360, 240);
    EXPECT_EQ(first.draws, before);
    test::settle();
    EXPECT_GT(first.draws, before);
}

// --- Painting ---------------------------------------------------------------------------------

TEST_F(PageDisplayTest, WithoutItemsItIsTheColourOfAWindow) {
    showPage();
    const QImage picture = screen();
    const QRgb base = page->widget()->palette().color(QPalette::Base).rgb();
    for (const QPoint& place : {QPoint(0, 0), {kWidth - 1, kHeight - 1}, {120, 150}}) {
        EXPECT_EQ(picture.pixel(place), base);
    }
}

TEST_F(PageDisplayTest, EveryPixelOfTheBufferIsOneOfTheScreen) {
    class Chequered : public NotingItem {
    public:
        void draw(QPainter& painter) override {
            for (int y = 0; y < kHeight; ++y) {
                for (int x = 0; x < kWidth; ++x) {
                    painter.fillRect(x, y, 1, 1, colourAt(x, y));
                }
            }
        }
        static QColor colourAt(int x, int y) { return {x, y % 256, (x + y) % 2 == 0 ? 255 : 0}; }
    };
    page->addItem(std::make_unique<Chequered>()).setRectangle({0, 0, kWidth, kHeight});
    showPage();
    const QImage picture = screen();
    ASSERT_EQ(picture.size(), QSize(kWidth, kHeight));
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            ASSERT_EQ(picture.pixelColor(x, y), Chequered::colourAt(x, y)) << x << "," << y;
        }
    }
}

TEST_F(PageDisplayTest, ItemsLieAboveEachOtherInTheirOrder) {
    add({10, 10, 60, 60}, Qt::red);
    add({30, 30, 90, 90}, Qt::blue);
    showPage();
    EXPECT_EQ(at(20, 20), QColor(Qt::red));
    EXPECT_EQ(at(59, 59), QColor(Qt::blue));
    EXPECT_EQ(at(89, 89), QColor(Qt::blue));
    EXPECT_EQ(at(90, 90), page->widget()->palette().color(QPalette::Base));
}

TEST_F(PageDisplayTest, WhatAnItemCoversIsNotFilledBefore) {
    class Covering : public NotingItem {
    public:
        void draw(QPainter& painter) override {
            if (++draws == 1) {
                painter.fillRect(rectangle().toRect(), Qt::red);
            }
        }
        [[nodiscard]] QRect opaqueArea() const override { return {10, 10, 20, 20}; }
    };
    page->addItem(std::make_unique<Covering>()).setRectangle({5, 5, 50, 50});
    showPage();
    page->refresh();
    EXPECT_EQ(at(10, 10), QColor(Qt::red));
    EXPECT_EQ(at(29, 29), QColor(Qt::red));
    const QColor base = page->widget()->palette().color(QPalette::Base);
    EXPECT_EQ(at(9, 9), base);
    EXPECT_EQ(at(30, 30), base);
}

TEST_F(PageDisplayTest, FrameFillClipAndEdgeReachTheScreen) {
    NotingItem& item = add({20, 30, 60, 70}, Qt::blue);
    item.paints = {-20, -20, 80, 80};
    item.setDecoration(decoration(0x0000FF, raisedOuter, 4, 1));
    showPage();
    const QImage picture = screen();
    EXPECT_EQ(picture.pixelColor(20, 30), QColor(Qt::blue));
    EXPECT_EQ(picture.pixelColor(59, 69), QColor(Qt::blue));
    EXPECT_EQ(picture.pixelColor(19, 50), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(17, 27), QColor(Qt::red));
    EXPECT_EQ(picture.pixel(16, 40), page->widget()->palette().color(QPalette::Midlight).rgb());
    EXPECT_EQ(picture.pixel(63, 40), page->widget()->palette().color(QPalette::Shadow).rgb());
    EXPECT_EQ(picture.pixel(64, 40), page->widget()->palette().color(QPalette::Base).rgb());
}

TEST_F(PageDisplayTest, LayoutModeOutlinesTheSelectedItemInRedAndOthersInGreen) {
    add({20, 30, 60, 70});
    add({100, 30, 160, 70});
    showPage();
    const QColor green(0, 200, 0);
    const QColor red(200, 0, 0);
    EXPECT_EQ(at(20, 30), QColor(Qt::blue));
    page->command(kToggleLayout, 0);
    EXPECT_EQ(at(20, 30), green);
    tap(30, 40);
    EXPECT_EQ(at(20, 30), red);
    EXPECT_EQ(at(59, 69), red);
    EXPECT_EQ(at(100, 30), green);
    tap(110, 40);
    EXPECT_EQ(at(20, 30), green);
    EXPECT_EQ(at(100, 30), red);
    tap(5, 5);
    EXPECT_EQ(at(100, 30), green);
    page->command(kToggleLayout, 0);
    EXPECT_EQ(at(100, 30), QColor(Qt::blue));
}

TEST_F(PageDisplayTest, AnOutlineLiesBelowTheItemsAboveIt) {
    add({20, 30, 60, 70}, Qt::red);
    add({40, 20, 90, 90}, Qt::blue);
    showPage();
    page->command(kToggleLayout, 0);
    EXPECT_EQ(at(30, 30), QColor(0, 200, 0));
    EXPECT_EQ(at(50, 30), QColor(Qt::blue));
    EXPECT_EQ(at(59, 60), QColor(Qt::blue));
}

TEST_F(PageDisplayTest, ItemsDrawOntoAPictureWhoseTextHasItsSize) {
    NotingItem& item = add({20, 30, 60, 70});
    showPage();
    EXPECT_TRUE(item.drewOnImage);
}

// A device that takes a painter's calls and counts them.
class CountingDevice : public QPaintDevice {
public:
    class Engine : public QPaintEngine {
    public:
        Engine() : QPaintEngine(AllFeatures) {}
        int images = 0;
        int others = 0;
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        Type type() const override { return User; }
        void
        drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {
            ++images;
        }
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override { ++others; }
        void drawRects(const QRectF*, int) override { ++others; }
        void drawPath(const QPainterPath&) override { ++others; }
    };

    Engine engine;
    QPaintEngine* paintEngine() const override { return const_cast<Engine*>(&engine); }

protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
            return 240;
        case PdmHeight:
            return 300;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return 96;
        }
    }
};

TEST_F(PageDisplayTest, APaintIsOneCopyOfTheWholePage) {
    add({20, 30, 60, 70}).setDecoration(decoration(0x0000FF, raisedOuter, 4, 1));
    showPage();
    CountingDevice device;
    page->onPaint(device, QRegion(0, 0, 1, 1));
    EXPECT_EQ(device.engine.images, 1);
    EXPECT_EQ(device.engine.others, 0);
}

TEST_F(PageDisplayTest, NothingIsErasedBeforeAPaint) {
    showPage();
    EXPECT_TRUE(page->widget()->testAttribute(Qt::WA_OpaquePaintEvent));
    EXPECT_TRUE(page->widget()->testAttribute(Qt::WA_NoSystemBackground));
}

TEST_F(PageDisplayTest, AWindowThatMovedByHalfAPixelIsStillCopiedOneToOne) {
    NotingItem& item = add({0, 0, kWidth, kHeight}, Qt::red);
    showPage();
    item.setRectangle({0, 0, kWidth, kHeight});
    m_client.move(4, 8);
    test::settle();
    const QSize size = deviceRect(*page->widget()).size();
    page->refresh();
    EXPECT_EQ(page->deviceSize(), size);
    const QImage picture = screen();
    for (const QPoint& corner : {QPoint(0, 0), {size.width() - 1, size.height() - 1}}) {
        EXPECT_EQ(picture.pixelColor(corner), QColor(Qt::red));
    }
}

// --- Commands ---------------------------------------------------------------------------------

TEST_F(PageDisplayTest, ACommandGoesToTheItemsInOrderUntilOneTakesIt) {
    add({0, 0, 50, 50}, Qt::blue, "first");
    add({0, 0, 50, 50}, Qt::blue, "second").takesCommands = true;
    add({0, 0, 50, 50}, Qt::blue, "third");
    showPage();
    log.clear();
    EXPECT_TRUE(page->command(kToggleLayout, 7));
    EXPECT_THAT(log, ElementsAre("first command 40017 7", "second command 40017 7"));
    EXPECT_FALSE(page->layoutMode());
}

TEST_F(PageDisplayTest, AnUnknownCommandIsNotTakenAndPaintsNothing) {
    NotingItem& item = add({0, 0, 50, 50});
    showPage();
    test::settle();
    const int before = item.draws;
    EXPECT_FALSE(page->command(40009, 0));
    test::settle();
    EXPECT_EQ(item.draws, before);
}

TEST_F(PageDisplayTest, AnAddedItemLiesOnTopInTheCornerInLayoutMode) {
    add({0, 0, 50, 50});
    showPage();
    addByDialog(QStringLiteral("Decoration:Texture"));
    ASSERT_EQ(page->items().size(), 2U);
    const CPageDisplay::CItem& item = *page->items().back();
    EXPECT_EQ(item.GetTypeId(), 28U);
    EXPECT_EQ(item.rectangle(), (PageRectangle{0, 0, 75, 50}));
    EXPECT_EQ(item.page(), page.get());
    EXPECT_TRUE(page->layoutMode());
}

TEST_F(PageDisplayTest, AnAddedItemHearsOfTheWindowLast) {
    showPage();
    addByDialog(QStringLiteral("Test:Item"));
    EXPECT_THAT(log, ElementsAre("new rectangle", "new created"));
    EXPECT_TRUE(dynamic_cast<const CatalogueItem&>(*page->items().back()).layoutModeThen);
    EXPECT_THAT(page->menus(), ElementsAre(107, 4712));
}

TEST_F(PageDisplayTest, AnAddedItemThatFitsThePageIsAnchored) {
    showPage();
    resizePage(kWidth, CatalogueItem::kHeight);
    addByDialog(QStringLiteral("Test:Item"));
    EXPECT_EQ(page->items().back()->placement().hAnchor, Anchor::free);
    EXPECT_EQ(page->items().back()->placement().vAnchor, Anchor::span);
}

TEST_F(PageDisplayTest, CancellingTheChoiceChangesNothing) {
    showPage();
    addByDialog({});
    EXPECT_TRUE(page->items().empty());
    EXPECT_FALSE(page->layoutMode());
}

TEST_F(PageDisplayTest, DeletingTakesTheSelectedItemAndItsMenuAway) {
    showPage();
    addByDialog(QStringLiteral("Test:Item"));
    addByDialog(QStringLiteral("Test:Item"));
    EXPECT_THAT(page->menus(), ElementsAre(107, 4712));
    tap(10, 10);
    EXPECT_TRUE(page->command(kDeleteItem, 0));
    EXPECT_EQ(page->items().size(), 1U);
    EXPECT_EQ(page->selected(), nullptr);
    EXPECT_THAT(page->menus(), ElementsAre(107, 4712)) << "the other one needs it";
    tap(10, 10);
    EXPECT_TRUE(page->command(kDeleteItem, 0));
    EXPECT_TRUE(page->items().empty());
    EXPECT_THAT(page->menus(), ElementsAre(107));
}

TEST_F(PageDisplayTest, DeletingWithoutASelectionOnlyPaints) {
    NotingItem& item = add({0, 0, 50, 50});
    showPage();
    test::settle();
    const int before = item.draws;
    EXPECT_TRUE(page->command(kDeleteItem, 0));
    test::settle();
    EXPECT_EQ(page->items().size(), 1U);
    EXPECT_EQ(item.draws, before + 1);
}

TEST_F(PageDisplayTest, TheItemThatComesToTheFrontHasTheTaps) {
    NotingItem& below = add({0, 0, 50, 50}, Qt::red, "below");
    NotingItem& above = add({20, 20, 50, 50}, Qt::blue, "above");
    showPage();
    page->command(kToggleLayout, 0);
    tap(10, 10);
    EXPECT_EQ(page->selected(), &below);
    EXPECT_TRUE(page->command(kBringToFront, 0));
    EXPECT_EQ(page->items().back().get(), &below);
    EXPECT_EQ(page->items().front().get(), &above);
    EXPECT_EQ(at(30, 30), QColor(Qt::red));
    tap(30, 30);
    EXPECT_EQ(page->selected(), &below);
}

TEST_F(PageDisplayTest, BringingNothingToTheFrontChangesNothing) {
    NotingItem& below = add({0, 0, 50, 50});
    add({20, 20, 50, 50});
    showPage();
    EXPECT_TRUE(page->command(kBringToFront, 0));
    EXPECT_EQ(page->items().front().get(), &below);
}

TEST_F(PageDisplayTest, ItsMenuChecksLayoutModeAndGreysWhatNeedsASelection) {
    add({0, 0, 50, 50});
    showPage();
    CommandSet commands(m_window);
    const auto menu = commands.load(CPageDisplay::kMenu);
    const auto state = [&](int command) {
        page->menuPopUp(*menu);
        const QAction& entry = *findCommand(*menu, command);
        return std::string(entry.isEnabled() ? "enabled" : "greyed") +
               (entry.isChecked() ? " checked" : "");
    };
    EXPECT_EQ(state(kToggleLayout), "enabled");
    EXPECT_EQ(state(kAddItem), "enabled");
    EXPECT_EQ(state(kDeleteItem), "greyed");
    EXPECT_EQ(state(kBringToFront), "greyed");
    page->command(kToggleLayout, 0);
    tap(10, 10);
    EXPECT_EQ(state(kToggleLayout), "enabled checked");
    EXPECT_EQ(state(kAddItem), "enabled");
    EXPECT_EQ(state(kDeleteItem), "enabled");
    EXPECT_EQ(state(kBringToFront), "enabled");
}

// --- Keys and zooming -------------------------------------------------------------------------

TEST_F(PageDisplayTest, KeysAndCharactersGoToTheItemsInOrderUntilOneTakesThem) {
    add({0, 0, 50, 50}, Qt::blue, "first");
    add({0, 0, 50, 50}, Qt::blue, "second").takesKeys = true;
    add({0, 0, 50, 50}, Qt::blue, "third");
    EXPECT_TRUE(page->keyDown(Qt::Key_Left));
    EXPECT_TRUE(page->character(u'L'));
    EXPECT_THAT(
        log,
        ElementsAre(
            "first key 16777234", "second key 16777234", "first character 76", "second character 76"
        )
    );
}

TEST_F(PageDisplayTest, AKeyThatNoItemTakesIsNotTaken) {
    EXPECT_FALSE(page->keyDown(Qt::Key_Left));
    add({0, 0, 50, 50});
    EXPECT_FALSE(page->keyDown(Qt::Key_Left));
    EXPECT_FALSE(page->character(u'L'));
}

TEST_F(PageDisplayTest, TheWheelZoomsTheTopmostItemUnderThePointer) {
    add({0, 0, 60, 60}, Qt::blue, "below").takesCommands = true;
    add({30, 30, 60, 60}, Qt::blue, "above");
    showPage();
    log.clear();
    const auto wheel = [this](int x, int y, int angle) {
        const QPointF place = inWindow(x, y);
        QWheelEvent event(
            place, m_window.mapToGlobal(place), {}, {0, angle}, {}, {}, Qt::NoScrollPhase, false
        );
        QCoreApplication::sendEvent(m_window.windowHandle(), &event);
    };
    wheel(30, 30, 120);
    wheel(29, 30, -240);
    wheel(60, 60, 120);
    EXPECT_THAT(
        log, ElementsAre("above command 40030 0", "below command 40031 0", "below command 40031 0")
    );
}

TEST_F(PageDisplayTest, ZoomingTellsWhetherAnItemTookIt) {
    add({0, 0, 60, 60}).takesCommands = true;
    add({100, 100, 160, 160});
    EXPECT_TRUE(page->zoom(1, {10, 10}));
    EXPECT_FALSE(page->zoom(1, {110, 110}));
    EXPECT_FALSE(page->zoom(1, {230, 230}));
    EXPECT_FALSE(page->zoom(0, {10, 10}));
}

// --- Texts ------------------------------------------------------------------------------------

TEST_F(PageDisplayTest, TellsTheTextsOfTheTopmostItemThatHasAny) {
    NotingItem& below = add({0, 0, 50, 50});
    NotingItem& above = add({0, 0, 50, 50});
    EXPECT_EQ(page->statusText(), QString());
    below.status = QStringLiteral("Could not access server.\n");
    below.title = QStringLiteral("MUX");
    above.title = QStringLiteral("HNX");
    EXPECT_EQ(page->statusText(), below.status);
    EXPECT_EQ(page->caption(), above.title);
}

// --- Page file --------------------------------------------------------------------------------

TEST_F(PageDisplayTest, IsSavedWithItsItemsFromTheBottom) {
    page->setName(QStringLiteral("A"));
    page->addItem(std::make_unique<CPageDisplay::CImage>()).setRectangle({1, 2, 3, 4});
    page->addItem(std::make_unique<CPageDisplay::CImage>()).setRectangle({5, 6, 7, 8});
    const QByteArray bytes = saved();
    const QByteArray head(
        "\x0A\0\0\0\x83\0\0\0"          // identifier 10, 131 bytes
        "\2\0\0\0\2\0\0\0A\0\1\0\0\0\1" // the name and the enabled flag
        "\2\0\0\0"                      // two items
        "\x1C\0\0\0\x30\0\0\0"          // identifier 28, 48 bytes
        "\1\0\0\0\x28\0\0\0"            // one field of 40 bytes
        "\1\0\0\0\2\0\0\0\3\0\0\0\4\0\0\0",
        59
    );
    EXPECT_EQ(bytes.left(59), head);
    EXPECT_EQ(bytes.size(), 8 + 131);
}

TEST_F(PageDisplayTest, ComesBackAsItWasSaved) {
    page->setName(QStringLiteral("Radar"));
    page->setEnabled(false);
    page->addItem(std::make_unique<CPageDisplay::CImage>()).setRectangle({1, 2, 3, 4});
    page->addItem(std::make_unique<CatalogueItem>()).setRectangle({5, 6, 7, 8});
    const auto object = test::readBlock(saved());
    const auto* const read = dynamic_cast<CPageDisplay*>(object.get());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->name(), QStringLiteral("Radar"));
    EXPECT_FALSE(read->enabled());
    ASSERT_EQ(read->items().size(), 2U);
    EXPECT_EQ(read->items()[0]->GetTypeId(), 28U);
    EXPECT_EQ(read->items()[0]->rectangle(), (PageRectangle{1, 2, 3, 4}));
    EXPECT_EQ(read->items()[1]->GetTypeId(), kNotingType);
    EXPECT_EQ(read->items()[1]->page(), read);
    EXPECT_THAT(read->menus(), ElementsAre(107, 4712));
    EXPECT_FALSE(read->layoutMode());
}

TEST_F(PageDisplayTest, ACountBelowOneIsAnEmptyPage) {
    for (const char* count : {"\0\0\0\0", "\xFF\xFF\xFF\xFF"}) {
        CPageDisplay read;
        EXPECT_TRUE(test::read(read, QByteArray("\0\0\0\0", 4) + QByteArray(count, 4)));
        EXPECT_TRUE(read.items().empty());
    }
}

TEST_F(PageDisplayTest, AMissingCountFailsThePage) {
    CPageDisplay read;
    EXPECT_FALSE(test::read(read, QByteArray("\0\0\0\0\1\0", 6)));
}

TEST_F(PageDisplayTest, ItemsThatNobodyKnowsAreLeftOut) {
    page->addItem(std::make_unique<NotingItem>()); // written without a number of its own
    page->addItem(std::make_unique<CPageDisplay::CImage>());
    const auto object = test::readBlock(saved());
    const auto* const read = dynamic_cast<CPageDisplay*>(object.get());
    ASSERT_NE(read, nullptr);
    ASSERT_EQ(read->items().size(), 1U);
    EXPECT_EQ(read->items()[0]->GetTypeId(), 28U);
}

TEST_F(PageDisplayTest, ThePagesTypeMakesAnEmptyPage) {
    const auto types = CAppPaged::PageType::all();
    const auto type = std::find_if(types.begin(), types.end(), [](const auto* each) {
        return each->name() == QStringLiteral("Blank customizable page");
    });
    ASSERT_NE(type, types.end());
    const auto made = (*type)->create(nullptr);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetTypeId(), 10U);
    EXPECT_EQ(made->shownName(), QStringLiteral("Blank customizable page"));
    EXPECT_TRUE(dynamic_cast<CPageDisplay&>(*made).items().empty());
    EXPECT_THAT(made->menus(), ElementsAre(107));
}

} // namespace
} // namespace raincast
