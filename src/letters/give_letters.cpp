// SPDX-License-Identifier: MIT
#include "letters/give_letters.h"

#include "letters/mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMenu>

namespace raincast {

namespace {

/// Marks letters in the texts of what has `text()` and `setText()`; `taken` are texts with letters
/// that are taken.
template<typename Chosen>
void mark(const QList<Chosen*>& all, const QStringList& taken) {
    QStringList texts;
    for (const Chosen* each : all) {
        texts.append(each->text());
    }
    const QStringList marked = withMnemonics(texts + taken);
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (marked[i] != texts[i]) {
            all[i]->setText(marked[i]);
        }
    }
}

} // namespace

void giveLetters(const QMenu& menu) {
    QList<QAction*> entries = menu.actions();
    entries.removeIf([](QAction* entry) { return entry->isSeparator() || !entry->isVisible(); });
    mark(entries, {});
}

void giveLetters(const QDialog& dialog) {
    QStringList taken;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        if (label->buddy() != nullptr && !mnemonicOf(label->text()).isNull()) {
            taken.append(label->text());
        }
    }
    mark(dialog.findChildren<QAbstractButton*>(), taken);
}

} // namespace raincast
