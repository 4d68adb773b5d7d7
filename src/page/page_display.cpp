// SPDX-License-Identifier: MIT
#include "page/page_display.h"

#include "core/listener.h"
#include "core/user_change.h"
#include "page/context_menu.h"
#include "page/item.h"
#include "page/item_catalogue.h"
#include "page/item_painter.h"
#include "page/page_pointer.h"
#include "page/page_type.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"
#include "persist/serializable_list.h"
#include "window/command_set.h"
#include "window/device_pixels.h"
#include "window/menu_table.h"
#include "window/undo.h"

#include <QBuffer>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace raincast {

const SerializableType<CPageDisplay> CPageDisplay::cType{kTypePageDisplay};

class CPageDisplay::Type : public CAppPaged::PageType {
public:
    Type() : PageType(Text::marked("Blank customizable page"), kRankBlankPage) {}
    [[nodiscard]] std::unique_ptr<CAppPaged::Page> create(QWidget* /*window*/) const override {
        return std::make_unique<CPageDisplay>(this);
    }
};

namespace {

const CPageDisplay::Type blankPage;

constexpr MenuRow layoutRows[] = {
    menuEntry(kToggleLayout, Text::marked("&Layout mode")),
    menuEntry(kAddItem, Text::marked("&Add item...")),
    menuEntry(kDeleteItem, Text::marked("&Delete item")),
    menuEntry(kBringToFront, Text::marked("&Bring to front")),
};
constexpr MenuRow popupRows[] = {subMenu(Text::marked("&Layout"), layoutRows)};
constexpr MenuRow barRows[] = {subMenu("page", popupRows)};
const MenuTableRecord layoutMenu{CPageDisplay::kMenu, barRows};

// Offers something to items in their order until one takes it.
template<typename Offer>
bool offer(const CPageDisplay::Items& items, Offer taken) {
    return std::any_of(items.begin(), items.end(), [&taken](const auto& item) {
        return taken(*item);
    });
}

// The first text, from the top, that is not empty.
template<typename TextOf>
QString firstText(const CPageDisplay::Items& items, TextOf textOf) {
    for (auto item = items.rbegin(); item != items.rend(); ++item) {
        const QString text = textOf(**item);
        if (!text.isEmpty()) {
            return text;
        }
    }
    return {};
}

// The logical pixels that show a part in device pixels, and more at its edges.
QRect toLogicalPixels(const QWidget& widget, const QRect& devicePixels) {
    const double ratio = widget.devicePixelRatioF();
    const QRectF part(
        devicePixels.x() / ratio, devicePixels.y() / ratio, devicePixels.width() / ratio,
        devicePixels.height() / ratio
    );
    return part.toAlignedRect().adjusted(-1, -1, 1, 1); // the widget's own corner was rounded, too
}

} // namespace

CPageDisplay::CPageDisplay(const CAppPaged::PageType* pageType)
    : Page(pageType != nullptr ? pageType : &blankPage), m_stylus(*this),
      m_contextMenu(std::make_unique<ContextMenu>(*this)),
      m_pointer(std::make_unique<Pointer>(*this)) {
    addMenu(kMenu);
}

CPageDisplay::~CPageDisplay() {
    if (widget() != nullptr) {
        CPageDisplay::deactivate(); // whoever was told of its window is told of its end
    }
}

bool CPageDisplay::Read(CSerialReader& reader) {
    return Page::Read(reader) &&
           reader.readObjects<CItem>(CountKind::signedCount, [this](std::unique_ptr<CItem> item) {
               addItem(std::move(item));
           });
}

bool CPageDisplay::Write(CSerialWriter& writer) const {
    return Page::Write(writer) && writer.writeObjects(m_items);
}

