// SPDX-License-Identifier: MIT
#include "warnings/warning_bar.h"

#include "core/text.h"
#include "window/dialog_layout.h"
#include "window/screen_metrics.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <utility>

namespace raincast {

namespace {

constexpr int kWrapped = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;

int margin() {
    return dialogMargin(ScreenMetrics::current().logPixelsY);
}

} // namespace

/// A button of as many lines as its words need. They are no mnemonic, whatever stands in them.
class WarningBar::Words : public QAbstractButton {
public:
    explicit Words(QWidget* parent) : QAbstractButton(parent) {
        QFont bold = font();
        bold.setBold(true);
        setFont(bold);
        setFocusPolicy(Qt::TabFocus);
        setToolTip(Text::tr("Read the warning"));
    }

    void say(const QString& words) {
        if (std::exchange(m_words, words) != words) {
            setAccessibleName(words);
            update();
        }
    }

    [[nodiscard]] int heightForWidth(int width) const override {
        const QRect room(0, 0, std::max(width - 2 * margin(), 1), QWIDGETSIZE_MAX);
        return fontMetrics().boundingRect(room, kWrapped, m_words).height() + margin();
    }
    [[nodiscard]] QSize sizeHint() const override { return {0, heightForWidth(width())}; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::ButtonText));
        painter.drawText(rect().adjusted(margin(), 0, -margin(), 0), kWrapped, m_words);
        if (hasFocus()) {
            QStyleOptionFocusRect focus;
            focus.initFrom(this);
            focus.backgroundColor = palette().color(QPalette::Window);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
        }
    }

private:
    QString m_words;
};

WarningBar::WarningBar(QWidget& window, Actions actions)
    : QWidget(&window), m_actions(std::move(actions)), m_words(new Words(this)),
      m_dismiss(new QToolButton(this)) {
    hide();
    setObjectName(QStringLiteral("warningBar"));
    setAccessibleName(Text::tr("Warning"));
    setBackgroundRole(QPalette::Window); // whatever the window's is
    setAutoFillBackground(true);
    // A press beside the controls, by mouse or finger, is none on the picture below.
    setAttribute(Qt::WA_NoMousePropagation);
    setCursor(Qt::ArrowCursor);
    m_words->setObjectName(QStringLiteral("warningWords"));
    m_dismiss->setObjectName(QStringLiteral("dismissWarning"));
    m_dismiss->setText(QStringLiteral("\u00D7"));
    m_dismiss->setAccessibleName(Text::tr("Dismiss"));
    m_dismiss->setToolTip(Text::tr("Dismiss (D)"));
    QFont large = m_dismiss->font();
    large.setPointSizeF(1.5 * large.pointSizeF());
    m_dismiss->setFont(large);
    m_dismiss->setAutoRaise(true);
    m_dismiss->setFocusPolicy(Qt::TabFocus);
    connect(m_words, &QAbstractButton::clicked, this, [this] { m_actions.read(); });
    connect(m_dismiss, &QToolButton::clicked, this, [this] { m_actions.dismiss(); });
    window.installEventFilter(this);
}

void WarningBar::say(const QString& words, const WarningColours& colours) {
    QPalette palette;
    palette.setColor(QPalette::Window, colours.ground);
    palette.setColor(QPalette::Button, colours.ground);
    palette.setColor(QPalette::WindowText, colours.ink);
    palette.setColor(QPalette::ButtonText, colours.ink);
    setPalette(palette);
    const bool isNew = words != m_words->accessibleName() || isHidden();
    m_words->say(words);
    place();
    show();
    raise();
    if (isNew) {
        QAccessibleEvent alert(m_words, QAccessible::Alert); // screen readers say it
        QAccessible::updateAccessibility(&alert);
    }
}

int WarningBar::dismissWidth() const {
    const ScreenMetrics screen = ScreenMetrics::current();
    const int touch = screen.touch ? screen.touchHeight() : 0;
    return std::max({m_dismiss->sizeHint().width(), m_dismiss->sizeHint().height(), touch});
}

int WarningBar::heightForWidth(int width) const {
    return std::max(m_words->heightForWidth(width - dismissWidth()), dismissWidth());
}

void WarningBar::place() {
    const QWidget& window = *parentWidget();
    const int height = std::min(heightForWidth(window.width()), window.height());
    setGeometry(0, 0, window.width(), height);
    m_actions.covers(static_cast<int>(std::ceil(height * window.devicePixelRatioF())));
}

bool WarningBar::eventFilter(QObject* /*window*/, QEvent* event) {
    if (event->type() == QEvent::Resize && isVisibleTo(parentWidget())) {
        place();
    }
    return false;
}

void WarningBar::resizeEvent(QResizeEvent* /*event*/) {
    const int button = dismissWidth();
    m_words->setGeometry(0, 0, width() - button, height());
    m_dismiss->setGeometry(width() - button, 0, button, height());
}

} // namespace raincast
