// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"
#include "page/page_display.h"
#include "player/loop_player.h"
#include "player/player_bar.h"
#include "window/menu_table.h"

#include <QObject>
#include <QPointer>

#include <functional>

class QMenu;

namespace raincast {

/// The rows of an item's menu for its loop.
inline constexpr MenuRow kLoopRows[] = {
    menuEntry(kPlayLoop, Text::marked("&Play"), "Space"),
    menuEntry(kStepBack, Text::marked("Step &Back"), ","),
    menuEntry(kStepForward, Text::marked("Step &Forward"), "."),
    menuSeparator(),
    menuEntry(kHalfSpeed, Text::marked("&Half Speed")),
    menuEntry(kHalfSpeed + 1, Text::marked("&Normal Speed")),
    menuEntry(kHalfSpeed + 2, Text::marked("&Double Speed")),
    menuEntry(kHalfSpeed + 3, Text::marked("F&our Times the Speed")),
    menuSeparator(),
    menuEntry(kShowBar, Text::marked("&Show Bar")),
    menuEntry(kUtcTimes, Text::marked("Times in &UTC")),
};

/// Plays the loop of a display item, and keeps the loop's bar at the item's lower edge while the
/// item is on the screen, its loop has frames and the bar is wanted: by itself on an item of at
/// least 400 pixels' height, or because the user has asked for it. In layout mode it is not shown.
class ItemPlayer {
public:
    using Item = CPageDisplay::CItem;

    /// Both are borrowed for its life. `loading` says whether frames are on their way: until then
    /// the bar stays. `covers` is called when coveredHeight() was another before.
    ItemPlayer(
        Item& item, RadarState& state, std::function<bool()> loading,
        std::function<void(int before)> covers
    );
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

    /// A single tap on the picture shows or hides the bar of a loop.
    void tapped();

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
    std::function<void(int before)> m_covers;
    QtTimers m_timers;
    LoopPlayer m_loop;
    QPointer<PlayerBar> m_bar; ///< of the page's window
    int m_covered = 0;
    bool m_followIsComing = false;
    QObject m_context; ///< last: what is posted ends with it
};

} // namespace raincast
