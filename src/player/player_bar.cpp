// SPDX-License-Identifier: MIT
#include "player/player_bar.h"

#include "core/text.h"
#include "player/frame_time.h"
#include "player/player_icons.h"
#include "window/dialog_layout.h"
#include "window/screen_metrics.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>

#include <algorithm>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

constexpr int kLeastSlider = 56;

/// About as long as the longest time that is shown beside the slider.
QString longTime() {
    const CalendarTime time{.year = 2019, .month = 12, .day = 29, .hour = 22, .minute = 44};
    return Text::date(time) + u' ' + Text::clock(time) + QStringLiteral(" AKDT, ");
}

QString longAge() {
    constexpr FileTime kAge = (22 * 60 + 22) * kFileTimePerMinute;
    return frameAgeText(1, 1 + kAge);
}

int margin() {
    return dialogMargin(ScreenMetrics::current().logPixelsY);
}

QString withKey(const QString& name, const QString& key) {
    return QStringLiteral("%1 (%2)").arg(name, key);
}

} // namespace

PlayerBar::PlayerBar(QWidget& window, Actions actions)
    : QWidget(&window), m_actions(std::move(actions)), m_playIcon(playIcon()),
      m_pauseIcon(pauseIcon()) {
    hide();
    setObjectName(QStringLiteral("loopBar"));
    setAccessibleName(Text::tr("Loop"));
    setAutoFillBackground(true);
    // A press beside the controls, by mouse or finger, is none on the picture below.
    setAttribute(Qt::WA_NoMousePropagation);
    setCursor(Qt::ArrowCursor);
    makeControls();
    connectControls();
}

void PlayerBar::makeControls() {
    m_back = addButton(stepBackIcon(), Text::tr("Step back"), QStringLiteral(","));
    m_play = addButton(m_pauseIcon, {}, {});
    m_forward = addButton(stepForwardIcon(), Text::tr("Step forward"), QStringLiteral("."));
    m_slider = new QSlider(Qt::Horizontal, this);
    m_slider->setAccessibleName(Text::tr("Frame"));
    m_slider->setToolTip(Text::tr("Frame"));
    m_slider->setTickPosition(QSlider::TicksBelow);
    m_slider->setTickInterval(1);
    m_slider->setPageStep(1);
    m_slider->setFocusPolicy(Qt::TabFocus);
    m_time = new QLabel(this);
    m_time->setTextFormat(Qt::PlainText);
    m_time->setWordWrap(true);
    m_speed = new QComboBox(this);
    m_speed->setAccessibleName(Text::tr("Speed"));
    m_speed->setToolTip(Text::tr("Speed"));
    m_speed->setFocusPolicy(Qt::TabFocus);
    for (const LoopSpeedRow& row : kLoopSpeeds) {
        m_speed->addItem(QString::fromUtf16(row.text));
    }
    m_utc = new QCheckBox(QStringLiteral("&UTC"), this);
    m_utc->setToolTip(Text::tr("Times in UTC"));
    m_utc->setFocusPolicy(Qt::TabFocus);
    showPlaying(true);
}

