// SPDX-License-Identifier: MIT
#include "app/background_save.h"

#include <utility>

namespace raincast {

BackgroundSave::BackgroundSave(Keeper& keeper, Timers& timers, Callbacks callbacks)
    : m_keeper(keeper), m_callbacks(std::move(callbacks)), m_quiet(timers.make([this] { save(); })),
      m_latest(timers.make([this] { save(); })), m_retry(timers.make([this] { save(); })) {}

void BackgroundSave::onPublished(UserChange& /*change*/) {
    m_quiet->start(kQuiet);
    if (!std::exchange(m_waiting, true)) {
        m_latest->start(kLatest);
    }
}

void BackgroundSave::stopAlarms() {
    m_quiet->stop();
    m_latest->stop();
    m_retry->stop();
    m_waiting = false;
}

void BackgroundSave::save() {
    stopAlarms();
    if (!m_keeper.loaded()) {
        m_quiet->start(kQuiet); // a dialog before the pages has changed something
        return;
    }
    m_again = m_errand.underWay();
    if (m_again) {
        return;
    }
    m_callbacks.before();
    m_save = m_keeper.begin();
    m_errand.start([this] { m_save.write(); }, [this] { ended(); });
}

void BackgroundSave::ended() {
    const QStringList problems = m_keeper.finish(m_save);
    m_save = {};
    if (m_settling) {
        return;
    }
    m_callbacks.ended(problems);
    if (!problems.isEmpty()) {
        m_retry->start(kRetry);
    }
    if (std::exchange(m_again, false)) {
        save();
    }
}

void BackgroundSave::settle() {
    m_settling = true;
    m_errand.wait();
    stopAlarms();
    m_again = false;
    m_settling = false;
}

} // namespace raincast
