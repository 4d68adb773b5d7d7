// SPDX-License-Identifier: MIT
#include "weather/item_weather_loading.h"

#include "core/clock.h"
#include "core/text.h"
#include "core/user_change.h"
#include "image/cached_frames.h"
#include "radar/animation.h"
#include "radar/cache.h"
#include "weather/first_show.h"
#include "weather/servers_setting.h"
#include "weather/storage.h"

#include <QThreadPool>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace raincast {

CItemWeather::Loading::Loading(CItemWeather& item)
    : m_item(item), m_servers(ServersSetting::current()) {}

bool CItemWeather::Loading::begin(const FirstShow& first) {
    RadarState& state = m_item.m_state;
    if (first.choice) {
        state.product = first.choice->product.value_or(state.product);
        state.animate = state.animate || first.animate;
        load(first.choice->siteId, true);
        return true;
    }
    if (state.siteId.isEmpty() && first.welcomeSite) {
        state.animate = true;
        load(*first.welcomeSite, true);
        return true;
    }
    return false;
}

void CItemWeather::Loading::resume() {
    const bool interrupted = std::exchange(m_interrupted, false);
    if (m_item.placed()) {
        if (interrupted || m_outdated) {
            update();
        }
        return;
    }
    followSource();
    say(Text::tr("Loading..."));
    loadFirst();
}

// The layers need not wait for the frames that are shown later.
void CItemWeather::Loading::loadFirst() {
    cancel();
    const auto first = [state = m_item.m_state, now = Clock::latestNow()] {
        return loadFirstOfCachedRadar(state, now);
    };
    m_resuming.emplace();
    m_resuming->run(first, [this](const CachedRadar& cached) {
        if (cached.frames.empty()) {
            loadCached([this](bool complete) { load(m_item.m_state.siteId, !complete); });
        } else {
            take(cached);
            load(m_item.m_state.siteId, false);
        }
    });
}

void CItemWeather::Loading::loadOthers() {
    if (busy() || m_held || !lacksLaterFrames(m_item.m_state)) {
        return;
    }
    loadCached([this](bool complete) {
        cancel();
        m_item.invalidate();
        if (!complete) {
            update();
        }
    });
}

void CItemWeather::Loading::say(const QString& status) {
    m_item.m_state.status = status;
    m_item.m_state.cause.clear();
    m_item.invalidate();
}

CItemWeather::Loading::~Loading() {
    QObject::disconnect(m_windowGone);
}

void CItemWeather::Loading::watch(QWidget& window) {
    QObject::disconnect(m_windowGone);
    m_windowGone = QObject::connect(&window, &QObject::destroyed, [this] { windowGone(); });
    m_inWindow = true;
}

void CItemWeather::Loading::windowGone() {
    if (pictureComing() && m_inWindow) {
        cancel();
        say({});
        m_interrupted = true;
    }
}

// Loads what the cache has, and then calls.
void CItemWeather::Loading::loadCached(std::function<void(bool complete)> done) {
    cancel();
    const auto load = [state = m_item.m_state, now = Clock::latestNow()] {
        return loadCachedRadar(state, now);
    };
    m_resuming.emplace();
    m_resuming->run(load, [this, done = std::move(done)](const CachedRadar& cached) {
        take(cached);
        done(cached.complete);
    });
}

// The loop begins with them, unless they are those that it shows.
void CItemWeather::Loading::take(const CachedRadar& cached) {
    RadarState& state = m_item.m_state;
    const auto isSame = [](const RadarFrame& a, const RadarFrame& b) { return a.path == b.path; };
    const bool isShown =
        lacksLaterFrames(state) && std::equal(
                                       cached.frames.begin(), cached.frames.end(),
                                       state.frames.begin(), state.frames.end(), isSame
                                   );
    state.frames = cached.frames;
    state.warnings = cached.warnings;
    if (!isShown) {
        rewindAnimation(state);
    }
    m_item.m_player.loop().framesChanged();
}

bool CItemWeather::Loading::running() const {
    return busy() || lacksLaterFrames(m_item.m_state);
}

bool CItemWeather::Loading::pictureComing() const {
    return m_action || (m_resuming && !lacksLaterFrames(m_item.m_state));
}

Downloads& CItemWeather::Loading::downloads() {
    if (m_downloads != nullptr) {
        return *m_downloads;
    }
    if (!m_ownDownloads) {
        m_ownDownloads = std::make_unique<Downloads>();
    }
    return *m_ownDownloads;
}

RadarScene CItemWeather::Loading::scene() {
    followSource();
    m_servers = ServersSetting::current();
    return presentScene();
}

RadarScene CItemWeather::Loading::presentScene() {
    return {m_item.m_state, m_item.m_layers, m_basemaps, *this, m_servers, downloads()};
}

// Uses the part of the cache that belongs to the present source of weather, and drops what the item
// has of another one.
void CItemWeather::Loading::followSource() {
    RadarState& state = m_item.m_state;
    const QString branch = ServersSetting::cacheBranch();
    if (std::exchange(state.cacheBranch, branch) != branch) {
        state.warnings = {};
    }
    const bool hasOthers =
        std::any_of(state.frames.begin(), state.frames.end(), [&branch](const RadarFrame& frame) {
            return !isOfBranch(frame.path, branch);
        });
    if (hasOthers) {
        discardFrames(state);
    }
}

