// SPDX-License-Identifier: MIT
#include "page/context_menu.h"

#include "page/item.h"
#include "window/command_set.h"
#include "window/device_pixels.h"

#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QWidgetAction>

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

/// Words above a menu's entries. They cannot be chosen, and are as dark as what can be.
void addHeading(QMenu& menu, const QString& words) {
    constexpr int kMargin = 6;
    auto* const label = new QLabel(words, &menu);
    label->setMargin(kMargin);
    label->setTextFormat(Qt::PlainText);
    QPalette colours = label->palette();
    colours.setColor(
        QPalette::Disabled, QPalette::WindowText,
        colours.color(QPalette::Active, QPalette::WindowText)
    );
    label->setPalette(colours);
    auto* const heading = new QWidgetAction(&menu);
    heading->setText(words);
    heading->setDefaultWidget(label);
    heading->setEnabled(false);
    menu.addAction(heading);
    menu.addSeparator();
}

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
        const int x = place.x - item.rectangle().left;
        const int y = place.y - item.rectangle().top;
        const auto rows = item.contextMenu(x, y);
        if (!rows.empty()) {
            m_item = &item;
            popUp(rows, item.contextHeading(x, y), place, by);
            return true;
        }
    }
    return false;
}

void CPageDisplay::ContextMenu::popUp(
    std::span<const MenuRow> rows, const QString& heading, PagePoint place, By by
) {
    QWidget& window = *m_page.widget();
    if (!m_commands) {
        m_commands = std::make_unique<CommandSet>(window);
    }
    if (m_menu) {
        m_menu->close();
    }
    m_menu = new QMenu(&window);
    m_menu->setAttribute(Qt::WA_DeleteOnClose);
    if (!heading.isEmpty()) {
        addHeading(*m_menu, heading);
    }
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
