// SPDX-License-Identifier: MIT
// Events of every class that the program's windows look into, with contents that no hand and no
// device gives: none of them does harm, and the program is used as before afterwards.
#include "app/cancel_dialogs.h"
#include "app/viewer_harness.h"
#include "support/dialog_script.h"
#include "support/pointer.h"

#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QTouchEvent>
#include <QWheelEvent>

#include <limits>
#include <memory>
#include <vector>

namespace raincast {
namespace {

using test::DialogScript;

using WildEvent = std::unique_ptr<QEvent>;
using Events = std::vector<WildEvent>;

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kHuge = std::numeric_limits<double>::max();
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();

const QPointF kWildPlaces[] = {
    {0, 0},          {-1, -1},       {kMost, kMost},           {kLeast, kLeast},
    {kHuge, -kHuge}, {kInfinite, 5}, {-kInfinite, -kInfinite}, {kNone, kNone},
};

QPointingDevice* touchScreen() {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    return screen;
}

void addMouse(Events& events) {
    for (const QPointF& place : kWildPlaces) {
        for (const auto type :
             {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonDblClick,
              QEvent::MouseMove, QEvent::MouseButtonRelease}) {
            for (const auto button : {Qt::LeftButton, Qt::NoButton, Qt::ForwardButton}) {
                events.push_back(std::make_unique<QMouseEvent>(
                    type, place, place, place, button, button, Qt::NoModifier
                ));
            }
        }
    }
}

void addTouches(Events& events) {
    const auto types = {
        QEvent::TouchBegin, QEvent::TouchUpdate, QEvent::TouchEnd, QEvent::TouchCancel};
    for (const QEvent::Type type : types) {
        events.push_back(std::make_unique<QTouchEvent>(type, touchScreen()));
    }
    for (const QPointF& place : kWildPlaces) {
        for (const QEvent::Type type : types) {
            QList<QEventPoint> points;
            for (int count = 1; count <= 3; ++count) {
                points.append(QEventPoint(count, QEventPoint::Updated, place, place));
                events.push_back(
                    std::make_unique<QTouchEvent>(type, touchScreen(), Qt::NoModifier, points)
                );
            }
        }
    }
}

void addZooms(Events& events) {
    for (const QPointF& place : kWildPlaces) {
        for (const int angle : {0, 1, kMost, kLeast, -1}) {
            events.push_back(std::make_unique<QWheelEvent>(
                place, place, QPoint(angle, angle), QPoint(angle, angle), Qt::NoButton,
                Qt::NoModifier, Qt::NoScrollPhase, false
            ));
        }
        for (const double value : {0.0, -1.0, kHuge, -kHuge, kInfinite, -kInfinite, kNone}) {
            for (const auto type :
                 {Qt::BeginNativeGesture, Qt::ZoomNativeGesture, Qt::EndNativeGesture}) {
                events.push_back(std::make_unique<QNativeGestureEvent>(
                    type, QPointingDevice::primaryPointingDevice(), 0, place, place, place, value,
                    QPointF(value, value)
                ));
            }
        }
    }
}

void addKeys(Events& events) {
    const QString texts[] = {{}, QString(QChar(0)), QString(QChar(0xD800)), QString(10'000, 'x')};
    for (const int key : {0, -1, static_cast<int>(Qt::Key_unknown), kMost}) {
        for (const QString& text : texts) {
            for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                events.push_back(std::make_unique<QKeyEvent>(type, key, Qt::NoModifier, text));
            }
        }
    }
}

void addOwn(Events& events) {
    for (const int number : {kLeast, -1, 0, 65'535, kMost}) {
        events.push_back(std::make_unique<CommandEvent>(number, nullptr, number));
        events.push_back(std::make_unique<TimerEvent>(number));
        events.push_back(std::make_unique<SizeEvent>(std::min(number, 0), std::min(number, 0)));
    }
    for (const char16_t unit : {u'\0', char16_t{0xD800}, char16_t{0xFFFF}}) {
        events.push_back(std::make_unique<CharacterEvent>(unit));
    }
    static QMenu empty;
    events.push_back(std::make_unique<MenuPopupEvent>(empty));
}

void addSizes(Events& events) {
    for (const QSize size : {QSize(), QSize(0, 0), QSize(kLeast, kLeast), QSize(-5, 100)}) {
        events.push_back(std::make_unique<QResizeEvent>(size, size));
    }
    events.push_back(std::make_unique<QWindowStateChangeEvent>(Qt::WindowNoState));
    events.push_back(std::make_unique<QPaintEvent>(QRegion()));
}

/// All of them, to a widget that may go under way.
void send(const QPointer<QWidget>& widget) {
    Events events;
    for (const auto add : {addMouse, addTouches, addZooms, addKeys, addOwn, addSizes}) {
        add(events);
    }
    for (const WildEvent& event : events) {
        ASSERT_NE(widget, nullptr);
        QCoreApplication::sendEvent(widget, event.get());
        test::settle();
    }
}

class WildEventsTest : public test::ViewerHarness {
protected:
    WildEventsTest() { options.siteId = "MUX"; }

    static void expectUsable(Viewer& viewer) {
        ASSERT_NE(viewer.window()->frame(), nullptr);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        QWidget& client = *viewer.window()->client();
        auto& page = dynamic_cast<CPageDisplay&>(*viewer.application().current());
        EXPECT_EQ(page.widget()->size(), client.size());
        EXPECT_EQ(page.layoutMode(), false);
        CItemWeather& item = itemOf(viewer);
        const PageRectangle whole{0, 0, page.deviceSize().width(), page.deviceSize().height()};
        EXPECT_EQ(item.rectangle(), whole);
        EXPECT_GE(item.view().zoom(), ViewTransform::kLeastZoom);
        EXPECT_LE(item.view().zoom(), ViewTransform::kMostZoom);

        DialogScript script;
        script.expect("Animation");
        choose(viewer, {"Menu", "Weather", "Animation"});
        EXPECT_TRUE(item.goTo({37.155, -121.898}));
        const ImagePixel before = item.centrePixel();
        const QPoint centre = client.rect().center();
        test::press(*page.widget(), centre);
        test::moveTo(*page.widget(), centre + QPoint(64, 64));
        test::release(*page.widget(), centre + QPoint(64, 64));
        EXPECT_NE(item.centrePixel(), before) << "the map is moved as before";
    }
    static std::vector<QWidget*> windowsOf(Viewer& viewer) {
        MainWindow& window = *viewer.window();
        auto& page = dynamic_cast<CPageDisplay&>(*viewer.application().current());
        return {window.frame(), window.client(), page.widget()};
    }
};

TEST_F(WildEventsTest, NeitherTheWindowNorThePageMindsThem) {
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            for (QWidget* widget : windowsOf(viewer)) {
                SCOPED_TRACE(widget->metaObject()->className());
                // Placed again by its window afterwards, as every real change of size does.
                send(widget);
                viewer.window()->frame()->resize(viewer.window()->frame()->size() + QSize(1, 1));
                test::settle();
                expectUsable(viewer);
            }
        }),
        0
    );
}

TEST_F(WildEventsTest, NeitherADialogNorItsListMindsThem) {
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            const auto frames = itemOf(viewer).state().frames.size();
            for (const bool toList : {false, true}) {
                DialogScript script;
                script.expect("Weather Station", [toList](QDialog& dialog) {
                    auto* const list = dialog.findChild<QListWidget*>();
                    const QPointer<QWidget> widget = toList ? static_cast<QWidget*>(list) : &dialog;
                    ASSERT_NE(widget, nullptr);
                    send(widget);
                    EXPECT_TRUE(dialog.isVisible());
                    EXPECT_EQ(list->count(), 155);
                });
                choose(viewer, {"Menu", "Weather", "All Stations"});
            }
            EXPECT_EQ(itemOf(viewer).state().siteId, "MUX");
            EXPECT_EQ(itemOf(viewer).state().frames.size(), frames);
            expectUsable(viewer);
        }),
        0
    );
}