void CItemWeather::Loading::onPublished(ServersChange& change) {
    const bool isOther =
        ServersSetting::current() != std::exchange(m_servers, ServersSetting::current());
    if (!isOther && change.siteId.isEmpty()) {
        return;
    }
    cancel();
    m_item.m_sharp.release();
    m_item.m_along.stop(Text::tr("The servers have changed."));
    followSource();
    m_retry = {};
    m_outdated = true;
    if (!change.left.isEmpty()) {
        QThreadPool::globalInstance()->start([root = m_item.m_state.cacheFolder,
                                              left = change.left] { removeBranch(root, left); });
    }
    if (onScreen() && !change.siteId.isEmpty()) {
        load(change.siteId, true);
    } else if (onScreen()) {
        update();
    }
}

bool CItemWeather::Loading::onScreen() const {
    return m_item.page() != nullptr && m_item.page()->widget() != nullptr;
}

void CItemWeather::Loading::load(const QString& siteId, bool updateRadar) {
    cancel();
    if (!m_held) {
        m_outdated = m_outdated && !updateRadar;
        m_forRadar = updateRadar;
        m_action = LoadBasemaps(scene(), siteId, updateRadar, [this](bool well) { ended(well); });
    }
}

void CItemWeather::Loading::loadThenUpdate(const QString& siteId) {
    load(siteId, false);
    m_updateNext = true;
}

void CItemWeather::Loading::update() {
    const QString& siteId = m_item.m_state.siteId;
    if (siteId.isEmpty() || m_held) {
        return;
    }
    // An image without a place (its page was not shown yet, or its layers could not be loaded) does
    // not show where the user looks: the item keeps its site.
    if (!m_item.placed() || m_outdated) {
        load(siteId, true);
        return;
    }
    cancel();
    m_forRadar = true;
    m_siteBefore = siteId;
    m_action = RequestUpdate(scene(), [this](bool well) { ended(well); });
}

void CItemWeather::Loading::updateDueAt(FileTime now) {
    if (!running() && m_retry.over(Clock::real().now())) {
        update();
        m_dueAt = now;
        if (!running()) {
            settleDue(); // there is no site, or no cache at present
        }
    }
}

void CItemWeather::Loading::stop() {
    if (!running()) {
        return;
    }
    cancel();
    m_retry.ended(false, Clock::real().now());
    say(m_item.m_state.frames.empty() ? Text::tr("Stopped.\n") : QString());
}

void CItemWeather::Loading::hold(bool held) {
    m_held = held;
    if (held) {
        stop();
        m_item.m_sharp.release();
        m_item.m_along.stop(Text::tr("The image cache moves."));
    }
}

void CItemWeather::Loading::ended(bool well) {
    m_action.reset();
    m_progress = {};
    m_item.m_player.loop().framesChanged();
    saySiteChange();
    if (well && m_forRadar && ServersSetting::inUse() == WeatherSource::live) {
        ServersSetting::noteLive();
    }
    m_retry.ended(well, Clock::real().now());
    if (well) {
        m_item.m_sharp.tryAgain();
    }
    settleDue();
    if (std::exchange(m_updateNext, false)) {
        update();
    } else if (!well && m_item.placed() && m_item.shownFrame() == nullptr) {
        // The server has nothing for us: better an old picture of the site than none.
        loadCached([this](bool) {
            cancel();
            m_item.invalidate();
        });
    }
}

void CItemWeather::Loading::cancel() {
    m_inWindow = onScreen();
    m_resuming.reset();
    m_action.reset();
    m_siteBefore.clear();
    m_updateNext = false;
    m_progress = {};
    settleDue();
}

// An update has taken another site if the view has moved there.
void CItemWeather::Loading::saySiteChange() {
    const QString before = std::exchange(m_siteBefore, QString());
    const QString& now = m_item.m_state.siteId;
    if (!before.isEmpty() && before != now && onScreen()) {
        m_siteChange.show(m_item.page()->application(), before, now, [this, before] {
            UserChange::announce();
            load(before, true);
        });
    }
}

// An automatic update has ended.
void CItemWeather::Loading::settleDue() {
    if (const auto due = std::exchange(m_dueAt, std::nullopt)) {
        postponeUpdate(m_item.m_state, *due);
    }
}

void CItemWeather::Loading::repaint() {
    m_item.invalidate();
}

void CItemWeather::Loading::progress(int done, int wanted) {
    m_progress = {done, wanted};
    m_item.invalidate();
}

// With the whole image in view the site stays, even if the item's centre lies outside of the image.
ImagePixel CItemWeather::Loading::centrePixel() const {
    return wholeImageInView() ? kImageCentre : m_item.centrePixel();
}

bool CItemWeather::Loading::wholeImageInView() const {
    const RadarState& state = m_item.m_state;
    const PagePoint first = m_item.view().toPage({0, 0});
    const PagePoint last = m_item.view().toPage({state.imageWidth - 1, state.imageHeight - 1});
    return m_item.rectangle().contains(first) && m_item.rectangle().contains(last);
}

GeoPosition CItemWeather::Loading::centrePosition() const {
    return m_item.centrePosition();
}

GeoReference& CItemWeather::Loading::geoReference() {
    return m_item.geoReference();
}

void CItemWeather::Loading::geoReferenceChanged(GeoPosition centre) {
    m_item.placeImage(centre);
}

void CItemWeather::Loading::showWaiting(bool waiting) {
    if (!waiting) {
        m_progress = {};
    }
}

void CItemWeather::Loading::contentChanged() {
    if (CPageDisplay* page = m_item.page()) {
        page->contentChanged();
    }
}

} // namespace raincast
