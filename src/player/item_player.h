// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"
#include "page/page_display.h"
#include "player/loop_player.h"
#include "player/player_bar.h"
#include "window/menu_table.h"

#include <QObject>
#include <QPoint>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QMenu;

namespace raincast {

/// The rows of an item's menu for its loop.
inline constexpr MenuRow kLoopRows[] = {
    menuEntry(kPlayLoop, u"&Play", "Space"),
    menuEntry(kStepBack, u"Step &Back", ","),
    menuEntry(kStepForward, u"Step &Forward", "."),
    menuSeparator(),
    menuEntry(kHalfSpeed, u"&Half Speed"),
    menuEntry(kHalfSpeed + 1, u"&Normal Speed"),
    menuEntry(kHalfSpeed + 2, u"&Double Speed"),
    menuEntry(kHalfSpeed + 3, u"F&our Times the Speed"),
    menuSeparator(),
    menuEntry(kShowBar, u"&Show Bar"),
    menuEntry(kUtcTimes, u"Times in &UTC"),
};

/// Plays the loop of a display item, and keeps the loop's bar at the item's lower edge while the
/// item is on the screen, its loop has frames and the bar is wanted: by itself on an item of at
/// least 400 pixels' height, or because the user has asked for it. In layout mode it is not shown.
class ItemPlayer {
public:
    using Item = CPageDisplay::CItem;

    /// Both are borrowed for its life. `loading` says whether frames are on their way: until then
    /// the bar stays.
    ItemPlayer(Item& item, RadarState& state, std::function<bool()> loading);
    ~ItemPlayer();
    ItemPlayer(const ItemPlayer&) = delete;
    ItemPlayer& operator=(const ItemPlayer&) = delete;

    [[nodiscard]] LoopPlayer& loop() { return m_loop; }
    /// LoopPlayer::tick() of an item that is on the screen. Nothing for one that is not.
    [[nodiscard]] bool tick();
    /// Carries out a command of kLoopRows; false for any other.
    bool command(int id);
    /// The keys of kLoopRows; false for any other.
    bool character(char16_t unit);
    /// Greys and checks the entries of kLoopRows in a menu.
    void prepareMenu(QMenu& menu) const;
    /// Shows or hides the bar, for good.
    void toggleBar();

    /// The stylus on the item, in device pixels: what is put down and lifted in one place is a tap,
    /// which shows or hides the bar unless a second one follows within the interval of a double
    /// press.
    void pressed(QPoint place);
    void lifted(QPoint place);
    /// The press is no tap, or the second one.
    void pressEnded();

    /// The item was drawn: the bar follows what has changed, when control is back in the event
    /// loop.
    void itemDrawn();
    /// How many device pixels of the item's lower part the bar covers.
    [[nodiscard]] int coveredHeight() const { return m_covered; }

private:
    [[nodiscard]] QWidget* window() const;
    [[nodiscard]] bool barShown() const { return m_bar && m_bar->isVisibleTo(window()); }
    [[nodiscard]] bool tallEnough() const;
    [[nodiscard]] bool barIsWanted() const;
    [[nodiscard]] QRect barPlace() const;
    [[nodiscard]] PlayerBar::Loop seen() const;
    void follow();
    void makeBar(QWidget& window);
    void changed();

    Item& m_item;
    RadarState& m_state;
    std::function<bool()> m_loading;
    QtTimers m_timers;
    LoopPlayer m_loop;
    std::unique_ptr<Alarm> m_tapped; ///< goes off when no second press has come
    std::optional<QPoint> m_pressed;
    QPointer<PlayerBar> m_bar; ///< of the page's window
    int m_covered = 0;
    bool m_followIsComing = false;
    QObject m_context; ///< last: what is posted ends with it
};

} // namespace raincast
