// SPDX-License-Identifier: MIT
#include "window/dialog_widget.h"

#include "fitting/fit_controls.h"
#include "window/dialog.h"
#include "window/dialog_template.h"
#include "window/screen_metrics.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScroller>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace raincast {

DialogWidget::DialogWidget(
    Dialog& dialog, const DialogTemplate& content, bool doneButton, QWidget* parent
)
    : QDialog(parent), m_dialog(&dialog), m_scrollArea(new QScrollArea(this)),
      m_client(new QWidget) {
    setWindowTitle(Text::of(content.caption));
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setWidget(m_client);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(m_scrollArea);

    const DialogControls controls = makeControls(*this, *m_client, content);
    ensurePolished();
    DialogUnits units = fittingUnits(*m_client, content, controls);
    placeControls(units, content, controls);
    if (doneButton && control(Dialog::kOk) == nullptr) {
        addDoneButtons();
    }
    if (auto* ok = qobject_cast<QPushButton*>(control(Dialog::kOk))) {
        ok->setDefault(true);
    }
    if (ScreenMetrics::current().touch) {
        QScroller::grabGesture(m_scrollArea->viewport(), QScroller::TouchGesture);
    }
    const QSize grown(0, fitWidth(units, content, controls));
    const QSize least = units.toPixels(content.leastSize);
    takeSize(units.toPixels(content.size) + grown, least.isEmpty() ? least : least + grown);
}

QWidget* DialogWidget::control(int id) const {
    return id > 0 ? findChild<QWidget*>(QString::number(id)) : nullptr;
}

void DialogWidget::addDoneButtons() {
    m_doneButtons = new QDialogButtonBox(this);
    auto* ok = m_doneButtons->addButton(Text::tr("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QString::number(Dialog::kOk));
    connect(ok, &QPushButton::clicked, this, [this, ok] { sendCommand(*this, Dialog::kOk, ok); });
    if (auto* cancel = qobject_cast<QPushButton*>(control(Dialog::kCancel))) {
        m_doneButtons->addButton(cancel, QDialogButtonBox::RejectRole);
    }
    const int margin = 2 * dialogMargin(ScreenMetrics::current().logPixelsY);
    m_doneButtons->setContentsMargins(margin, margin, margin, margin);
    layout()->addWidget(m_doneButtons);
}

// As large as the client area wants to be, as far as the screen has room; what has no room is
// scrolled to.
void DialogWidget::takeSize(const QSize& clientSize, const QSize& leastSize) {
    const bool resizable = !leastSize.isEmpty();
    m_client->setMinimumSize(resizable ? leastSize : clientSize);
    m_client->resize(clientSize);
    // The area's own idea of its least height would squeeze the buttons below a low client area.
    m_scrollArea->setMinimumHeight(
        std::min(clientSize.height(), m_scrollArea->minimumSizeHint().height())
    );
    const QSize buttons = m_doneButtons != nullptr ? m_doneButtons->sizeHint() : QSize(0, 0);
    QSize wanted(
        std::max(clientSize.width(), buttons.width()), clientSize.height() + buttons.height()
    );
    const int scrollBar = scrollBarWidth();
    const QSize least = m_client->minimumSize();
    if (least.height() + buttons.height() > room().height()) {
        wanted.rwidth() += scrollBar;
    }
    if (least.width() > room().width()) {
        wanted.rheight() += scrollBar;
    }
    resize(wanted.boundedTo(room()));
    if (!resizable) {
        setFixedSize(size());
    }
}

// On a screen that is too narrow, rows get higher instead; what does not fit then is scrolled.
// Returns how much higher all of it is.
int DialogWidget::fitWidth(
    DialogUnits& units, const DialogTemplate& content, const DialogControls& controls
) {
    if (units.toPixels(content.size).width() <= room().width()) {
        return 0;
    }
    const auto fitInto = [&](int width) {
        constexpr double kRounding = 0.5;
        units.x = (width - kRounding) / content.size.width();
        placeControls(units, content, controls);
        DialogControls own = controls; // one may be among the buttons below
        std::erase_if(own, [this](QWidget* each) { return each->parentWidget() != m_client; });
        return fitControls(own);
    };
    const int grown = fitInto(room().width());
    const int height = units.toPixels(content.size).height() + grown + buttonsHeight();
    return height <= room().height() ? grown : fitInto(room().width() - scrollBarWidth());
}

int DialogWidget::scrollBarWidth() const {
    return style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_scrollArea);
}

// What the screen has for the dialog, inside of its frame.
QSize DialogWidget::room() const {
    const QSize frame =
        parentWidget() != nullptr
            ? parentWidget()->window()->frameGeometry().size() - parentWidget()->window()->size()
            : QSize(0, 0);
    return ScreenMetrics::current().available - frame;
}

int DialogWidget::buttonsHeight() const {
    return m_doneButtons != nullptr ? m_doneButtons->sizeHint().height() : 0;
}

void DialogWidget::addRow(QWidget& row) {
    layout()->addWidget(&row);
    row.installEventFilter(this);
}

bool DialogWidget::eventFilter(QObject* row, QEvent* event) {
    if (event->type() == QEvent::Show) {
        makeRoomFor(*static_cast<QWidget*>(row));
    } else if (event->type() == QEvent::Hide && m_sizeWithoutRow.isValid() && isVisible()) {
        become(std::exchange(m_sizeWithoutRow, {}));
    }
    return QDialog::eventFilter(row, event);
}

void DialogWidget::makeRoomFor(const QWidget& row) {
    const int high =
        row.hasHeightForWidth() ? row.heightForWidth(width()) : row.sizeHint().height();
    QSize wanted(width(), m_client->minimumHeight() + buttonsHeight() + high);
    if (wanted.height() <= height()) {
        return;
    }
    if (wanted.height() > room().height()) {
        wanted.rwidth() += scrollBarWidth();
    }
    if (!m_sizeWithoutRow.isValid()) {
        m_sizeWithoutRow = size();
    }
    become(wanted.boundedTo(room()));
}

void DialogWidget::become(const QSize& wanted) {
    const bool fixed = minimumSize() == maximumSize();
    fixed ? setFixedSize(wanted) : resize(wanted);
}

void DialogWidget::focusFirst() {
    const auto children = m_client->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (QWidget* child : children) {
        const bool takesFocus = child->focusPolicy() != Qt::NoFocus && child->isEnabled();
        if (takesFocus && qobject_cast<QPushButton*>(child) == nullptr) {
            child->setFocus();
            if (auto* edit = qobject_cast<QLineEdit*>(child)) {
                edit->selectAll();
            }
            return;
        }
    }
    if (QWidget* const ok = control(Dialog::kOk)) {
        ok->setFocus();
    }
}

void DialogWidget::reject() {
    sendCommand(*this, Dialog::kCancel, control(Dialog::kCancel));
}

bool DialogWidget::event(QEvent* event) {
    // The widget outlives the object by the rest of the event loop's turn.
    if (event->type() == event_type::destroy) {
        m_dialog = nullptr;
    }
    return (m_dialog != nullptr && m_dialog->dialogProcedure(*event)) || QDialog::event(event);
}

// Enter is command 1 wherever it is pressed but on a push button, which has taken it already.
void DialogWidget::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter) {
        QDialog::keyPressEvent(event);
        return;
    }
    QWidget* const ok = control(Dialog::kOk);
    if (ok == nullptr || ok->isEnabled()) {
        sendCommand(*this, Dialog::kOk, ok);
    }
}

} // namespace raincast
