// SPDX-License-Identifier: MIT
#include "warnings/warning_watch.h"

#include "core/clock.h"
#include "core/text.h"
#include "map/mark_manager.h"
#include "player/loop_setting.h"
#include "replay/past_storms.h"
#include "warnings/warning_area.h"
#include "warnings/warning_text_dialog.h"
#include "window/modal.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace raincast {

namespace {

constexpr FileTime kUnknownEndHolds = 60 * kFileTimePerMinute;
constexpr FileTime kLongestWait = 24 * 60 * kFileTimePerMinute;
constexpr FileTime kPerMillisecond = kFileTimePerSecond / 1000;
constexpr std::size_t kMostSites = 16;   // whose texts are kept
constexpr std::size_t kMostIds = 10'000; // that are remembered
constexpr qsizetype kMostIdLetters = 200;
constexpr std::int32_t kSeldom = 600; // heartbeats: only jumps of the clock matter

FileTime endOf(const WarningText& warning, const SiteWarnings& site) {
    return warning.end != 0 ? warning.end : site.fetched + kUnknownEndHolds;
}

bool isReplay() {
    return !replayLine().isEmpty();
}

} // namespace

WarningWatch::WarningWatch(const CMarkManager& marks, Timers& timers, std::function<void()> beep)
    : m_marks(marks), m_beep(std::move(beep)), m_nextEnd(timers.make([this] { refresh(); })),
      m_clockJumps([this] { refresh(); }) {}

WarningWatch::~WarningWatch() {
    delete m_bar;
}

WarningWatch::ClockJumps::ClockJumps(std::function<void()> call)
    : Counter(kSeldom), jumped(std::move(call)) {}

QString WarningWatch::Danger::key(WarnedPlace at) const {
    return id + (at == WarnedPlace::position ? u'P' : u'T');
}

void WarningWatch::take(const SiteWarnings& known) {
    const bool otherSource = !m_sites.empty() && m_sites.front().source != known.source;
    if (otherSource) {
        m_sites.clear();
    }
    if (known.texts) {
        std::erase_if(m_sites, [&known](const SiteWarnings& site) {
            return site.siteId == known.siteId && site.range == known.range;
        });
    }
    if (known.texts && !known.texts->isSample) {
        const auto later = std::find_if(m_sites.begin(), m_sites.end(), [&](const auto& site) {
            return site.fetched <= known.fetched;
        });
        m_sites.insert(later, known);
        m_sites.resize(std::min(m_sites.size(), kMostSites));
    }
    refresh();
}

bool WarningWatch::dismiss() {
    if (m_shown.empty()) {
        return false;
    }
    m_dismissed.insert(m_shown.front().key());
    refresh();
    return true;
}

void WarningWatch::onPublished(CDataGPSPosition& /*position*/) {
    followSurroundings();
}

void WarningWatch::onPublished(NavigationData& /*navigation*/) {
    followSurroundings();
}

// The user may have chosen another zone for times.
void WarningWatch::onPublished(UserChange& /*change*/) {
    followSurroundings();
}

void WarningWatch::onPublished(PageModeChange& change) {
    if (change.page.widget() != nullptr || &change.page == m_page) {
        m_page = &change.page;
        m_window = change.page.widget();
        showBar();
    }
}

WarningWatch::Surroundings WarningWatch::surroundings() const {
    Surroundings present{m_marks.currentPosition(), std::nullopt, LoopSetting::utc()};
    if (m_marks.hasTarget()) {
        present.target = m_marks.target().position();
    }
    return present;
}

void WarningWatch::followSurroundings() {
    if (!m_sites.empty() && surroundings() != m_seen) {
        refresh();
    }
}

void WarningWatch::refresh() {
    const FileTime now = Clock::current().now();
    m_seen = surroundings();
    dropEnded(now);
    const std::vector<Danger> all = dangers(now);
    wakeAt(all);
    m_shown.clear();
    std::copy_if(all.begin(), all.end(), std::back_inserter(m_shown), [this](const auto& danger) {
        return !isDismissed(danger);
    });
    announce(m_shown);
    showBar();
}