bool CPageDisplay::activate(QWidget& parent, bool /*flag*/) {
    m_layoutMode = false;
    setCoveredTop(0);
    m_selected = nullptr;
    m_stylus.reset();
    m_contextMenu->reset();
    m_pointer->left();
    std::for_each(m_items.begin(), m_items.end(), [this](const auto& item) { prepare(*item); });
    auto* const window = new QWidget(&parent);
    window->setWindowTitle(shownName());
    window->setAccessibleName(shownName());
    window->setCursor(Qt::ArrowCursor);
    // Painting covers everything; an erased background would flicker.
    window->setAttribute(Qt::WA_OpaquePaintEvent);
    window->setAttribute(Qt::WA_NoSystemBackground);
    window->setMouseTracking(true);
    ZoomInput::enable(*window);
    attach(*window);
    size(parent.width(), parent.height());
    window->show();
    setLayoutMode(false);
    for (const auto& item : m_items) {
        item->windowCreated();
    }
    return true;
}

void CPageDisplay::prepare(CItem& item) {
    if (m_prepare) {
        m_prepare(item);
    }
}

void CPageDisplay::deactivate() {
    if (QWidget* const window = widget()) {
        destroyWindow(*window);
    }
    m_buffer.release();
    setLayoutMode(false);
}

bool CPageDisplay::command(int id, int notification) {
    if (offer(m_items, [=](CItem& item) { return item.command(id, notification); })) {
        return true;
    }
    switch (id) {
    case kToggleLayout:
        setLayoutMode(!m_layoutMode);
        break;
    case kAddItem:
        chooseAndAddItem();
        return true;
    case kDeleteItem:
        deleteSelected();
        break;
    case kBringToFront:
        bringSelectedToFront();
        break;
    default:
        return false;
    }
    invalidate();
    return true;
}

void CPageDisplay::setLayoutMode(bool on) {
    m_layoutMode = on;
    PageModeChange change{*this};
    Listener<PageModeChange>::Notify(change);
}

void CPageDisplay::setCoveredTop(int height) {
    const int before = std::exchange(m_coveredTop, height);
    if (before == height) {
        return;
    }
    for (const auto& item : m_items) {
        item->coveredTopChanged(before);
    }
    invalidate();
}

void CPageDisplay::chooseAndAddItem() {
    auto chosen = selectDisplayItem(widget());
    if (!chosen) {
        return;
    }
    CItem& item = addItem(std::move(chosen));
    prepare(item);
    item.setRectangle(item.rectangle());
    setLayoutMode(true);
    UserChange::announce();
    // Last: a new item may show a dialog of its own.
    item.windowCreated();
}

void CPageDisplay::deleteSelected() {
    const auto place = std::find_if(m_items.begin(), m_items.end(), [this](const auto& each) {
        return each.get() == m_selected;
    });
    const auto position = static_cast<std::size_t>(place - m_items.begin());
    const auto item = takeSelected();
    m_selected = nullptr;
    if (!item) {
        return;
    }
    itemDeleted(*item);
    UserChange::announce();
    const auto needs = [&item](const auto& other) { return other->menuId() == item->menuId(); };
    if (std::none_of(m_items.begin(), m_items.end(), needs)) {
        removeMenu(item->menuId());
    }
    offerUndo(*item, position);
}

// What is put back is made of what a page file would hold: all that the item does has ended.
void CPageDisplay::offerUndo(const CItem& item, std::size_t place) {
    Undo* const undo = application() != nullptr ? application()->undo() : nullptr;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CSerialWriter writer(buffer);
    const QString name = ItemCatalogueEntry::nameOf(item.GetTypeId());
    if (undo != nullptr && !name.isEmpty() && writer.writeObject(item) && writer.finish()) {
        undo->offer(Undo::deleted(name), [this, bytes = buffer.data(), place] {
            putBack(bytes, place);
        });
    }
}

