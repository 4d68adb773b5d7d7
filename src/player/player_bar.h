// SPDX-License-Identifier: MIT
#pragma once

#include "player/loop_setting.h"

#include <QString>
#include <QWidget>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QSlider;
class QToolButton;

namespace raincast {

/// The controls of a loop: play or pause, a step back or on, a slider with a tick for each frame,
/// the frame's time, the speed, and whether times are UTC. In one row where it is wide enough, else
/// in two. A click leaves the keyboard where it is; the Tab key goes through the controls.
class PlayerBar : public QWidget {
public:
    /// What the user asks for.
    struct Actions {
        std::function<void()> playOrPause;
        std::function<void(int steps)> step;
        std::function<void(int frame)> show;
        std::function<void(LoopSpeed speed)> setSpeed;
        std::function<void(bool utc)> setUtc;
    };
    /// What is to be seen.
    struct Loop {
        int frames = 0;
        int shown = 0; ///< index of the frame on the screen
        bool playing = true;
        QString time = {}; ///< of that frame
        QString age = {};
        LoopSpeed speed = LoopSpeed::normal;
        bool utc = false;
    };

    /// Becomes a child of a page's window, not shown at first.
    PlayerBar(QWidget& window, Actions actions);

    /// Shows the state of a loop. What is the same already is not painted again.
    void follow(const Loop& loop);

    [[nodiscard]] int heightForWidth(int width) const override;
    /// Narrower than this it has no room for its controls.
    [[nodiscard]] int leastWidth() const;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QToolButton* addButton(const QIcon& icon, const QString& name, const QString& key);
    void makeControls();
    void connectControls();
    void showPlaying(bool playing);
    [[nodiscard]] bool fitsOneRow(int width) const;
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] int buttonsWidth() const;
    [[nodiscard]] int settingsWidth() const;
    void placeButtons(int& left, int height);
    void placeSettings(int right, int top, int height);

    Actions m_actions;
    QToolButton* m_back;
    QToolButton* m_play;
    QToolButton* m_forward;
    QSlider* m_slider;
    QLabel* m_time;
    QComboBox* m_speed;
    QCheckBox* m_utc;
    QIcon m_playIcon;
    QIcon m_pauseIcon;
    bool m_playing = false;
};

} // namespace raincast
