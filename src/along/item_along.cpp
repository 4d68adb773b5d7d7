// SPDX-License-Identifier: MIT
#include "along/item_along.h"

#include "map/item_map_view.h"
#include "window/command_set.h"
#include "window/message_box.h"

#include <QMenu>
#include <QStorageInfo>
#include <QWidget>

#include <utility>

namespace raincast {

namespace {

/// Lines that fit a small screen.
constexpr qsizetype kMostLines = 6;

QString summary(const AlongResult& result) {
    const QString size = Text::dataSize(result.bytes);
    const QString sites = Text::counted("%n sites", "%n site", result.wanted);
    QString text =
        result.sites == result.wanted
            ? Text::tr("Taken along: %1, %2.").arg(sites, size)
            : Text::tr("Taken along: %1 of %2 whole, %3.").arg(result.sites).arg(sites, size);
    if (!result.stopped.isEmpty()) {
        text = result.stopped + u' ' + text;
    }
    return text;
}

QString missingText(const QStringList& missing) {
    QStringList lines = missing.mid(0, kMostLines);
    if (missing.size() > kMostLines) {
        lines += Text::tr("And %1 more.").arg(missing.size() - kMostLines);
    }
    return lines.join(u'\n');
}

} // namespace

ItemAlong::ItemAlong(CItemMapView& item, Scene scene)
    : m_item(item), m_scene(std::move(scene)), m_row(item, [this] { rowPressed(); }) {}

ItemAlong::~ItemAlong() = default;

std::optional<AlongFrom> ItemAlong::from() const {
    const CDataGPSPosition& fix = m_item.lastFix();
    if (fix.valid()) {
        return AlongFrom{{fix.latitude, fix.longitude}, Text::tr("your position")};
    }
    if (m_item.placed()) {
        return AlongFrom{m_item.centrePosition(), Text::tr("the map's middle")};
    }
    return std::nullopt;
}

void ItemAlong::prepareMenu(QMenu& menu) const {
    enableCommand(menu, kTakeAlong, from() && !running());
}

bool ItemAlong::command(int id) {
    if (id != kTakeAlong) {
        return false;
    }
    if (from() && !running()) {
        ask();
    }
    return true;
}

void ItemAlong::ask() {
    const RadarState& state = m_scene().state;
    const auto freeBytes = [folder = state.cacheFolder] {
        return folder.isEmpty() ? 0 : QStorageInfo(folder).bytesAvailable();
    };
    AlongDialog dialog(*from(), state, freeBytes);
    if (dialog.run(m_item.page()->widget()) == Dialog::kOk) {
        begin(dialog.siteIds());
    }
}

void ItemAlong::begin(const std::vector<QString>& siteIds) {
    const RadarScene scene = m_scene();
    m_row.say(Text::tr("Taking the weather along..."), Text::tr("&Cancel"));
    m_toShow.clear();
    m_taking = std::make_unique<TakingAlong>(
        AlongPlan{siteIds, scene.state, scene.servers}, scene.downloads,
        [this](const TakingAlong::Progress& progress) {
            m_row.goOn(Text::tr("Taking along %1: %2 of %3, %4")
                           .arg(progress.thing)
                           .arg(progress.done)
                           .arg(progress.wanted)
                           .arg(Text::dataSize(progress.bytes)));
        },
        [this](const AlongResult& result) { ended(result); }
    );
}

void ItemAlong::stop(const QString& why) {
    if (running()) {
        AlongResult result = m_taking->result();
        result.stopped = why;
        ended(result);
    }
}

void ItemAlong::ended(const AlongResult& result) {
    const AlongResult kept = result; // it goes with what it is of
    m_taking.reset();
    m_toShow = kept.missing;
    if (m_toShow.isEmpty()) {
        m_row.say(summary(kept), Text::tr("&OK"));
    } else {
        const QString count =
            Text::counted("%n things are missing.", "%n thing is missing.", m_toShow.size());
        m_row.say(summary(kept) + u' ' + count, Text::tr("&Show"));
    }
}

// Cancels, shows what is missing, or takes note of the end.
void ItemAlong::rowPressed() {
    if (running()) {
        stop(Text::tr("Cancelled."));
        return;
    }
    if (const QStringList missing = std::exchange(m_toShow, {}); !missing.isEmpty()) {
        messageBox(m_item.page()->widget(), missingText(missing), Text::tr("Taken Along"));
    }
}

} // namespace raincast
