// SPDX-License-Identifier: MIT
#pragma once

#include "app/keeper.h"
#include "core/errand.h"
#include "core/listener.h"
#include "core/timers.h"
#include "core/user_change.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace raincast {

/// Saves pages, marks and settings while the program runs, as soon as the user has changed one of
/// them (UserChange): a second after the last change, and two at most after the first. What is to
/// be written is gathered at once; a thread brings it to the disk.
///
/// What cannot be saved is reported, and tried again each ten seconds.
class BackgroundSave : private Listener<UserChange> {
public:
    static constexpr std::chrono::milliseconds kQuiet{1000};
    static constexpr std::chrono::milliseconds kLatest{2000};
    static constexpr std::chrono::milliseconds kRetry{10'000};

    struct Callbacks {
        std::function<void()> before; ///< a save begins: the time for what only rides along
        /// A save has ended, with the problems of it, a sentence each; none when all is saved.
        std::function<void(const QStringList& problems)> ended;
    };

    /// Keeper and timers are borrowed.
    BackgroundSave(Keeper& keeper, Timers& timers, Callbacks callbacks);

    /// Waits for a save that is under way, and drops one that would have followed: what comes next
    /// is another save, on the caller's own thread. Nothing is reported.
    void settle();

private:
    void onPublished(UserChange& change) override;
    void save();
    void ended();
    void stopAlarms();

    Keeper& m_keeper;
    Callbacks m_callbacks;
    std::unique_ptr<Alarm> m_quiet;  ///< since the last change
    std::unique_ptr<Alarm> m_latest; ///< since the first one that is not saved
    std::unique_ptr<Alarm> m_retry;
    bool m_waiting = false; ///< m_latest runs
    bool m_again = false;   ///< a save is due when the one under way has ended
    bool m_settling = false;
    Keeper::Save m_save; ///< the thread's while the errand is under way
    Errand m_errand;     // last: it ends first
};

} // namespace raincast
