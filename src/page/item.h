// SPDX-License-Identifier: MIT
#pragma once

#include "page/item_placement.h"
#include "page/page_display.h"
#include "window/menu_table.h"

#include <QString>

#include <span>

class QPainter;

namespace raincast {

/// Base of everything that a customizable page shows: a rectangle of the page with a frame, a fill
/// and an edge around it (the page draws those), and the operations through which the page has it
/// drawn and hands it the stylus, keys and commands.
///
/// The page owns its items. Places are device pixels: of the page in draw() and in the placement,
/// relative to the rectangle's top-left corner in the stylus operations.
class CPageDisplay::CItem : public CSerializable {
public:
    ~CItem() override;

    /// Reads the placement: one record with one field, its bytes. Never fails; a missing field or
    /// one out of range keeps its default.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;

    /// Draws the item onto the page's off-screen picture (painter.device() is a QImage of device
    /// pixels without a ratio of its own). The painter's state is restored by the page. Not called
    /// while the rectangle is empty.
    virtual void draw(QPainter& painter) = 0;
    /// The part of the rectangle that the next draw() covers with opaque pixels; the page need not
    /// fill it before. Empty unless an item knows better.
    [[nodiscard]] virtual QRect opaqueArea() const;
    /// The page has a window, of its final size, and will be shown.
    virtual void windowCreated();
    /// What covers the page's upper part (CPageDisplay::setCoveredTop) has become higher or lower
    /// than `before`.
    virtual void coveredTopChanged(int before);
    /// Gives the item a new rectangle and computes its anchors from it, unless the page's size is
    /// not known yet. Classes that keep something in step with the rectangle do so here and call
    /// this one.
    virtual void setRectangle(const PageRectangle& rectangle);
    /// A command that the user gave; true ends the search for somebody to take it.
    virtual bool command(int id, int notification);
    /// A key (Qt::Key) went down; true as above.
    virtual bool keyDown(int key);
    /// A UTF-16 unit was typed; true as above.
    virtual bool character(char16_t unit);
    /// The stylus went down on the item. True captures it: moves and the lifting then come to this
    /// item wherever they are; false offers the tap to the item beneath.
    virtual bool stylusDown(int x, int y, Qt::KeyboardModifiers keys);
    virtual void stylusMove(int x, int y);
    virtual void stylusUp(int x, int y);
    /// The stylus went down a second time at once, in the same place. True takes that press for
    /// good; false makes it a press as any other.
    virtual bool doublePress(int x, int y);
    /// The wheel was turned or fingers were spread at a place: positive steps zoom in. False if the
    /// item cannot be zoomed. An item that knows no better zooms by its commands.
    virtual bool zoom(int steps, int x, int y);
    /// The pointer moved over the item with no button down, rests there, or went elsewhere.
    virtual void pointerMoved(int x, int y);
    virtual void pointerRested(int x, int y);
    virtual void pointerLeft();
    /// A captured press will not be lifted: it was held still and has become a menu (contextMenu),
    /// a second finger came down, or the system took the touch for itself. What little the stylus
    /// moved meant nothing. Nothing of it comes to the item any more.
    virtual void stylusLost();
    /// The menu for a place: a press was held still there, or the right button went down. What is
    /// chosen comes as a command. Without rows the item beneath is asked.
    virtual std::span<const MenuRow> contextMenu(int x, int y);
    /// What stands above that menu, in lines; empty for nothing.
    [[nodiscard]] virtual QString contextHeading(int x, int y) const;

    /// The item's problem, for a person; empty while all is well.
    [[nodiscard]] virtual QString statusText() const;
    /// What the item shows at present, for the window's title; empty for nothing worth naming.
    [[nodiscard]] virtual QString caption() const;
    /// A menu is about to open: the time to check and grey the item's own entries.
    virtual void menuPopUp(QMenu& menu);

    [[nodiscard]] const ItemPlacement& placement() const { return m_placement; }
    [[nodiscard]] const PageRectangle& rectangle() const { return m_placement.rectangle; }
    /// Fill, edge, frame and clip; the rectangle and its anchors stay.
    void setDecoration(const ItemPlacement& decoration);

    /// Takes up the place on a page that has a new size, as the anchors ask. Goes through
    /// setRectangle() if the rectangle changes; the anchors stay what they are.
    void followPageSize();

    /// The page that the item is on; null before it is added to one.
    [[nodiscard]] CPageDisplay* page() const { return m_page; }
    /// The number of the menu that the item adds to its page's; 0 for none.
    [[nodiscard]] int menuId() const { return m_menuId; }

    /// Makes the item one of a page and adds its menu to the page's. The page calls it.
    void attachTo(CPageDisplay& page);
    /// The page is to be painted again, soon or at once; nothing while it has no window.
    void invalidate();
    void refresh();
    /// A part of it is, in device pixels of the page.
    void invalidate(const QRect& part);

protected:
    explicit CItem(int menuId = 0) : m_menuId(menuId) {}

    /// Takes a placement as it is, while it draws.
    void usePlacement(const ItemPlacement& placement) { m_placement = placement; }

private:
    ItemPlacement m_placement;
    CPageDisplay* m_page = nullptr;
    int m_menuId;
};

} // namespace raincast
