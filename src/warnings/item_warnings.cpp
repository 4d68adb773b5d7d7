// SPDX-License-Identifier: MIT
#include "warnings/item_warnings.h"

#include "page/page_display.h"
#include "page/taps.h"
#include "radar/radar_state.h"
#include "warnings/warning_area.h"
#include "warnings/warning_watch.h"
#include "warnings/warnings_dialog.h"
#include "window/command_set.h"
#include "window/commands.h"
#include "window/message_box.h"

#include <QChar>
#include <QMenu>

#include <algorithm>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

struct WarningKey {
    char16_t unit;
    int command;
};
constexpr WarningKey kKeys[] = {{u'W', kListWarnings}, {u'D', kDismissWarning}};

} // namespace

void ItemWarnings::follow() {
    const auto& warnings = m_state.warnings;
    const QString source = m_state.cacheBranch;
    const auto known = m_state.showWarnings ? warnings.texts : nullptr;
    if (m_watch != nullptr && (known != m_told || source != m_source)) {
        m_told = known;
        m_source = source;
        m_watch->take({source, warnings.siteId, warnings.range, known, warnings.fetched});
    }
}

bool ItemWarnings::command(int id) {
    if (id == kListWarnings) {
        listAll();
        return true;
    }
    if (id == kDismissWarning) {
        return m_watch != nullptr && m_watch->dismiss();
    }
    return false;
}

bool ItemWarnings::character(char16_t unit) {
    const QChar key = QChar(unit).toUpper();
    const auto* const found =
        std::find_if(std::begin(kKeys), std::end(kKeys), [key](const WarningKey& each) {
            return key == QChar(each.unit);
        });
    return found != std::end(kKeys) && command(found->command);
}

void ItemWarnings::prepareMenu(QMenu& menu) const {
    enableCommand(menu, kDismissWarning, m_watch != nullptr && m_watch->warns());
}

bool ItemWarnings::tapped(QPoint place) {
    List there = at(place);
    const int near = fingerTremble(); // beside an outline that is small
    for (const QPoint beside :
         {QPoint(near, 0), QPoint(-near, 0), QPoint(0, near), QPoint(0, -near)}) {
        there = there.empty() ? at(place + beside) : std::move(there);
    }
    if (there.empty()) {
        return false;
    }
    list(std::move(there));
    return true;
}

// What the picture shows.
ItemWarnings::List ItemWarnings::shown() const {
    const bool drawn = warningsUse(m_state) == WarningsUse::drawn;
    return drawn && m_state.warnings.texts ? m_state.warnings.texts->warnings : List();
}

ItemWarnings::List ItemWarnings::at(QPoint place) const {
    List there = shown();
    const auto position = m_item.positionAt({place.x(), place.y()});
    std::erase_if(there, [&position](const WarningText& warning) {
        return !position || !warnsAt(warning, *position);
    });
    return there;
}

QString ItemWarnings::whyNone() const {
    if (!m_state.showWarnings) {
        return Text::tr("Warnings are switched off.\nMenu: Weather, Layers");
    }
    if (warningsUse(m_state) != WarningsUse::drawn) {
        return Text::tr("There is no picture of warnings.");
    }
    return m_state.warnings.texts ? Text::tr("There are no warnings in this picture.")
                                  : Text::tr("The server has no texts of warnings.");
}

void ItemWarnings::listAll() {
    List all = shown();
    if (all.empty()) {
        messageBox(m_item.page()->widget(), whyNone(), Text::tr("Warnings"));
    } else {
        list(std::move(all));
    }
}

void ItemWarnings::list(List warnings) {
    WarningsDialog(std::move(warnings)).run(m_item.page()->widget());
}

} // namespace raincast
