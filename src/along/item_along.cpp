// SPDX-License-Identifier: MIT
#include "along/item_along.h"

#include "core/data_size.h"
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
    const QString size = dataSizeText(result.bytes);
    const QString sites = result.wanted == 1 ? QStringLiteral("1 site")
                                             : QStringLiteral("%1 sites").arg(result.wanted);
    QString text =
        result.sites == result.wanted
            ? QStringLiteral("Taken along: %1, %2.").arg(sites, size)
            : QStringLiteral("Taken along: %1 of %2 whole, %3.").arg(result.sites).arg(sites, size);
    if (!result.stopped.isEmpty()) {
        text = result.stopped + u' ' + text;
    }
    return text;
}

QString missingText(const QStringList& missing) {
    QStringList lines = missing.mid(0, kMostLines);
    if (missing.size() > kMostLines) {
        lines += QStringLiteral("And %1 more.").arg(missing.size() - kMostLines);
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
        return AlongFrom{{fix.latitude, fix.longitude}, QStringLiteral("your position")};
    }
    if (m_item.placed()) {
        return AlongFrom{m_item.centrePosition(), QStringLiteral("the map's middle")};
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
    m_row.say(QStringLiteral("Taking the weather along..."), QStringLiteral("&Cancel"));
    m_toShow.clear();
    m_taking = std::make_unique<TakingAlong>(
        AlongPlan{siteIds, scene.state, scene.servers}, scene.downloads,
        [this](const TakingAlong::Progress& progress) {
            m_row.goOn(QStringLiteral("Taking along %1: %2 of %3, %4")
                           .arg(progress.thing)
                           .arg(progress.done)
                           .arg(progress.wanted)
                           .arg(dataSizeText(progress.bytes)));
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
        m_row.say(summary(kept), QStringLiteral("&OK"));
    } else {
        const QString count = m_toShow.size() == 1
                                  ? QStringLiteral(" 1 thing is missing.")
                                  : QStringLiteral(" %1 things are missing.").arg(m_toShow.size());
        m_row.say(summary(kept) + count, QStringLiteral("&Show"));
    }
}

// Cancels, shows what is missing, or takes note of the end.
void ItemAlong::rowPressed() {
    if (running()) {
        stop(QStringLiteral("Cancelled."));
        return;
    }
    if (const QStringList missing = std::exchange(m_toShow, {}); !missing.isEmpty()) {
        messageBox(m_item.page()->widget(), missingText(missing), QStringLiteral("Taken Along"));
    }
}

} // namespace raincast
