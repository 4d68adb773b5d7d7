// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

namespace raincast::test {

/// How many pixels of two pictures of one size differ for a person. Edges of letters may fall a
/// little differently: a pixel is the same if it lies within what the pixels around it in the other
/// picture span, both ways.
[[nodiscard]] int differingPixels(const QImage& one, const QImage& other);

/// Compares a window's picture and the description of its controls with those that are kept for
/// this run (RAINCAST_GOLDEN_RUN) under that name; fails the test, and says where it left what it
/// saw, when they differ. With RAINCAST_RENEW_GOLDEN set they are kept from now on instead.
void expectGolden(const QString& name, const QImage& picture, const QStringList& description);

} // namespace raincast::test