QToolButton* PlayerBar::addButton(const QIcon& icon, const QString& name, const QString& key) {
    auto* const button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setIcon(icon);
    button->setAccessibleName(name);
    button->setToolTip(withKey(name, key));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void PlayerBar::connectControls() {
    connect(m_back, &QToolButton::clicked, this, [this] { m_actions.step(-1); });
    connect(m_play, &QToolButton::clicked, this, [this] { m_actions.playOrPause(); });
    connect(m_forward, &QToolButton::clicked, this, [this] { m_actions.step(1); });
    connect(m_slider, &QSlider::valueChanged, this, [this](int frame) { m_actions.show(frame); });
    connect(m_speed, &QComboBox::activated, this, [this](int row) {
        m_actions.setSpeed(kLoopSpeeds[static_cast<std::size_t>(row)].speed);
    });
    connect(m_utc, &QCheckBox::toggled, this, [this](bool utc) { m_actions.setUtc(utc); });
}

void PlayerBar::showPlaying(bool playing) {
    if (std::exchange(m_playing, playing) == playing) {
        return;
    }
    const QString name = playing ? Text::tr("Pause") : Text::tr("Play");
    m_play->setIcon(playing ? m_pauseIcon : m_playIcon);
    m_play->setAccessibleName(name);
    m_play->setToolTip(withKey(name, Text::tr("Space")));
}

void PlayerBar::follow(const Loop& loop) {
    const QSignalBlocker quietSlider(m_slider);
    const QSignalBlocker quietSpeed(m_speed);
    const QSignalBlocker quietUtc(m_utc);
    showPlaying(loop.playing);
    m_slider->setRange(0, std::max(loop.frames - 1, 0));
    m_slider->setValue(loop.shown);
    const QString age = loop.age.isEmpty() ? QString() : QStringLiteral(", ") + loop.age;
    m_time->setText(loop.time + age);
    m_speed->setCurrentIndex(static_cast<int>(loop.speed));
    m_utc->setChecked(loop.utc);
    for (QWidget* control : std::initializer_list<QWidget*>{m_back, m_play, m_forward, m_slider}) {
        control->setEnabled(loop.frames >= 2);
    }
}

int PlayerBar::rowHeight() const {
    const int controls = std::max(
        {m_play->sizeHint().height(), m_speed->sizeHint().height(), m_utc->sizeHint().height(),
         m_slider->sizeHint().height()}
    );
    const ScreenMetrics screen = ScreenMetrics::current();
    return std::max(controls, screen.touch ? screen.touchHeight() : 0);
}

int PlayerBar::buttonsWidth() const {
    return 3 * std::max(m_play->sizeHint().width(), rowHeight());
}

int PlayerBar::settingsWidth() const {
    return m_speed->sizeHint().width() + margin() + m_utc->sizeHint().width();
}

bool PlayerBar::fitsOneRow(int width) const {
    const int time = fontMetrics().horizontalAdvance(longTime() + longAge());
    return width >= buttonsWidth() + 2 * kLeastSlider + time + settingsWidth() + 5 * margin();
}

int PlayerBar::leastWidth() const {
    const int above = buttonsWidth() + kLeastSlider + m_speed->sizeHint().width();
    const int below = fontMetrics().horizontalAdvance(longTime()) + m_utc->sizeHint().width();
    return std::max(above, below) + 4 * margin();
}

int PlayerBar::heightForWidth(int width) const {
    if (fitsOneRow(width)) {
        return rowHeight();
    }
    return rowHeight() + std::max(rowHeight(), 2 * fontMetrics().lineSpacing());
}

void PlayerBar::placeButtons(int& left, int height) {
    const int side = buttonsWidth() / 3;
    for (QToolButton* button : {m_back, m_play, m_forward}) {
        button->setGeometry(left, 0, side, height);
        left += side;
    }
    left += margin();
}

void PlayerBar::placeSettings(int right, int top, int height) {
    const int utc = m_utc->sizeHint().width();
    const int speed = m_speed->sizeHint().width();
    m_utc->setGeometry(right - utc, top, utc, height);
    m_speed->setGeometry(right - utc - margin() - speed, top, speed, height);
}

void PlayerBar::resizeEvent(QResizeEvent* /*event*/) {
    const int gap = margin();
    const int row = rowHeight();
    const int right = width() - gap;
    int left = gap;
    placeButtons(left, row);
    if (fitsOneRow(width())) {
        const int time = fontMetrics().horizontalAdvance(longTime() + longAge());
        const int settings = right - settingsWidth();
        m_slider->setGeometry(left, 0, settings - gap - time - gap - left, row);
        m_time->setGeometry(settings - gap - time, 0, time, row);
        placeSettings(right, 0, row);
        return;
    }
    const int below = height() - row;
    const int speed = m_speed->sizeHint().width();
    const int utc = m_utc->sizeHint().width();
    m_slider->setGeometry(left, 0, right - speed - gap - left, row);
    m_speed->setGeometry(right - speed, 0, speed, row);
    m_time->setGeometry(gap, row, right - utc - 2 * gap, below);
    m_utc->setGeometry(right - utc, row, utc, below);
}

} // namespace raincast