void CPageDisplay::putBack(const QByteArray& item, std::size_t place) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(item.constData());
    CSerialReader reader({bytes, static_cast<std::size_t>(item.size())});
    std::unique_ptr<CSerializable> object;
    if (!reader.readObject(object) || dynamic_cast<CItem*>(object.get()) == nullptr) {
        destroyObject(std::move(object));
        return;
    }
    CItem& added = addItem(std::unique_ptr<CItem>(dynamic_cast<CItem*>(object.release())));
    const auto behind =
        m_items.begin() + static_cast<std::ptrdiff_t>(std::min(place, m_items.size() - 1));
    std::rotate(behind, m_items.end() - 1, m_items.end());
    UserChange::announce();
    if (widget() != nullptr) {
        m_selected = &added;
        prepare(added);
        added.followPageSize();
        invalidate();
        added.windowCreated(); // last: it may show a dialog
    }
}

void CPageDisplay::itemDeleted(const CItem& item) {
    m_contextMenu->forget(item);
    m_pointer->forget(item);
}

void CPageDisplay::bringSelectedToFront() {
    if (auto item = takeSelected()) {
        m_items.push_back(std::move(item));
        UserChange::announce();
    }
}

std::unique_ptr<CPageDisplay::CItem> CPageDisplay::takeSelected() {
    const auto found = std::find_if(m_items.begin(), m_items.end(), [this](const auto& item) {
        return item.get() == m_selected;
    });
    if (found == m_items.end()) {
        return nullptr;
    }
    auto item = std::move(*found);
    m_items.erase(found);
    return item;
}

CPageDisplay::CItem& CPageDisplay::addItem(std::unique_ptr<CItem> item) {
    m_items.push_back(std::move(item));
    m_items.back()->attachTo(*this);
    return *m_items.back();
}

CPageDisplay::CItem* CPageDisplay::itemAt(PagePoint place) const {
    const auto found = std::find_if(m_items.rbegin(), m_items.rend(), [place](const auto& item) {
        return item->rectangle().contains(place);
    });
    return found != m_items.rend() ? found->get() : nullptr;
}

void CPageDisplay::size(int width, int height) {
    if (QWidget* const window = widget()) {
        window->setGeometry(0, 0, width, height);
        followDeviceSize();
        invalidate();
    }
}

// The size in device pixels changes with the window's, and with its place and its screen alone.
void CPageDisplay::followDeviceSize() {
    const QSize present = deviceRect(*widget()).size();
    m_allStale = m_buffer.fit(*widget(), present) || m_allStale;
    if (present == m_deviceSize) {
        return;
    }
    m_deviceSize = present;
    m_sizing = true;
    for (const auto& item : m_items) {
        item->followPageSize();
    }
    m_sizing = false;
}

bool CPageDisplay::keyDown(int key) {
    return offer(m_items, [key](CItem& item) { return item.keyDown(key); });
}

bool CPageDisplay::character(char16_t unit) {
    return offer(m_items, [unit](CItem& item) { return item.character(unit); });
}

void CPageDisplay::menuPopUp(QMenu& menu) {
    checkCommand(menu, kToggleLayout, m_layoutMode);
    enableCommand(menu, kDeleteItem, m_selected != nullptr);
    enableCommand(menu, kBringToFront, m_selected != nullptr);
    for (const auto& item : m_items) {
        item->menuPopUp(menu);
    }
}

bool CPageDisplay::zoom(int steps, const QPoint& place) {
    CItem* const item = itemAt({place.x(), place.y()});
    if (item == nullptr) {
        return false;
    }
    const PageRectangle& corner = item->rectangle();
    return item->zoom(steps, place.x() - corner.left, place.y() - corner.top);
}

void CPageDisplay::invalidate() {
    m_allStale = true;
    if (QWidget* const window = widget()) {
        window->update();
    }
}

void CPageDisplay::invalidate(const QRect& part) {
    QWidget* const window = widget();
    if (window != nullptr && !part.isEmpty()) {
        m_partStale |= part;
        window->update(toLogicalPixels(*window, part));
    }
}

void CPageDisplay::refresh() {
    if (QWidget* const window = widget(); window != nullptr && !m_sizing) {
        m_allStale = true;
        window->repaint();
    } else {
        invalidate();
    }
}

