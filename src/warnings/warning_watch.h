// SPDX-License-Identifier: MIT
#pragma once

#include "core/heartbeat.h"
#include "core/listener.h"
#include "core/timers.h"
#include "core/user_change.h"
#include "map/navigation_data.h"
#include "page/page_display.h"
#include "position/data_gps_position.h"
#include "radar/warning_texts.h"
#include "warnings/warning_bar.h"
#include "warnings/warning_words.h"

#include <QApplication>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace raincast {

class CMarkManager;

/// The warnings that a radar item has.
struct SiteWarnings {
    QString source; ///< of the weather, as the cache knows it: warnings of two do not mix
    QString siteId;
    QString range;                             ///< "Short" or "Long"
    std::shared_ptr<const WarningTexts> texts; ///< null: they are not known
    FileTime fetched = 0;
};

/// Watches over the user's position and the target mark: while a warning of the radar items holds
/// at one of them, a bar across the top of the page that is shown says so, the most dangerous
/// warning first; it begins with a beep, once in a run for each warning and place. It goes when the
/// warning ends or the user dismisses it, which holds for the rest of the run, however the warning
/// is prolonged.
///
/// A warning counts from when it is known (a clock may be slow) until its end; without one, for an
/// hour after it was fetched. What a server has not said again stays until then. Made-up warnings
/// never count. Those of a replay go by its clock, never beep, and the bar says "Replay".
/// A run without a person (window/modal.h) never beeps.
///
/// Nothing is done while nothing changes: an alarm goes off at the next end, and all is looked at
/// again when the clock has jumped. Layout mode hides the bar.
class WarningWatch : private Listener<CDataGPSPosition>,
                     private Listener<NavigationData>,
                     private Listener<UserChange>,
                     private Listener<PageModeChange> {
public:
    /// All are borrowed for its life; it is to hear of positions after the marks do.
    WarningWatch(
        const CMarkManager& marks, Timers& timers, std::function<void()> beep = QApplication::beep
    );
    ~WarningWatch() override;
    WarningWatch(const WarningWatch&) = delete;
    WarningWatch& operator=(const WarningWatch&) = delete;

    /// Takes what an item knows, in place of what was known of its site and range. Texts that are
    /// not known leave those of before; another source takes all away.
    void take(const SiteWarnings& known);
    /// Dismisses the warning that the bar shows; false without one.
    bool dismiss();
    /// Whether there is something to dismiss.
    [[nodiscard]] bool warns() const { return !m_shown.empty(); }

private:
    /// A warning that holds at a place.
    struct Danger {
        std::shared_ptr<const WarningTexts> texts; ///< keeps the warning
        const WarningText* warning = nullptr;
        QString id; ///< the warning's, among those of all sources
        WarnedPlace place = WarnedPlace::position;
        FileTime end = 0;
        [[nodiscard]] QString key() const { return key(place); }
        [[nodiscard]] QString key(WarnedPlace at) const;
    };
    /// Calls when the clock has jumped; counts nothing.
    struct ClockJumps : CHeartbeat::Counter {
        explicit ClockJumps(std::function<void()> call);
        void Tick() override {}
        void Resync() override { jumped(); }
        std::function<void()> jumped;
    };
    /// What the dangers depend on, besides the warnings.
    struct Surroundings {
        std::optional<GeoPosition> position;
        std::optional<GeoPosition> target;
        bool utc = false;
        friend bool operator==(const Surroundings&, const Surroundings&) = default;
    };

    void onPublished(CDataGPSPosition& position) override;
    void onPublished(NavigationData& navigation) override;
    void onPublished(UserChange& change) override;
    void onPublished(PageModeChange& change) override;

    [[nodiscard]] Surroundings surroundings() const;
    void followSurroundings();
    void refresh();
    void dropEnded(FileTime now);
    [[nodiscard]] std::vector<Danger> dangers(FileTime now) const;
    [[nodiscard]] std::optional<WarnedPlace> placeOf(const WarningText& warning) const;
    [[nodiscard]] bool isDismissed(const Danger& danger) const;
    void announce(const std::vector<Danger>& dangers);
    void wakeAt(const std::vector<Danger>& dangers);
    void showBar();
    void readShown();

    const CMarkManager& m_marks;
    std::function<void()> m_beep;
    std::unique_ptr<Alarm> m_nextEnd;
    ClockJumps m_clockJumps;
    std::vector<SiteWarnings> m_sites; ///< the one fetched last first
    Surroundings m_seen;
    std::vector<Danger> m_shown;   ///< that are not dismissed, the most dangerous first
    std::set<QString> m_announced; ///< keys, as below
    std::set<QString> m_dismissed;
    CPageDisplay* m_page = nullptr; ///< whose window the next one is
    QPointer<QWidget> m_window;
    QPointer<WarningBar> m_bar;
};

} // namespace raincast
