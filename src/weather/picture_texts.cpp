// SPDX-License-Identifier: MIT
#include "weather/picture_texts.h"

#include "map/text_box.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QTextLayout>

#include <algorithm>

namespace raincast {

namespace {

constexpr int kLeftMargin = 2;
constexpr int kStatusMargin = 3;
constexpr int kStatusTopMargin = 8;
// The colours of an age: amber, red.
constexpr TextBoxColours kOld{{255, 191, 0}, {0, 0, 0}};
constexpr TextBoxColours kVeryOld{{192, 0, 0}, {255, 255, 255}};
constexpr QColor kProgressGround(255, 255, 255);
constexpr QColor kProgressDone(0, 90, 200);

/// Breaks a line into pieces that fit a width, between words where that is possible: a folder's
/// path can be long. Gives at least one piece.
QStringList fittingLines(const QString& line, const QFont& font, int width) {
    if (line.isEmpty()) {
        return {line};
    }
    QTextLayout layout(line, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList pieces;
    layout.beginLayout();
    for (QTextLine piece = layout.createLine(); piece.isValid(); piece = layout.createLine()) {
        piece.setLineWidth(width);
        pieces += line.mid(piece.textStart(), piece.textLength()).trimmed();
    }
    layout.endLayout();
    return pieces;
}

void drawStatus(QPainter& painter, const QRect& area, const QString& status) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QRect inner =
        area.adjusted(kStatusMargin, kStatusTopMargin, -kStatusMargin, -kStatusMargin);
    int top = inner.top();
    for (const QString& line : status.split(u'\n')) {
        for (const QString& piece : fittingLines(line, painter.font(), inner.width())) {
            if (!piece.isEmpty()) {
                const QImage box = textBoxPicture(painter, piece);
                painter.drawImage(inner.left() + (inner.width() - box.width()) / 2, top, box);
            }
            top += metrics.lineSpacing();
        }
    }
}

/// Draws what the picture is about, and its age behind that, as far as both fit a width.
void drawAbout(QPainter& painter, QPoint place, int width, const PictureTexts& texts) {
    const bool two = !texts.age.text.isEmpty() && !texts.about.isEmpty();
    const QString words = texts.about + (two ? QStringLiteral("  ") : QString());
    const QImage about = textBoxPicture(painter, words);
    const QImage age =
        textBoxPicture(painter, texts.age.text, texts.age.overAnHour ? kVeryOld : kOld);
    if (about.width() + age.width() <= width) {
        painter.drawImage(place, about);
        place.rx() += about.width();
    }
    painter.drawImage(place, age);
}

} // namespace

void drawPictureTexts(QPainter& painter, const QRect& area, const PictureTexts& texts) {
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    const QFontMetrics metrics = painter.fontMetrics();
    const int left = area.left() + kLeftMargin;
    const int top = area.bottom() + 1 - metrics.height();
    if (!texts.time.isEmpty()) {
        drawTextBox(painter, {left, top}, texts.time);
    }
    drawAbout(painter, {left, top - metrics.height()}, area.width() - 2 * kLeftMargin, texts);
    drawStatus(painter, area, texts.status);
    painter.restore();
}

void drawProgress(QPainter& painter, const QRect& area, int done, int wanted) {
    if (wanted <= 0) {
        return;
    }
    const int height = std::max(3, painter.fontMetrics().height() / 4);
    QRect bar(area.left(), area.bottom() + 1 - height, area.width(), height);
    bar = bar.intersected(area);
    painter.fillRect(bar, kProgressGround);
    bar.setWidth(bar.width() * std::clamp(done, 0, wanted) / wanted);
    painter.fillRect(bar, kProgressDone);
}

} // namespace raincast
