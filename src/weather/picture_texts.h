// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QPainter;
class QRect;

namespace raincast {

/// The texts over a radar picture, black on white boxes.
struct PictureTexts {
    QString time = {};   ///< of the frame: a line at the bottom left
    QString about = {};  ///< site, product and date: on the line above that, where there is room
    QString age = {};    ///< on the same line; it comes first when there is not room for both
    QString status = {}; ///< centred lines at the top
};

/// Draws them into a rectangle of the page; parts that do not fit are cut.
void drawPictureTexts(QPainter& painter, const QRect& area, const PictureTexts& texts);

/// Draws a thin bar along a rectangle's lower edge, so much of it filled.
void drawProgress(QPainter& painter, const QRect& area, int done, int wanted);

} // namespace raincast
