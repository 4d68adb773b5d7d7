// SPDX-License-Identifier: MIT
#include "page/app_paged.h"

#include "core/user_change.h"
#include "page/dlg_pages.h"
#include "page/empty_hint.h"
#include "page/page.h"
#include "page/page_menu.h"
#include "page/page_type.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"
#include "window/action_row.h"
#include "window/bottom_rows.h"
#include "window/command_set.h"
#include "window/commands.h"
#include "window/dialog_layout.h"
#include "window/dlg_item_type_select.h"
#include "window/screen_metrics.h"
#include "window/zoom_input.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMenu>

#include <algorithm>
#include <iterator>
#include <utility>

namespace raincast {

CAppPaged::CAppPaged() = default;

CAppPaged::~CAppPaged() {
    if (m_rows) {
        m_rows->onLastingHeight({});
    }
    clear();
}

void CAppPaged::attach(QWidget& window, QWidget& client, CommandSet& commands, QMenu& pageMenu) {
    m_client = &client;
    m_commands = &commands;
    m_menu = &pageMenu;
    m_pageMenu = std::make_unique<PageMenu>(*this, pageMenu);
    m_hint = std::make_unique<EmptyHint>(client);
    m_zoomInput = std::make_unique<ZoomInput>();
    auto* const rows = new BottomRows(client);
    m_rows = rows;
    rows->onLastingHeight([this] { fitPage(); });
    m_notice = new QLabel;
    m_notice->setTextFormat(Qt::PlainText);
    m_notice->setWordWrap(true);
    m_notice->setMargin(2 * dialogMargin(ScreenMetrics::current().logPixelsY));
    m_notice->setBackgroundRole(QPalette::ToolTipBase);
    m_notice->setForegroundRole(QPalette::ToolTipText);
    m_notice->setAutoFillBackground(true);
    rows->add(*m_notice, BottomRows::Stay::lasting);
    m_retryNotice = new ActionRow(Text::tr("Try again"), [this] { m_again(); });
    rows->add(*m_retryNotice, BottomRows::Stay::lasting);
    m_undo = new Undo(*rows);
    Window::attach(window, &client);
}

auto CAppPaged::positionOf(const Page* page) const -> std::optional<Position> {
    const auto found = std::find_if(m_pages.begin(), m_pages.end(), [page](const auto& other) {
        return other.get() == page;
    });
    return found == m_pages.end() ? std::nullopt : std::optional<Position>(found - m_pages.begin());
}

CAppPaged::Page& CAppPaged::append(std::unique_ptr<Page> page) {
    page->m_application = this;
    return *m_pages.emplace_back(std::move(page));
}

void CAppPaged::select(std::optional<Position> position) {
    deactivateCurrent();
    if (!position || *position >= m_pages.size() || !m_client) {
        showState();
        return;
    }
    m_current = m_pages[*position].get();
    if (m_menu) {
        m_current->mergeMenus(*m_commands, *m_menu);
    }
    m_current->m_active = true;
    showState();
    m_current->activate(*m_client, true);
    if (m_rows && m_rows->lastingHeight() > 0) {
        fitPage();
    }
}

void CAppPaged::deactivateCurrent() {
    if (Page* const page = std::exchange(m_current, nullptr)) {
        page->unmergeMenus();
        page->m_active = false;
        page->deactivate();
    }
}

auto CAppPaged::nextEnabled() const -> std::optional<Position> {
    const auto current = positionOf(m_current);
    for (Position next = current ? *current + 1 : 0; next < m_pages.size(); ++next) {
        if (m_pages[next]->enabled()) {
            return next;
        }
    }
    return std::nullopt;
}

auto CAppPaged::previousEnabled() const -> std::optional<Position> {
    for (Position previous = positionOf(m_current).value_or(0); previous > 0; --previous) {
        if (m_pages[previous - 1]->enabled()) {
            return previous - 1;
        }
    }
    return std::nullopt;
}

void CAppPaged::nextPage() {
    if (const auto next = nextEnabled()) {
        select(next);
    }
}

void CAppPaged::previousPage() {
    if (const auto previous = previousEnabled()) {
        select(previous);
    }
}

void CAppPaged::nextEnabledWithWrap() {
    if (nextEnabled()) {
        nextPage();
        return;
    }
    const auto first = std::find_if(m_pages.begin(), m_pages.end(), [](const auto& page) {
        return page->enabled();
    });
    if (first != m_pages.end() && first->get() != m_current) {
        select(static_cast<Position>(first - m_pages.begin()));
    }
}

void CAppPaged::dropUndo() {
    if (m_undo) {
        m_undo->drop();
    }
}

void CAppPaged::clear() {
    dropUndo(); // it may know the pages
    select(std::nullopt);
    m_pages.clear();
    showState();
}

void CAppPaged::createDefaultPages() {}

void CAppPaged::restoreDefaultPages() {
    clear();
    createDefaultPages();
    nextEnabledWithWrap();
}

void CAppPaged::deletePage(Position position) {
    if (position >= m_pages.size()) {
        return;
    }
    const Page* const shown = m_current;
    select(std::nullopt);
    const auto place = m_pages.begin() + static_cast<std::ptrdiff_t>(position);
    const auto page = std::make_shared<std::unique_ptr<Page>>(std::move(*place));
    m_pages.erase(place);
    showState();
    UserChange::announce();
    if (m_undo) {
        m_undo->offer(Undo::deleted((*page)->shownName()), [this, page, position, shown] {
            putBack(std::move(*page), position, shown);
        });
    }
}

void CAppPaged::putBack(std::unique_ptr<Page> page, Position position, const Page* shownBefore) {
    const Position place = std::min(position, m_pages.size());
    m_pages.insert(m_pages.begin() + static_cast<std::ptrdiff_t>(place), std::move(page));
    UserChange::announce();
    if (m_current == nullptr) {
        select(positionOf(shownBefore));
    }
    showState();
}

void CAppPaged::replaceByDefaultPages() {
    dropUndo(); // it may know a page
    const Page* const shown = m_current;
    select(std::nullopt);
    const auto pages = std::make_shared<PageList>(std::exchange(m_pages, {}));
    createDefaultPages();
    std::vector<const Page*> instead;
    std::transform(
        m_pages.begin(), m_pages.end(), std::back_inserter(instead),
        [](const auto& page) { return page.get(); }
    );
    UserChange::announce();
    if (m_undo && !pages->empty()) {
        m_undo->offer(Text::tr("Restored default pages."), [this, pages, instead, shown] {
            putBack(std::move(*pages), instead, shown);
        });
    }
    nextEnabledWithWrap(); // last: it may ask for a site
}

// In the place of the default pages; what the user has added since stays.
void CAppPaged::putBack(
    PageList pages, const std::vector<const Page*>& instead, const Page* shownBefore
) {
    select(std::nullopt);
    for (auto& page : m_pages) {
        if (std::find(instead.begin(), instead.end(), page.get()) == instead.end()) {
            pages.push_back(std::move(page));
        }
    }
    m_pages = std::move(pages);
    UserChange::announce();
    select(positionOf(shownBefore));
}

bool CAppPaged::addPage(QWidget* parent) {
    CDlgItemTypeSelect dialog(Text::tr("Select Page Type"));
    std::vector<const PageType*> types;
    for (const PageType* type : PageType::all()) {
        if (!type->name().isEmpty()) {
            dialog.add(Text::of(type->name()));
            types.push_back(type);
        }
    }
    const int result = dialog.run(parent);
    if (result != Dialog::kOk || !dialog.selected()) {
        return false;
    }
    auto page = types[static_cast<std::size_t>(*dialog.selected())]->create(widget());
    if (page == nullptr) {
        return false;
    }
    append(std::move(page));
    UserChange::announce();
    select(m_pages.size() - 1);
    return true;
}

void CAppPaged::swapWithNext(Position position) {
    if (position < m_pages.size() && position + 1 < m_pages.size()) {
        std::swap(m_pages[position], m_pages[position + 1]);
        UserChange::announce();
        showState();
    }
}

void CAppPaged::remove(Position position) {
    if (position >= m_pages.size()) {
        return;
    }
    if (m_pages[position].get() == m_current) {
        select(std::nullopt);
    }
    dropUndo(); // it may know the page
    m_pages.erase(m_pages.begin() + static_cast<std::ptrdiff_t>(position));
    UserChange::announce();
    showState();
}

void CAppPaged::takeFrom(CAppPaged& other) {
    clear();
    for (auto& page : std::exchange(other.m_pages, {})) {
        append(std::move(page));
    }
    select(0); // an empty list has no page to select
}

bool CAppPaged::Read(CSerialReader& reader) {
    clear();
    const bool read =
        reader.readObjects<Page>(CountKind::unsignedCount, [this](std::unique_ptr<Page> page) {
            append(std::move(page));
        });
    reader.readRest(); // a page may wait for a server while it is shown first: all is there by then
    select(0);
    return read;
}

bool CAppPaged::Write(CSerialWriter& writer) const {
    return writer.writeObjects(m_pages);
}

void CAppPaged::onCommand(int id, QWidget* /*control*/, int notification) {
    if (m_current != nullptr && m_current->command(id, notification)) {
        return;
    }
    switch (id) {
    case kPreviousPage:
        previousPage();
        break;
    case kNextPage:
        nextPage();
        break;
    case kPages:
        runPagesDialog();
        break;
    default:
        break;
    }
}

void CAppPaged::runPagesDialog() {
    CDlgPages dialog(*this);
    if (dialog.run(widget()) == Dialog::kOk) {
        select(positionOf(dialog.selectedPage()));
    } else if (dialog.pageWanted()) {
        addPage(widget());
    }
    showState();
}

void CAppPaged::setNotice(const QString& text) {
    if (m_notice) {
        m_notice->setText(text);
        m_notice->setVisible(!text.isEmpty());
    }
}

void CAppPaged::setRetryNotice(const QString& text, std::function<void()> again) {
    m_again = std::move(again);
    if (m_retryNotice) {
        m_retryNotice->setText(text);
        m_retryNotice->setVisible(!text.isEmpty());
    }
}

ActionRow* CAppPaged::addRow(BottomRows::Stay stay, std::function<void()> pressed) {
    auto* const row = m_rows ? new ActionRow({}, std::move(pressed)) : nullptr;
    if (row != nullptr) {
        m_rows->add(*row, stay);
    }
    return row;
}

void CAppPaged::onSize(int /*width*/, int /*height*/) {
    m_hint->fit();
    fitPage();
}

// The page ends above rows that stay: they would cover what an item has at its lower edge.
void CAppPaged::fitPage() {
    if (m_current != nullptr && m_client) {
        const int rows = m_rows ? m_rows->lastingHeight() : 0;
        m_current->size(m_client->width(), std::max(m_client->height() - rows, 0));
    }
}

void CAppPaged::onKey(int key) {
    if (key == Qt::Key_PageUp) {
        previousPage();
    } else if (key == Qt::Key_PageDown) {
        nextPage();
    } else if (m_current != nullptr) {
        m_current->keyDown(key);
    }
}

void CAppPaged::onMenuPopup(QMenu& menu) {
    m_pageMenu->update();
    if (m_current != nullptr) {
        m_current->menuPopUp(menu);
    }
}

// A page's window has its own wheel and fingers; what it leaves comes here.
bool CAppPaged::onZoom(QEvent& event) {
    const bool zooms = event.type() == QEvent::Wheel || event.type() == QEvent::NativeGesture;
    const auto step =
        zooms && m_current != nullptr ? m_zoomInput->handle(*m_client, event) : std::nullopt;
    return step && step->steps != 0 && m_current->zoom(step->steps, step->place);
}

bool CAppPaged::windowProcedure(QEvent& event) {
    switch (static_cast<int>(event.type())) {
    case QEvent::KeyPress:
        onKey(static_cast<const QKeyEvent&>(event).key());
        break;
    case event_type::character:
        if (m_current != nullptr) {
            m_current->character(static_cast<const CharacterEvent&>(event).unit());
        }
        break;
    case event_type::menuPopup:
        onMenuPopup(static_cast<const MenuPopupEvent&>(event).menu());
        break;
    case QEvent::Wheel:
    case QEvent::NativeGesture:
        return onZoom(event);
    default:
        break;
    }
    return Window::windowProcedure(event);
}

// Which pages there are to go to and, where there is nothing to see, how to go on.
void CAppPaged::showState() {
    if (m_hint == nullptr) {
        return;
    }
    m_pageMenu->updateCycling();
    if (m_current != nullptr) {
        m_hint->show({});
    } else if (m_pages.empty()) {
        m_hint->show(Text::tr("There are no pages. To add one, choose \"Pages...\" in the "
                              "menu."));
    } else if (!nextEnabled()) {
        m_hint->show(Text::tr("No page is shown, and none is enabled. To show or to enable "
                              "one, choose \"Pages...\" in the menu."));
    } else {
        m_hint->show(Text::tr("No page is shown. Choose one in the menu, or press Page Down "
                              "for the first one."));
    }
}

} // namespace raincast
