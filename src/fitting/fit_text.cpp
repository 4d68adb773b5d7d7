// SPDX-License-Identifier: MIT
#include "fitting/fit_text.h"

#include <QAction>
#include <QFont>
#include <QFontMetrics>
#include <QLabel>
#include <QMenu>
#include <QStringList>

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
    if (fits()) {
        return;
    }
    for (QAction* entry : menu.actions()) {
        if (showsKeys(*entry)) {
            entry->setText(entry->text().section(u'\t', 0, 0) + u'\t');
        }
    }
    narrowUntil(menu, fits);
}

} // namespace raincast