void WarningWatch::dropEnded(FileTime now) {
    std::erase_if(m_sites, [now](const SiteWarnings& site) {
        const auto& warnings = site.texts->warnings;
        return std::all_of(warnings.begin(), warnings.end(), [&](const WarningText& warning) {
            return endOf(warning, site) <= now;
        });
    });
}

// Of a warning that several items know, what was fetched last.
std::vector<WarningWatch::Danger> WarningWatch::dangers(FileTime now) const {
    std::vector<Danger> found;
    std::set<QString> known;
    for (const SiteWarnings& site : m_sites) {
        std::set<QString> ids;
        for (const WarningText& warning : site.texts->warnings) {
            const QString id = site.source + u'|' + warning.id.left(kMostIdLetters);
            const FileTime end = endOf(warning, site);
            const auto place = placeOf(warning);
            if (place && end > now && !known.contains(id)) {
                found.push_back({site.texts, &warning, id, *place, end});
            }
            ids.insert(id);
        }
        known.merge(ids);
    }
    std::stable_sort(found.begin(), found.end(), [](const Danger& a, const Danger& b) {
        const int left = dangerOf(*a.warning);
        const int right = dangerOf(*b.warning);
        return left != right ? left > right : a.place < b.place;
    });
    return found;
}

std::optional<WarnedPlace> WarningWatch::placeOf(const WarningText& warning) const {
    if (m_seen.position && warnsAt(warning, *m_seen.position)) {
        return WarnedPlace::position;
    }
    const bool atTarget = m_seen.target && warnsAt(warning, *m_seen.target);
    return atTarget ? std::optional(WarnedPlace::target) : std::nullopt;
}

// Who has dismissed a warning of the own position knows of it at the target.
bool WarningWatch::isDismissed(const Danger& danger) const {
    return m_dismissed.contains(danger.key(WarnedPlace::position)) ||
           m_dismissed.contains(danger.key());
}

void WarningWatch::announce(const std::vector<Danger>& dangers) {
    if (m_announced.size() > kMostIds) {
        m_announced.clear();
    }
    bool isNew = false;
    for (const Danger& danger : dangers) {
        const bool saidOfPosition = m_announced.contains(danger.key(WarnedPlace::position));
        isNew = (m_announced.insert(danger.key()).second && !saidOfPosition) || isNew;
    }
    if (isNew && !isReplay() && Modal::asks()) {
        m_beep();
    }
}

// The clock may be another one when the alarm goes off: all is compared with it again then.
void WarningWatch::wakeAt(const std::vector<Danger>& dangers) {
    m_nextEnd->stop();
    FileTime wait = kLongestWait;
    for (const Danger& danger : dangers) {
        wait = std::min(wait, Clock::current().until(danger.end));
    }
    if (!dangers.empty()) {
        m_nextEnd->start(std::chrono::milliseconds(wait / kPerMillisecond + 1));
    }
}

void WarningWatch::showBar() {
    if (!m_window) {
        return;
    }
    if (m_shown.empty() || m_page->layoutMode()) {
        if (m_bar) {
            m_bar->hide(); // it may be its own button that was pressed
        }
        m_page->setCoveredTop(0);
        return;
    }
    if (!m_bar || m_bar->parentWidget() != m_window) {
        delete m_bar;
        m_bar = new WarningBar(
            *m_window, {[this] { readShown(); }, [this] { dismiss(); },
                        [page = m_page](int height) { page->setCoveredTop(height); }}
        );
    }
    const WarningText& warning = *m_shown.front().warning;
    QString text = warnedText(warning, m_shown.front().place, Clock::current().now());
    if (m_shown.size() > 1) {
        text = Text::tr("%1, and %2 more").arg(text, QString::number(m_shown.size() - 1));
    }
    m_bar->say(isReplay() ? Text::tr("Replay: %1").arg(text) : text, coloursOf(warning));
}

void WarningWatch::readShown() {
    if (!m_shown.empty() && m_window) {
        const Danger danger = m_shown.front();
        WarningTextDialog(*danger.warning).run(m_window);
    }
}

} // namespace raincast
