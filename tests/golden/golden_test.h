// SPDX-License-Identifier: MIT
#pragma once

#include "support/qt_app.h"

#include <QString>

class QWidget;

namespace raincast::test {

/// The run that the process makes: "x1" or "x2" at 96 and 192 dots per inch, "small" at 240 by 320,
/// or "touch" on a touch screen of that size. Each needs a process and a screen of its own; they
/// are set in tests/CMakeLists.txt. "spanish" and "pseudo" are "small" in other languages, by the
/// rules alone; "pseudo" is one that nobody speaks, of words longer by 40 %.
[[nodiscard]] QString goldenRun();

/// A text of the program, as its sources have it, in the language of the run and without its mark
/// of a letter.
[[nodiscard]] QString said(const char* source);

/// The base of tests that look at windows: everything that windows take their looks from is the
/// same on every machine.
class GoldenTest : public GuiTest {
protected:
    GoldenTest();

    /// Checks a window that is shown against the rules and, where the run has them, against its
    /// golden picture.
    static void look(const QString& name, QWidget& window);
};

} // namespace raincast::test
