// SPDX-License-Identifier: MIT
#include "page/context_menu.h"

#include "page/item.h"
#include "window/command_set.h"
#include "window/device_pixels.h"

#include <QMenu>
#include <QMouseEvent>

namespace raincast {

namespace {

// Keeps the rest of a press from the menu that it opened: lifting the stylus would choose what
// happens to be under it, or close the menu.
class RestOfPress : public QObject {
public:
    explicit RestOfPress(QMenu& menu) : QObject(&menu) { menu.installEventFilter(this); }

    bool eventFilter(QObject* menu, QEvent* event) override {
        switch (event->type()) {
        case QEvent::MouseMove:
            return held(*menu, static_cast<const QMouseEvent&>(*event));
        case QEvent::MouseButtonRelease:
            menu->removeEventFilter(this);
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: // the rest went elsewhere
            menu->removeEventFilter(this);
            return false;
        default:
            return false;
        }
    }

private:
    bool held(QObject& menu, const QMouseEvent& move) {
        if (move.buttons() == Qt::NoButton) {
            menu.removeEventFilter(this);
        }
        return move.buttons() != Qt::NoButton;
    }
};

} // namespace

CPageDisplay::ContextMenu::ContextMenu(CPageDisplay& page) : m_page(page) {}

CPageDisplay::ContextMenu::~ContextMenu() = default;

bool CPageDisplay::ContextMenu::open(PagePoint place, By by) {
    const Items& items = m_page.items();
    for (auto below = items.rbegin(); below != items.rend(); ++below) {
        CItem& item = **below;
        if (!item.rectangle().contains(place)) {
            continue;
        }
        const auto rows =
            item.contextMenu(place.x - item.rectangle().left, place.y - item.rectangle().top);
        if (!rows.empty()) {
            m_item = &item;
            popUp(rows, place, by);
            return true;
        }
    }
    return false;
}

void CPageDisplay::ContextMenu::popUp(std::span<const MenuRow> rows, PagePoint place, By by) {
    QWidget& window = *m_page.widget();
    if (!m_commands) {
        m_commands = std::make_unique<CommandSet>(window);
    }
    if (m_menu) {
        m_menu->close();
    }
    m_menu = new QMenu(&window);
    m_menu->setAttribute(Qt::WA_DeleteOnClose);
    m_commands->fill(*m_menu, rows);
    if (by == By::heldPress) {
        new RestOfPress(*m_menu);
    }
    m_menu->popup(toScreen(window, {place.x, place.y}));
}

void CPageDisplay::ContextMenu::command(int id) {
    if (m_item != nullptr) {
        m_item->command(id, clicked);
    }
}

void CPageDisplay::ContextMenu::forget(const CItem& item) {
    if (&item == m_item) {
        m_item = nullptr;
    }
}

void CPageDisplay::ContextMenu::reset() {
    m_item = nullptr;
    m_commands.reset();
}

} // namespace raincast
