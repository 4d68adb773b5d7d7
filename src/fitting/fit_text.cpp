// SPDX-License-Identifier: MIT
#include "fitting/fit_text.h"

#include <QAction>
#include <QFont>
#include <QFontMetrics>
#include <QLabel>
#include <QMenu>
#include <QStringList>
#include <QVariant>

#include <utility>

namespace raincast {

namespace {

constexpr int kLeastStretch = 50;
constexpr int kStretchStep = 5;

int widthOf(const QString& text, const QFontMetrics& metrics) {
    return metrics.size(Qt::TextShowMnemonic, text).width();
}

bool isNarrow(const QWidget& widget) {
    const int stretch = widget.font().stretch();
    return stretch != QFont::AnyStretch && stretch < QFont::Unstretched;
}

void stretch(QWidget& widget, int percent) {
    QFont font = widget.font();
    font.setStretch(percent);
    widget.setFont(font);
}

/// What an entry said before its key was left out.
constexpr char kWholeText[] = "raincastWholeText";

/// The entries may be others than when the menu was fitted last.
void undoFit(QMenu& menu) {
    for (QAction* entry : menu.actions()) {
        const QVariant whole = entry->property(kWholeText);
        if (whole.isValid()) {
            // Who has given it another text since has not asked for the key that was there.
            if (entry->text() == whole.toString().section(u'\t', 0, 0) + u'\t') {
                entry->setText(whole.toString());
            }
            entry->setProperty(kWholeText, QVariant());
        }
    }
    if (isNarrow(menu)) {
        stretch(menu, QFont::Unstretched);
    }
}

bool showsKeys(const QAction& entry) {
    return entry.text().contains(u'\t') || !entry.shortcut().isEmpty();
}

} // namespace

QString broken(const QString& text, const QFontMetrics& metrics, int width) {
    QStringList lines;
    for (const QString& line : text.split(u'\n')) {
        QString begun;
        for (const QString& word : line.split(u' ')) {
            const QString longer = begun.isEmpty() ? word : begun + u' ' + word;
            if (begun.isEmpty() || widthOf(longer, metrics) <= width) {
                begun = longer;
            } else {
                lines += std::exchange(begun, word);
            }
        }
        lines += begun;
    }
    return lines.join(u'\n');
}

void narrowUntil(QWidget& widget, const std::function<bool()>& fits) {
    if (isNarrow(widget)) {
        stretch(widget, QFont::Unstretched);
    }
    for (int percent = QFont::Unstretched - kStretchStep; !fits() && percent >= kLeastStretch;
         percent -= kStretchStep) {
        stretch(widget, percent);
    }
}

void fitLabel(QLabel& label) {
    narrowUntil(label, [&label] {
        return label.wordWrap() ? label.heightForWidth(label.width()) <= label.height()
                                : label.sizeHint().width() <= label.width();
    });
}

// An entry whose text has a tab shows what stands behind it in the place of its key.
void fitMenu(QMenu& menu, int width) {
    const auto fits = [&menu, width] { return menu.sizeHint().width() <= width; };
    undoFit(menu);
    if (fits()) {
        return;
    }
    for (QAction* entry : menu.actions()) {
        if (showsKeys(*entry)) {
            entry->setProperty(kWholeText, entry->text());
            entry->setText(entry->text().section(u'\t', 0, 0) + u'\t');
        }
    }
    narrowUntil(menu, fits);
}

} // namespace raincast
