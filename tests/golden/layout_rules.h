// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QWidget;

namespace raincast::test {

/// What is wrong with a window: controls that overlap, texts that are cut, what lies outside and
/// cannot be scrolled to (up and down, never sideways), a window larger than its screen and, on a
/// touch screen, what is too low for a finger. One sentence each.
[[nodiscard]] QStringList complaintsAbout(const QWidget& window);

/// The texts of a window that stand there in English although the run's language is "pseudo": its
/// title, its controls, its lists. What is data stays as it is, such as the name of a place.
[[nodiscard]] QStringList englishIn(const QWidget& window);

} // namespace raincast::test
