// SPDX-License-Identifier: MIT
#pragma once

#include "weather/image_age.h"

#include <QString>

class QPainter;
class QRect;

namespace raincast {

/// The texts over a radar picture, in boxes.
struct PictureTexts {
    QString time = {};   ///< of the frame: a line at the bottom left
    QString about = {};  ///< site, product and date: on the line above the time, if there is room
    ImageAge age = {};   ///< on the same line; it has priority when there is not room for both
    QString status = {}; ///< centred lines at the top
};

/// Draws the texts into a rectangle of the page; cuts what does not fit.
void drawPictureTexts(QPainter& painter, const QRect& area, const PictureTexts& texts);

/// Draws a thin bar along a rectangle's lower edge, filled for `done` of `wanted`.
void drawProgress(QPainter& painter, const QRect& area, int done, int wanted);

} // namespace raincast
