// SPDX-License-Identifier: MIT
#pragma once

#include "page/back_buffer.h"
#include "page/page.h"
#include "page/page_stylus.h"
#include "window/commands.h"
#include "window/window.h"
#include "window/zoom_input.h"

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace raincast {

/// A page that the user fills with items, one above the other: it lays them out, paints them
/// through one off-screen picture, and hands them taps, keys and commands. In layout mode the
/// stylus moves and resizes the items instead.
///
/// All places are pixels of the device, from the page's top-left corner.
class CPageDisplay : public CAppPaged::Page, public Window {
public:
    class CItem;       ///< page/item.h
    class CImage;      ///< page/image.h
    class Type;        ///< "Blank customizable page"
    class ContextMenu; ///< page/context_menu.h
    class Pointer;     ///< page/page_pointer.h

    static const SerializableType<CPageDisplay> cType;

    /// The number of the page's own menu.
    static constexpr int kMenu = 107;

    /// Without a type of its own the page is a blank one.
    explicit CPageDisplay(const CAppPaged::PageType* pageType = nullptr);
    ~CPageDisplay() override;

    /// The page's record, then the items in their stacking order.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypePageDisplay; }

    /// Makes the page's window in `parent`, in browse mode, and then tells every item.
    bool activate(QWidget& parent, bool flag) override;
    void deactivate() override;
    /// Offers the command to the items, the bottom one first, before the page takes its own.
    bool command(int id, int notification) override;
    void size(int width, int height) override;
    bool keyDown(int key) override;
    bool character(char16_t unit) override;
    void menuPopUp(QMenu& menu) override;
    /// Zooms the topmost item at that place.
    bool zoom(int steps, const QPoint& place) override;

    /// The items, the bottom one first.
    using Items = std::vector<std::unique_ptr<CItem>>;
    [[nodiscard]] const Items& items() const { return m_items; }
    /// Puts an item on top of the others; its menu joins the page's.
    CItem& addItem(std::unique_ptr<CItem> item);
    /// Has `prepare` called for each item before it is drawn and hears that it is shown
    /// (CItem::windowCreated).
    void beforeItemIsShown(std::function<void(CItem&)> prepare) { m_prepare = std::move(prepare); }
    /// The topmost item at a place, null if there is none.
    [[nodiscard]] CItem* itemAt(PagePoint place) const;

    /// The item that the stylus chose last; null for none.
    [[nodiscard]] CItem* selected() const { return m_selected; }
    void select(CItem* item) { m_selected = item; }
    [[nodiscard]] bool layoutMode() const { return m_layoutMode; }

    /// How many device pixels of the page's upper part something covers, as long as it has this
    /// window: items that have something to say keep it below.
    void setCoveredTop(int height);
    [[nodiscard]] int coveredTop() const { return m_coveredTop; }
    [[nodiscard]] ContextMenu& contextMenu() { return *m_contextMenu; }

    /// The page's size; empty before it had a window for the first time.
    [[nodiscard]] QSize deviceSize() const { return m_deviceSize; }

    /// Has the page painted: when the event loop comes to it, or at once.
    void invalidate();
    void refresh();
    /// Has a part of it painted, in device pixels, because nothing else of it has changed.
    void invalidate(const QRect& part);

    /// The problem of the page's items, for a person: the first one's that has something to say,
    /// from the top. Empty while all is well.
    [[nodiscard]] QString statusText() const;
    /// What the page shows, found in the same way.
    [[nodiscard]] QString caption() const;

    void onPaint(QPaintDevice& target, const QRegion& exposed) override;
    void onLeftButton(bool doubleClick, std::int16_t x, std::int16_t y, Qt::KeyboardModifiers keys)
        override;
    /// A choice of an item's menu.
    void onCommand(int id, QWidget* control, int notification) override;
    void onTimer(int id) override;
    bool windowProcedure(QEvent& event) override;

protected:
    /// The user deletes an item, which is off the page already and about to go: anyone who
    /// remembers it must forget it now, since a later one may have its address. Overrides call this
    /// one.
    virtual void itemDeleted(const CItem& item);

private:
    void followDeviceSize();
    [[nodiscard]] QRegion staleParts(QRegion exposed);
    void drawItems(const QRect& part);
    void prepare(CItem& item);
    void pointerEvent(QEvent& event);
    void setLayoutMode(bool on);
    void chooseAndAddItem();
    void deleteSelected();
    void bringSelectedToFront();
    [[nodiscard]] std::unique_ptr<CItem> takeSelected();
    void offerUndo(const CItem& item, std::size_t place);
    void putBack(const QByteArray& item, std::size_t place);

    QSize m_deviceSize;
    bool m_layoutMode = false;
    int m_coveredTop = 0;
    bool m_sizing = false; // half of the items have their new places
    CItem* m_selected = nullptr;
    std::function<void(CItem&)> m_prepare;
    PageStylus m_stylus;
    std::unique_ptr<ContextMenu> m_contextMenu;
    std::unique_ptr<Pointer> m_pointer;
    ZoomInput m_zoomInput;
    BackBuffer m_buffer;
    bool m_allStale = true; ///< the buffer is older than what the items show,
    QRegion m_partStale;    ///< or this part of it
    Items m_items;          // last: items may still ask for the rest while they go
};

/// A page has a window now, or none any more, or its layout mode has begun or ended.
struct PageModeChange {
    CPageDisplay& page;
};

} // namespace raincast