QString CPageDisplay::statusText() const {
    return firstText(m_items, [](const CItem& item) { return item.statusText(); });
}

QString CPageDisplay::caption() const {
    return firstText(m_items, [](const CItem& item) { return item.caption(); });
}

void CPageDisplay::onPaint(QPaintDevice& target, const QRegion& exposed) {
    followDeviceSize();
    if (m_buffer.image().isNull()) {
        return;
    }
    for (const QRect& part : staleParts(exposed)) {
        drawItems(part);
    }
    m_buffer.blit(target);
}

// Everything, unless it is known that only parts have changed. Qt itself exposes what has other
// colours or letters now.
QRegion CPageDisplay::staleParts(QRegion exposed) {
    constexpr int kMostParts = 6; // each takes a drawing of all items
    const QRect whole = m_buffer.image().rect();
    const QRegion parts = std::exchange(m_partStale, QRegion()) & whole;
    for (const QRect& part : parts) {
        exposed -= toLogicalPixels(*widget(), part);
    }
    if (std::exchange(m_allStale, false) || parts.isEmpty() || !exposed.isEmpty()) {
        return whole;
    }
    return parts.rectCount() > kMostParts ? parts.boundingRect() : parts;
}

void CPageDisplay::drawItems(const QRect& part) {
    const QWidget& window = *widget();
    QPainter painter(&m_buffer.image());
    if (part != m_buffer.image().rect()) {
        painter.setClipRect(part);
    }
    painter.setFont(window.font());
    QRegion open(painter.viewport());
    for (const auto& item : m_items) {
        open -= item->opaqueArea();
    }
    for (const QRect& rectangle : open) {
        painter.fillRect(rectangle, window.palette().color(QPalette::Base));
    }
    for (const auto& item : m_items) {
        paintItem(painter, *item, window.palette());
        if (m_layoutMode) {
            paintLayoutMarks(
                painter, item->rectangle(), item.get() == m_selected, m_stylus.gripSize()
            );
        }
    }
}

void CPageDisplay::onLeftButton(
    bool doubleClick, std::int16_t x, std::int16_t y, Qt::KeyboardModifiers keys
) {
    m_stylus.down({x, y}, keys, doubleClick ? PageStylus::Press::second : PageStylus::Press::first);
}

void CPageDisplay::onCommand(int id, QWidget* /*control*/, int /*notification*/) {
    m_contextMenu->command(id);
}

void CPageDisplay::onTimer(int id) {
    if (id == PageStylus::kHoldTimer) {
        m_stylus.hold();
    } else if (id == Pointer::kRestTimer) {
        m_pointer->rested();
    }
}

bool CPageDisplay::windowProcedure(QEvent& event) {
    if (const auto step = m_zoomInput.handle(*widget(), event)) {
        if (step->pressLost) {
            m_stylus.lose();
        }
        zoom(step->steps, step->place);
        return true;
    }
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        pointerEvent(event);
        // The pointer's events end here: those that the widget leaves alone would climb to the
        // main window.
        event.accept();
        return true;
    case QEvent::Leave:
        m_pointer->left();
        return Window::windowProcedure(event);
    default:
        return Window::windowProcedure(event);
    }
}

void CPageDisplay::pointerEvent(QEvent& event) {
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    const QPoint place = toDevicePixels(*widget(), mouse.scenePosition());
    if (event.type() == QEvent::MouseMove) {
        if (mouse.buttons().testFlag(Qt::LeftButton)) {
            m_stylus.move({place.x(), place.y()});
        } else if (mouse.buttons() == Qt::NoButton) {
            m_pointer->moved({place.x(), place.y()});
        }
    } else if (event.type() == QEvent::MouseButtonPress) {
        m_pointer->left();
        Window::windowProcedure(event);
        if (mouse.button() == Qt::RightButton) {
            m_stylus.openMenu({place.x(), place.y()});
        }
    } else if (mouse.button() == Qt::LeftButton) {
        m_stylus.up({place.x(), place.y()});
    }
}

} // namespace raincast