TEST_F(WildEventsTest, NorDoesTheMenuOfAPlace) {
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            QWidget& client = *viewer.window()->client();
            const QPoint place = client.mapTo(client.window(), client.rect().center());
            for (const bool held : {false, true}) {
                QWindow* const window = viewer.window()->frame()->windowHandle();
                QTest::mousePress(window, held ? Qt::LeftButton : Qt::RightButton, {}, place);
                auto& page = dynamic_cast<CPageDisplay&>(*viewer.application().current());
                for (int i = 0; held && i < PageStylus::kHolds; ++i) {
                    TimerEvent due(PageStylus::kHoldTimer);
                    QCoreApplication::sendEvent(page.widget(), &due);
                }
                const QPointer<QWidget> menu = QApplication::activePopupWidget();
                ASSERT_NE(menu, nullptr);
                Events events;
                addMouse(events);
                addTouches(events);
                const test::CancelDialogs nobody; // a press in the corner chooses an entry
                for (const WildEvent& event : events) {
                    if (menu) {
                        QCoreApplication::sendEvent(menu, event.get());
                    }
                }
                if (menu) {
                    menu->close();
                }
                QTest::mouseRelease(window, held ? Qt::LeftButton : Qt::RightButton, {}, place);
                test::settle();
                EXPECT_EQ(menu, nullptr);
            }
            expectUsable(viewer);
        }),
        0
    );
}

} // namespace
} // namespace raincast
