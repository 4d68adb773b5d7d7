// SPDX-License-Identifier: MIT
#include "window/undo.h"

#include "core/text.h"
#include "window/bottom_rows.h"
#include "window/dialog_widget.h"
#include "window/one_line.h"

#include <QEvent>
#include <QShortcut>
#include <QTimer>

#include <utility>

namespace raincast {

namespace {

constexpr int kMostNameCharacters = 24;

} // namespace

Undo::Undo(BottomRows& rows)
    : ActionRow(Text::tr("Undo"), [this] { undo(); }), m_rows(rows), m_timer(new QTimer(this)) {
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, this, [this] {
        undo();
    });
    m_timer->setSingleShot(true);
    m_timer->setInterval(kOfferedMilliseconds);
    connect(m_timer, &QTimer::timeout, this, [this] { drop(); });
    m_rows.add(*this);
}

QString Undo::deleted(const QString& name) {
    const QString shown = oneLine(name);
    const bool fits = shown.size() <= kMostNameCharacters;
    return Text::tr("Deleted %1.")
        .arg(fits ? shown : shown.left(kMostNameCharacters - 1) + QChar(0x2026));
}

void Undo::offer(const QString& what, std::function<void()> putBack) {
    m_putBack = std::move(putBack);
    setText(what);
    m_timer->start();
    show();
}

void Undo::drop() {
    m_timer->stop();
    m_putBack = nullptr;
    hide();
}

void Undo::undo() {
    if (const auto putBack = std::exchange(m_putBack, nullptr)) {
        drop();
        putBack();
        if (m_undone) {
            m_undone();
        }
    }
}

void Undo::moveInto(DialogWidget& dialog, std::function<void()> undone) {
    m_undone = std::move(undone);
    dialog.installEventFilter(this);
    dialog.addRow(*this);
    setVisible(m_putBack != nullptr);
}

// A dialog that is deleted is hidden before anything of it goes.
bool Undo::eventFilter(QObject* dialog, QEvent* event) {
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
        dialog->removeEventFilter(this);
        moveBack();
    }
    return ActionRow::eventFilter(dialog, event);
}

void Undo::moveBack() {
    m_undone = nullptr;
    m_rows.add(*this);
    setVisible(m_putBack != nullptr);
}

} // namespace raincast
