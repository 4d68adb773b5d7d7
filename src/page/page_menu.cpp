// SPDX-License-Identifier: MIT
#include "page/page_menu.h"

#include "page/global_settings_type.h"
#include "page/page.h"
#include "window/command_set.h"
#include "window/commands.h"
#include "window/screen_metrics.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>

namespace raincast {

namespace {

// The menu that a marking entry stands in, and that entry; it is not seen itself.
struct Place {
    QMenu* menu = nullptr;
    QAction* mark = nullptr;
};

Place findPlace(QMenu& menu, int command) {
    for (QAction* entry : menu.actions()) {
        auto* const submenu = entry->menu<QMenu*>();
        if (submenu == nullptr && commandOf(*entry) == command) {
            entry->setVisible(false);
            return {&menu, entry};
        }
        if (const Place found = submenu ? findPlace(*submenu, command) : Place(); found.menu) {
            return found;
        }
    }
    return {};
}

// In a menu an ampersand marks the letter that chooses the entry.
QString asEntry(QString text) {
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

PageMenu::PageMenu(CAppPaged& application, QMenu& menu)
    : m_application(application), m_menu(&menu),
      m_pageEntries(std::make_unique<QActionGroup>(nullptr)),
      m_settingsEntries(std::make_unique<QObject>()) {
    offerSettings();
    update();
}

PageMenu::~PageMenu() = default;

void PageMenu::offerSettings() {
    const Place place = findPlace(*m_menu, kSettingsPlace);
    if (place.menu == nullptr) {
        return;
    }
    for (const auto* type : CAppPaged::GlobalSettingsType::all()) {
        if (!type->caption().isEmpty()) {
            place.menu->insertAction(place.mark, makeSettingsEntry(*type));
        }
    }
    if (place.menu != m_menu) {
        place.menu->menuAction()->setVisible(!m_settingsEntries->children().isEmpty());
    }
}

QAction* PageMenu::makeSettingsEntry(const CAppPaged::GlobalSettingsType& type) {
    const QString text = asEntry(Text::of(type.caption())) + QStringLiteral("...");
    auto* entry = new QAction(text, m_settingsEntries.get());
    QObject::connect(entry, &QAction::triggered, entry, [this, &type] {
        type.open(m_application.widget());
    });
    return entry;
}

void PageMenu::update() {
    if (!m_menu) {
        return;
    }
    // Without entries of a page their place is nothing to see either.
    findPlace(*m_menu, kPageEntriesPlace);
    updateCycling();
    listPages();
}

void PageMenu::updateCycling() {
    if (m_menu) {
        enableCommand(*m_menu, kPreviousPage, m_application.previousEnabled().has_value());
        enableCommand(*m_menu, kNextPage, m_application.nextEnabled().has_value());
    }
}

void PageMenu::listPages() {
    qDeleteAll(m_pageEntries->actions());
    const Place place = findPlace(*m_menu, kPageListPlace);
    if (place.menu == nullptr) {
        return;
    }
    for (const auto& page : m_application.pages()) {
        if (page->enabled() && m_pageEntries->actions().size() < kMostPages) {
            place.menu->insertAction(place.mark, makePageEntry(*page));
        }
    }
}

QAction* PageMenu::makePageEntry(const CAppPaged::Page& page) {
    const int room = ScreenMetrics::current().available.width() * 3 / 4; // beside the mark
    const QString name = m_menu->fontMetrics().elidedText(page.shownName(), Qt::ElideRight, room);
    auto* entry = new QAction(asEntry(name), m_pageEntries.get());
    entry->setCheckable(true);
    entry->setChecked(&page == m_application.current());
    // By its address: the page may be gone when the entry is chosen, and then it is in no list.
    QObject::connect(entry, &QAction::triggered, entry, [this, chosen = &page] {
        if (const auto position = m_application.positionOf(chosen)) {
            m_application.select(position);
        }
    });
    return entry;
}

} // namespace raincast
