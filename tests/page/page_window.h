// SPDX-License-Identifier: MIT
// A page on a real window, the events that a person makes there, and what is then on the screen.
// All places are device pixels of the page, whatever the ratio that the tests run at.
#pragma once

#include "page/item.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "window/device_pixels.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace raincast::test {

using Log = std::vector<std::string>;

/// An item of one colour that notes what it is called for in a log.
class NotingItem : public CPageDisplay::CItem {
public:
    explicit NotingItem(std::string name = "", Log* log = nullptr, int menuId = 0)
        : CItem(menuId), m_name(std::move(name)), m_log(log) {}

    void useLog(Log* log) { m_log = log; }

    bool takesCommands = false;
    bool takesKeys = false;
    bool captures = false;
    bool takesDoublePress = false;
    bool takesPointer = false;
    bool refreshes = false; // in setRectangle
    QColor colour;
    QString status;
    QString title;
    std::span<const MenuRow> menuRows; // of any place
    PageRectangle paints{0, 0, 0, 0};  // relative to the item; empty: exactly the item
    int draws = 0;

    void draw(QPainter& painter) override {
        ++draws;
        drewOnImage = painter.device()->devType() == QInternal::Image;
        const QRect own = rectangle().toRect();
        const QRect asked = paints.toRect().translated(own.topLeft());
        painter.fillRect(paints.isEmpty() ? own : asked, colour);
    }
    bool drewOnImage = false;

    void windowCreated() override { note("created"); }
    void setRectangle(const PageRectangle& wanted) override {
        note("rectangle");
        CItem::setRectangle(wanted);
        if (refreshes) {
            refresh();
        }
    }
    bool command(int id, int notification) override {
        note("command " + std::to_string(id) + " " + std::to_string(notification));
        return takesCommands;
    }
    bool keyDown(int key) override {
        note("key " + std::to_string(key));
        return takesKeys;
    }
    bool character(char16_t unit) override {
        note("character " + std::to_string(unit));
        return takesKeys;
    }
    bool stylusDown(int x, int y, Qt::KeyboardModifiers keys) override {
        note(
            "down " + std::to_string(x) + "," + std::to_string(y) +
            (keys.testFlag(Qt::ShiftModifier) ? " shift" : "")
        );
        return captures;
    }
    void pointerMoved(int x, int y) override { notePointer("hover", x, y); }
    void pointerRested(int x, int y) override { notePointer("rest", x, y); }
    void pointerLeft() override {
        if (takesPointer) {
            note("left");
        }
    }
    bool doublePress(int x, int y) override {
        if (takesDoublePress) {
            note("double " + std::to_string(x) + "," + std::to_string(y));
        }
        return takesDoublePress;
    }
    void stylusMove(int x, int y) override {
        note("move " + std::to_string(x) + "," + std::to_string(y));
    }
    void stylusUp(int x, int y) override {
        note("up " + std::to_string(x) + "," + std::to_string(y));
    }
    void stylusLost() override { note("lost"); }
    std::span<const MenuRow> contextMenu(int x, int y) override {
        note("menu " + std::to_string(x) + "," + std::to_string(y));
        return menuRows;
    }
    QString statusText() const override { return status; }
    QString caption() const override { return title; }

private:
    void notePointer(const std::string& what, int x, int y) {
        if (takesPointer) {
            note(what + " " + std::to_string(x) + "," + std::to_string(y));
        }
    }
    void note(const std::string& text) {
        if (m_log != nullptr) {
            m_log->push_back(m_name + " " + text);
        }
    }

    std::string m_name;
    Log* m_log;
};

/// A page of 240 by 300 device pixels on a window of its own, whose corner lies between two device
/// pixels at a fractional ratio.
class PageTest : public GuiTest {
protected:
    static constexpr int kWidth = 240;
    static constexpr int kHeight = 300;

    PageTest() {
        m_client.move(3, 7);
        resizeClient(kWidth, kHeight);
        m_window.resize(400, 400);
    }

    /// Shows the page, with the items added so far.
    void showPage() {
        page->activate(m_client, true);
        show(m_window);
        ASSERT_EQ(page->deviceSize(), QSize(kWidth, kHeight));
    }

    /// Adds an item of a colour at a place.
    NotingItem& add(const PageRectangle& place, QColor colour = Qt::blue, std::string name = "") {
        auto item = std::make_unique<NotingItem>(std::move(name), &log);
        NotingItem& added = *item;
        added.colour = colour;
        page->addItem(std::move(item));
        added.setRectangle(place);
        log.clear();
        return added;
    }

    /// Gives the page another size; both numbers must fit the ratios of 1, 1.5 and 2.
    void resizePage(int width, int height) {
        resizeClient(width, height);
        page->size(m_client.width(), m_client.height());
    }

    /// What the screen shows of the page.
    [[nodiscard]] QImage screen() const {
        settle();
        QImage image = m_window.screen()
                           ->grabWindow(m_window.winId())
                           .toImage()
                           .convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image.copy(deviceRect(*page->widget()));
    }
    [[nodiscard]] QColor at(int x, int y) const { return screen().pixelColor(x, y); }

    void press(int x, int y, Qt::KeyboardModifiers keys = {}) {
        m_time += 5000;
        pressAgain(x, y, keys);
    }
    /// So soon after the last press that both may make a double-click.
    void pressAgain(int x, int y, Qt::KeyboardModifiers keys = {}) {
        mouse(QEvent::MouseButtonPress, x, y, Qt::LeftButton, Qt::LeftButton, keys);
    }
    void moveTo(int x, int y) { mouse(QEvent::MouseMove, x, y, Qt::NoButton, Qt::LeftButton, {}); }
    void lift(int x, int y) {
        mouse(QEvent::MouseButtonRelease, x, y, Qt::LeftButton, Qt::NoButton, {});
    }
    void tap(int x, int y) {
        press(x, y);
        lift(x, y);
    }
    /// Leaves the present press to synthetic time: it is held for as long as hold() says.
    void freezeTimer() { page->stopTimer(PageStylus::kHoldTimer); }
    /// The timer of a held press is due, so many times.
    void hold(int times = PageStylus::kHolds) {
        for (int i = 0; i < times; ++i) {
            TimerEvent due(PageStylus::kHoldTimer);
            QCoreApplication::sendEvent(page->widget(), &due);
        }
        settle();
    }
    void pressRight(int x, int y) {
        mouse(QEvent::MouseButtonPress, x, y, Qt::RightButton, Qt::RightButton, {});
    }
    /// The menu that is open, null for none.
    [[nodiscard]] static QMenu* openMenu() {
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    /// Clicks an entry of the menu that is open.
    static void choose(const QString& text) {
        QMenu* const menu = openMenu();
        ASSERT_NE(menu, nullptr);
        for (QAction* entry : menu->actions()) {
            if (entry->text().remove(u'&') == text) {
                click(*menu, menu->actionGeometry(entry).center());
                settle();
                return;
            }
        }
        ADD_FAILURE() << "no entry " << qPrintable(text);
    }

    void mouse(
        QEvent::Type type, int x, int y, Qt::MouseButton button, Qt::MouseButtons held,
        Qt::KeyboardModifiers keys
    ) {
        const QPointF place = inWindow(x, y);
        const QPointF global = m_window.mapToGlobal(place);
        ++m_time;
        qt_handleMouseEvent(
            m_window.windowHandle(), place, global, held, button, type, keys, m_time
        );
        QCoreApplication::processEvents();
    }

    /// A device pixel of the page in the window's logical pixels.
    [[nodiscard]] QPointF inWindow(int x, int y) const {
        const QPoint corner = deviceRect(*page->widget()).topLeft();
        return QPointF(corner + QPoint(x, y)) / m_window.devicePixelRatioF();
    }

    Log log;
    std::unique_ptr<CPageDisplay> page = std::make_unique<CPageDisplay>();

    QWidget m_window;
    QWidget m_client{&m_window};

private:
    void resizeClient(int width, int height) {
        const double ratio = m_window.devicePixelRatioF();
        m_client.resize(qRound(width / ratio), qRound(height / ratio));
    }

    inline static int m_time = 0; ///< of the events; Qt remembers that of the last test's
};

/// The placement of an item with another decoration.
inline ItemPlacement decoration(
    std::int32_t fillColour, std::int32_t edgeStyle, std::int32_t frameWidth, std::int32_t clip
) {
    ItemPlacement placement;
    placement.fillColour = fillColour;
    placement.edgeStyle = edgeStyle;
    placement.frameWidth = frameWidth;
    placement.clip = clip;
    return placement;
}

} // namespace raincast::test
